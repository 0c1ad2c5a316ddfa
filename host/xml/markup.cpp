#include "host/xml/markup.h"

#include <algorithm>
#include <optional>

#include "host/xml/encoding.h"

namespace host::xml
{
namespace
{
constexpr std::string_view kBlanks = " \t\r\n";

std::string_view WithoutLeadingBlanks(std::string_view text)
{
    return text.substr(std::min(text.find_first_not_of(kBlanks), text.size()));
}

/// The encoding that an XML declaration names, in lower case; none when it names none. `text` is what follows
/// its target.
std::optional<std::string> ReadEncoding(std::string_view text)
{
    std::optional<std::string> encoding;
    while (!(text = WithoutLeadingBlanks(text)).empty())
    {
        const std::string_view name = text.substr(0, text.find_first_of(" \t\r\n="));
        text = WithoutLeadingBlanks(text.substr(name.size()));
        const std::string_view quoted = text.starts_with('=') ? WithoutLeadingBlanks(text.substr(1)) : "";
        const bool isQuoted = quoted.starts_with('"') || quoted.starts_with('\'');
        const std::size_t end = isQuoted ? quoted.find(quoted.front(), 1) : std::string_view::npos;
        if (end == std::string_view::npos)
        {
            throw MarkupError("has a malformed XML declaration");
        }
        if (name == "encoding")
        {
            encoding = std::string(quoted.substr(1, end - 1));
            std::transform(encoding->begin(), encoding->end(), encoding->begin(), [](char c) {
                return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
            });
        }
        text = quoted.substr(end + 1);
    }
    return encoding;
}

void BlankDeclaration(std::string& text)
{
    if (!text.starts_with("<?xml") || kBlanks.find(text[5]) == std::string_view::npos)
    {
        return;
    }
    const std::size_t end = text.find("?>");
    if (end == std::string::npos)
    {
        throw MarkupError("has an XML declaration without end");
    }
    // As much as the module takes, and far more than a declaration needs.
    constexpr std::size_t longest = 1024;
    const std::string_view declaration = std::string_view(text).substr(5, end - 5);
    if (declaration.size() + 2 > longest)
    {
        throw MarkupError("has an XML declaration of more than " + std::to_string(longest) + " characters");
    }
    const auto encoding = ReadEncoding(declaration);
    if (encoding && *encoding != "utf-8" && *encoding != "utf-16")
    {
        throw MarkupError("is encoded in " + *encoding + ", neither in UTF-8 nor in UTF-16");
    }
    std::replace_if(
        text.begin(),
        text.begin() + static_cast<std::ptrdiff_t>(end) + 2,
        [](char c) { return c != '\n'; },
        ' ');
}

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

bool DeclaresDocumentType(std::string_view text)
{
    while (true)
    {
        text = WithoutLeadingBlanks(text);
        const std::string_view rest = SkipMiscellany(text);
        if (rest.size() == text.size())
        {
            return text.starts_with("<!DOCTYPE");
        }
        text = rest;
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
    BlankDeclaration(text);
    if (DeclaresDocumentType(text))
    {
        throw MarkupError("declares a document type");
    }
    RefuseExcess(text);
    return text;
}

void RequireSafeMarkup(std::string_view bytes)
{
    static_cast<void>(DecodeMarkup(bytes));
}
} // namespace host::xml
