#pragma once

#include <string>
#include <string_view>

namespace host::diff
{
/// Two values side by side, long ones cut to where they differ: "816 -> 1056.00".
std::string FormatChange(std::string_view one, std::string_view other);
} // namespace host::diff
