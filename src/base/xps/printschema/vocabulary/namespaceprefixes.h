#pragma once

#include "base/utility/bstr.h"

// The two prefixes that are the same for every ticket of the process: that of the driver's private namespace
// and the one that stands in for it. Every function may be called on any thread, also while another filter of
// the process is at work.
namespace base::xps::printschema
{
/// Sets the driver's private prefix, given without its colon. Null or empty text leaves it empty, so that the
/// fallback stands in for it once a handler has provided that.
void SetPrivatePrefix(const wchar_t* prefix);

/// Sets the fallback prefix, which is also the private one while that is empty.
void ProvideFallbackPrefixes();

/// The prefixes with their colon. The references stay good for the life of the process.
const utility::Bstr& GetPrivatePrefix();
const utility::Bstr& GetFallbackPrefix();
} // namespace base::xps::printschema
