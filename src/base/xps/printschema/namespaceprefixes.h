#pragma once

#include "base/utility/bstr.h"

// The two prefixes that are the same for every ticket of the process: that of the driver's private namespace
// and the one that stands in for it. Every function may be called on any thread.
namespace base::xps::printschema
{
/// Sets the driver's private prefix, given without its colon. Null or empty text leaves it empty, so that the
/// next handler puts the fallback in its place.
void SetPrivatePrefix(const wchar_t* prefix);

/// Sets the fallback prefix, and the private one as well while that is empty.
void ProvideFallbackPrefixes();

/// The prefixes with their colon. The reference outlives the lock under which it was taken: a prefix is set
/// before the documents that use it are read.
const utility::Bstr& GetPrivatePrefix();
const utility::Bstr& GetFallbackPrefix();
} // namespace base::xps::printschema
