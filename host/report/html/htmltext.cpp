#include "host/report/html/htmltext.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "base/logging/log.h"
#include "host/xml/encoding.h"

namespace host::report::html
{
namespace
{
struct Range
{
    char32_t first;
    char32_t last;
};

// Controls; soft hyphen; Arabic letter mark; Mongolian vowel separator; zero-width characters and direction
// marks; separators, embeddings and overrides; joiners, isolates; byte-order mark; interlinear marks; tags.
constexpr std::array kUnseen = {Range{0x00, 0x1F},
                                Range{0x7F, 0x9F},
                                Range{0xAD, 0xAD},
                                Range{0x61C, 0x61C},
                                Range{0x180E, 0x180E},
                                Range{0x200B, 0x200F},
                                Range{0x2028, 0x202E},
                                Range{0x2060, 0x206F},
                                Range{0xFEFF, 0xFEFF},
                                Range{0xFFF9, 0xFFFB},
                                Range{0xE0000, 0xE007F}};

bool IsUnseen(char32_t character)
{
    return std::any_of(kUnseen.begin(), kUnseen.end(), [&](const Range& range) {
        return character >= range.first && character <= range.last;
    });
}

std::string_view FindEntity(char32_t character)
{
    switch (character)
    {
    case U'&':
        return "&amp;";
    case U'<':
        return "&lt;";
    case U'>':
        return "&gt;";
    case U'"':
        return "&quot;";
    case U'\'':
        return "&#39;";
    case xml::kNoCharacter:
        return "&#65533;";
    default:
        return {};
    }
}
} // namespace

std::string EscapeHtml(std::string_view text)
{
    std::string escaped;
    while (!text.empty())
    {
        const auto [character, length] = xml::DecodeFirst(text);
        if (const auto entity = FindEntity(character); !entity.empty())
        {
            escaped += entity;
        }
        else if (IsUnseen(character))
        {
            escaped += base::logging::FormatString("\\u{%X}", static_cast<unsigned>(character));
        }
        else
        {
            escaped += text.substr(0, length);
        }
        text.remove_prefix(length);
    }
    return escaped;
}

std::string EscapeHtmlLines(std::string_view text)
{
    std::string escaped;
    while (!text.empty())
    {
        const std::size_t end = text.find('\n');
        escaped += EscapeHtml(text.substr(0, end));
        escaped += end == std::string_view::npos ? "" : "\n";
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return escaped;
}

std::string EscapeHtmlName(std::string_view name)
{
    const auto isBetween = [](char c, char first, char last) { return c >= first && c <= last; };
    std::string broken;
    // No entity that the escaping makes has a small letter before a capital one.
    for (const char c : EscapeHtml(name))
    {
        const bool startsWord =
            isBetween(c, 'A', 'Z') && !broken.empty() && isBetween(broken.back(), 'a', 'z');
        broken += startsWord ? "<wbr>" : "";
        broken += c;
    }
    return broken;
}

std::string CodeOf(std::string_view text)
{
    return "<code>" + EscapeHtml(text) + "</code>";
}
} // namespace host::report::html
