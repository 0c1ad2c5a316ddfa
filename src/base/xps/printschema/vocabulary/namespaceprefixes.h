#pragma once

#include "base/utility/bstr.h"

// The private prefix, which is that of the driver's namespace, and the fallback prefix, which replaces it if
// the driver has none. Both belong to the whole process (docs/surface.md). Every function may be called on
// any thread, also while another filter runs.
namespace base::xps::printschema
{
/// Sets the driver's private prefix, given without colon. For null or empty text the fallback prefix is used,
/// as soon as a handler has provided it.
void SetPrivatePrefix(const wchar_t* prefix);

/// Sets the fallback prefix, which is also the private prefix while that is empty.
void ProvideFallbackPrefixes();

/// The prefixes with their colon. The references are valid for the life of the process.
const utility::Bstr& GetPrivatePrefix();
const utility::Bstr& GetFallbackPrefix();
} // namespace base::xps::printschema
