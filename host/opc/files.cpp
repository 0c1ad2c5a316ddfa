#include "host/opc/files.h"

#include <fstream>
#include <iterator>
#include <system_error>

namespace host::opc
{
std::string ToUtf8Path(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

std::filesystem::path FromUtf8Path(std::string_view text)
{
    return std::u8string(text.begin(), text.end());
}

std::optional<std::string> DescribeMissing(const std::filesystem::path& file)
{
    std::error_code unknown;
    if (std::filesystem::is_directory(file, unknown))
    {
        return "is a folder";
    }
    if (std::filesystem::exists(file, unknown))
    {
        return std::nullopt;
    }
    const auto folder = file.parent_path();
    return folder.empty() || std::filesystem::exists(folder, unknown) ? "there is no such file"
                                                                      : "there is no such folder";
}

std::string ReadFileBytes(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(stream), {});
    if (!stream.is_open() || stream.bad())
    {
        throw FileError(file, DescribeMissing(file).value_or("cannot be read"));
    }
    return bytes;
}
} // namespace host::opc
