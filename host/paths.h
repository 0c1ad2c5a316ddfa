#pragma once

#include <filesystem>
#include <string>
#include <string_view>

// Paths as they are typed and shown: UTF-8 on every system.
namespace host
{
std::string ToUtf8Path(const std::filesystem::path& path);
std::filesystem::path FromUtf8Path(std::string_view text);
} // namespace host
