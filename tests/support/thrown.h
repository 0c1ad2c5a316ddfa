#pragma once

#include <string>

namespace support
{
/// The message of what `act` throws as `Exception`, or a note that it threw nothing.
template <typename Exception, typename Action>
std::string MessageOf(Action&& act)
{
    try
    {
        act();
    }
    catch (const Exception& error)
    {
        return error.what();
    }
    return "(nothing was thrown)";
}
} // namespace support
