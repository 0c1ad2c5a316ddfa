#include "host/xml/markup.h"

#include <algorithm>

#include "host/xml/encoding.h"

namespace host::xml
{
namespace
{
/// What follows the comment, instruction or character data that begins `text`; the same text where it begins
/// otherwise.
std::string_view SkipMiscellany(std::string_view text)
{
    const std::string_view end = text.starts_with("<!--")        ? "-->"
                                 : text.starts_with("<?")        ? "?>"
                                 : text.starts_with("<![CDATA[") ? "]]>"
                                                                 : "";
    const std::size_t found = end.empty() ? 0 : text.find(end, end.size() == 2 ? 2 : 4);
    return found == std::string_view::npos ? std::string_view() : text.substr(found + end.size());
}

/// Where the tag ends that begins `text`, and how many attributes it has and references in them.
struct Tag
{
    std::size_t size;
    std::size_t attributes;
    std::ptrdiff_t references;
};

Tag MeasureTag(std::string_view text)
{
    Tag tag{0, 0, 0};
    while (tag.size < text.size() && text[tag.size] != '>')
    {
        const char c = text[tag.size];
        tag.attributes += c == '=' ? 1 : 0;
        const bool opens = c == '"' || c == '\'';
        const std::size_t closed = opens ? text.find(c, tag.size + 1) : tag.size;
        const std::size_t end = std::min(closed, text.size() - 1) + 1;
        tag.references += std::count(text.begin() + static_cast<std::ptrdiff_t>(tag.size),
                                     text.begin() + static_cast<std::ptrdiff_t>(end),
                                     '&');
        tag.size = end;
    }
    return tag;
}

/// Readers take a time that grows with the square of depth, of attributes and of references in them: what no
/// document needs is not given to them.
void RefuseExcess(std::string_view text)
{
    constexpr std::size_t depthLimit = 1000;
    constexpr std::size_t attributeLimit = 1000;
    constexpr std::ptrdiff_t referenceLimit = 10'000;
    std::size_t depth = 0;
    while ((text = text.substr(std::min(text.find('<'), text.size()))).size() > 1)
    {
        if (text[1] == '!' || text[1] == '?')
        {
            const std::string_view rest = SkipMiscellany(text);
            text = rest.size() < text.size() ? rest : text.substr(2);
            continue;
        }
        const Tag tag = MeasureTag(text);
        const bool isWhole = text[1] != '/' && text[tag.size - 1] != '/';
        depth += isWhole ? 1 : 0;
        depth -= text[1] == '/' && depth > 0 ? 1 : 0;
        if (depth > depthLimit)
        {
            throw MarkupError("nests elements more than " + std::to_string(depthLimit) + " deep");
        }
        if (tag.attributes > attributeLimit)
        {
            throw MarkupError("has an element with more than " + std::to_string(attributeLimit) +
                              " attributes");
        }
        if (tag.references > referenceLimit)
        {
            throw MarkupError("has an element with more than " + std::to_string(referenceLimit) +
                              " references");
        }
        text.remove_prefix(tag.size);
    }
}
} // namespace

std::string FormatPlace(MarkupPlace place)
{
    return "line " + std::to_string(place.line) + ", column " + std::to_string(place.column);
}

std::string DecodeMarkup(std::string_view bytes)
{
    std::string text = ToUtf8(bytes);
    RefuseExcess(text);
    return text;
}
} // namespace host::xml
