#pragma once

#include "platform/win32.h"

// What the offline prntvpt.dll exports by name, beside the platform's functions by ordinal (2, 4, 6, 7):
// the host loads the library by its full path and takes these two with GetProcAddress. They may be called on
// any thread; as for the platform's functions, COM must be initialised on it.
extern "C"
{
    /// Describes the device that providers opened from now on answer for: the bytes of a PrintCapabilities
    /// document, which the call copies. Null restores the built-in description. A description that cannot be
    /// used is refused with E_PRINTCAPABILITIES_FORMAT and its reason, which the caller frees, and the one
    /// before it stays; `reason` may be null and is cleared first.
    [[nodiscard]] HRESULT WINAPI SetDeviceDescription(const void* xml, ULONG byteCount, BSTR* reason);

    /// The count of providers that are open now, on all threads: zero when every one was closed.
    ULONG WINAPI GetOpenProviderCount();
}

namespace host::ticketservice
{
using SetDeviceDescriptionFunction = decltype(&SetDeviceDescription);
using GetOpenProviderCountFunction = decltype(&GetOpenProviderCount);
} // namespace host::ticketservice
