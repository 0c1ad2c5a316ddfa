#include "host/diff/differencetext.h"

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

std::string LocalName(const std::string& name)
{
    return name.substr(name.find('}') + 1);
}

void ElementPath::Enter(const Item& item)
{
    const std::string name = LocalName(item.name);
    // Deeper levels have ended.
    m_levels.resize(static_cast<std::size_t>(item.depth) + 1);
    const std::size_t number = ++m_levels.back().children[name];
    m_levels.back().step = item.depth == 0 ? name : name + "[" + std::to_string(number) + "]";
}

std::string ElementPath::ParentOf(int depth) const
{
    std::string path;
    for (std::size_t level = 0; level < std::min(m_levels.size(), static_cast<std::size_t>(depth)); ++level)
    {
        path += "/" + m_levels[level].step;
    }
    return path.empty() ? "/" : path;
}

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
