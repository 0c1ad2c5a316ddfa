#include "host/diff/excerpt.h"

#include <algorithm>

#include "host/xml/encoding.h"

namespace host::diff
{
namespace
{
/// Part of a text from `start` on, with visible line ends and tabs.
std::string Excerpt(std::string_view text, std::size_t start, std::size_t length)
{
    std::string shown = start > 0 ? "..." : "";
    for (const char c : text.substr(std::min(start, text.size())))
    {
        const bool isContinued = xml::IsUtf8Continuation(c);
        if (length == 0 && !isContinued)
        {
            return shown + "...";
        }
        length -= isContinued ? 0 : 1;
        switch (c)
        {
        case '\n':
            shown += "\\n";
            break;
        case '\r':
            shown += "\\r";
            break;
        case '\t':
            shown += "\\t";
            break;
        default:
            shown += c;
        }
    }
    return shown;
}
} // namespace

std::string FormatChange(std::string_view one, std::string_view other)
{
    constexpr std::size_t shownLength = 60;
    constexpr std::size_t shownBefore = 20;
    const auto parted = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    const auto alike = static_cast<std::size_t>(parted.first - one.begin());
    const bool isLong = std::max(one.size(), other.size()) > shownLength;
    std::size_t start = isLong && alike > shownBefore ? alike - shownBefore : 0;
    // Do not start in the middle of a character.
    while (start > 0 && xml::IsUtf8Continuation(one[start]))
    {
        --start;
    }
    return Excerpt(one, start, shownLength) + " -> " + Excerpt(other, start, shownLength);
}
} // namespace host::diff
