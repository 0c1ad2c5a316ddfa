#pragma once

#include <functional>
#include <string>

#include "platform/win32.h"
#include "support/usertoken.h"

namespace support
{
/// Replaces the platform's print ticket functions: every call goes to the offline service, unless it is made
/// to fail. Calls are possible on any thread. A program that links this imports no print ticket library.
class TicketPlatform
{
public:
    /// Resets the gate, the count and the device.
    static void Reset();

    /// Sets a function that is called before every call, until Reset; a failing result replaces the call. The
    /// name is that of the platform's function, followed by the scope of a merge:
    /// "PTMergeAndValidatePrintTicket 0".
    static void SetGate(std::function<HRESULT(const std::string& name)> gate);

    /// Sets the device of the service, described by a file in tests/data; the built-in device without a name.
    /// For providers opened from now on, until Reset.
    static void SetDevice(const std::string& file);

    /// The number of open providers.
    static int OpenProviders();
};
} // namespace support
