#include "host/report/html/htmltext.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <regex>
#include <utility>

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
    constexpr std::pair<char32_t, std::string_view> entities[] = {{U'&', "&amp;"},
                                                                  {U'<', "&lt;"},
                                                                  {U'>', "&gt;"},
                                                                  {U'"', "&quot;"},
                                                                  {U'\'', "&#39;"},
                                                                  {xml::kNoCharacter, "&#65533;"}};
    const auto found = std::find_if(std::begin(entities), std::end(entities), [&](const auto& entity) {
        return entity.first == character;
    });
    return found == std::end(entities) ? std::string_view() : found->second;
}
} // namespace

std::string EscapeHtml(std::string_view text, bool keepsLines)
{
    std::string escaped;
    while (!text.empty())
    {
        const auto [character, length] = xml::DecodeFirst(text);
        if (const auto entity = FindEntity(character); !entity.empty())
        {
            escaped += entity;
        }
        else if (IsUnseen(character) && !(keepsLines && character == U'\n'))
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

std::string EscapeHtmlName(std::string_view name)
{
    // No entity that the escaping makes has a small letter before a capital one.
    static const std::regex wordStart("([a-z])(?=[A-Z])");
    return std::regex_replace(EscapeHtml(name), wordStart, "$1<wbr>");
}

std::string CodeOf(std::string_view text)
{
    return "<code>" + EscapeHtml(text) + "</code>";
}
} // namespace host::report::html
