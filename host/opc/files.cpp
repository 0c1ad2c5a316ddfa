#include "host/opc/files.h"

#include <fstream>
#include <iterator>

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

std::string ReadFileBytes(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(stream), {});
    if (!stream.is_open() || stream.bad())
    {
        throw FileError(file, "cannot be read");
    }
    return bytes;
}
} // namespace host::opc
