#pragma once

#include <filesystem>
#include <string>

namespace host
{
/// Throws std::runtime_error, naming the file, when it cannot be read.
std::string ReadFileBytes(const std::filesystem::path& file);
} // namespace host
