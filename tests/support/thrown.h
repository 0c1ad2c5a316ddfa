#pragma once

#include <regex>
#include <string>

namespace support
{
/// The message of the `Exception` that `act` throws, with "..." for the line number, or a note that it threw
/// nothing.
template <typename Exception, typename Action>
std::string MessageOf(Action&& act)
{
    try
    {
        act();
    }
    catch (const Exception& error)
    {
        return std::regex_replace(error.what(), std::regex("\\(\\d+\\) : "), "(...) : ");
    }
    return "(nothing was thrown)";
}
} // namespace support
