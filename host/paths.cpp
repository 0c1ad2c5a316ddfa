#include "host/paths.h"

namespace host
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
} // namespace host
