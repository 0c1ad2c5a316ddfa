#pragma once

#include <regex>
#include <string>

#include "base/logging/errors.h"

namespace tests
{
/// The message of what `act` throws as `Exception`, its line number as "...", or a note that it threw
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

/// The HRESULT of the HresultError that `act` throws, S_OK for none. `source` receives the path that it
/// names.
template <typename Action>
HRESULT HresultOf(Action&& act, std::string* source = nullptr)
{
    try
    {
        act();
    }
    catch (const base::exception::HresultError& error)
    {
        if (source != nullptr)
        {
            *source = std::string(error.what()).substr(0, std::string(error.what()).find('('));
        }
        return error.GetHresult();
    }
    return S_OK;
}
} // namespace tests
