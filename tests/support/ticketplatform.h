#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/win32.h"
#include "support/usertoken.h"

namespace support
{
/// The platform's print ticket functions as tests see them: every call goes to the offline service, unless it
/// is told to fail, and is written down. Calls may come on any thread. A program that links this takes no
/// print ticket library by import.
class TicketPlatform
{
public:
    struct Call
    {
        /// As "PTOpenProvider"; a merge has its scope behind it, as "PTMergeAndValidatePrintTicket 0".
        std::string name;
        /// Whether the thread acted in a user's name during the call.
        bool isImpersonating = false;
    };

    /// Forgets what happened and what was to fail.
    static void Reset();

    /// Lets the call of this index, counted from Reset on, answer `result` in place of being made.
    static void FailCall(std::size_t index, HRESULT result);

    /// Shows every call, before it is made, to somebody who may answer a failing code in its place; until
    /// Reset.
    static void SetGate(std::function<HRESULT(const std::string& name)> gate);

    static const std::vector<Call>& Calls();
    static std::vector<std::string> CallNames();

    /// Providers opened and not closed again.
    static int OpenProviders();
};
} // namespace support
