#pragma once

#include <functional>
#include <string>

#include "platform/win32.h"
#include "support/usertoken.h"

namespace support
{
/// The platform's print ticket functions as tests see them: every call goes to the offline service, unless it
/// is told to fail. Calls may come on any thread. A program that links this takes no print ticket library by
/// import.
class TicketPlatform
{
public:
    /// Forgets the gate, the count and the device.
    static void Reset();

    /// Shows every call, before it is made, to somebody who may answer a failing code in its place; until
    /// Reset. Its name is as "PTOpenProvider"; a merge has its scope behind it, as
    /// "PTMergeAndValidatePrintTicket 0".
    static void SetGate(std::function<HRESULT(const std::string& name)> gate);

    /// Lets the service answer for a device, described by a file that the suites run beside; for its built-in
    /// one without a name. Until Reset, for providers opened from now on.
    static void SetDevice(const std::string& file);

    /// Providers opened and not closed again.
    static int OpenProviders();
};
} // namespace support
