#include "host/opc/partname.h"

#include <algorithm>
#include <vector>

#include "host/xml/markup.h"

namespace host::opc
{
namespace
{
constexpr std::string_view kRelationshipsFolder = "/_rels/";
constexpr std::string_view kRelationshipsEnding = ".rels";

bool IsLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// RFC 3986: characters that mean the same plain and percent-encoded.
bool IsUnreserved(char c)
{
    return IsLetter(c) || IsDigit(c) || std::string_view("-._~").find(c) != std::string_view::npos;
}

/// RFC 3986: what a segment may hold as it stands.
bool IsSegmentCharacter(char c)
{
    return IsUnreserved(c) || std::string_view("!$&'()*+,;=:@").find(c) != std::string_view::npos;
}

std::optional<char> DecodeHex(std::string_view digits)
{
    const auto value = xml::ParseNumber<unsigned>(digits, 16);
    return value && digits.size() == 2 ? std::optional(static_cast<char>(*value)) : std::nullopt;
}

void AppendEncoded(std::string& text, char c)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(c);
    text += '%';
    text += digits[value / 16];
    text += digits[value % 16];
}

/// The path in the one spelling of part names. Encoded separators stay encoded.
std::string Canonical(std::string_view path)
{
    std::string text;
    for (std::size_t at = 0; at < path.size(); ++at)
    {
        const auto decoded = path[at] == '%' ? DecodeHex(path.substr(at + 1, 2)) : std::nullopt;
        if (decoded.has_value())
        {
            at += 2;
            IsUnreserved(*decoded) ? void(text += *decoded) : AppendEncoded(text, *decoded);
        }
        else if (path[at] == '/' || path[at] == '\\')
        {
            text += '/';
        }
        else
        {
            IsSegmentCharacter(path[at]) ? void(text += path[at]) : AppendEncoded(text, path[at]);
        }
    }
    return text;
}

std::vector<std::string_view> Split(std::string_view path)
{
    std::vector<std::string_view> segments;
    while (true)
    {
        const std::size_t slash = path.find('/');
        segments.push_back(path.substr(0, slash));
        if (slash == std::string_view::npos)
        {
            return segments;
        }
        path.remove_prefix(slash + 1);
    }
}

/// OPC: a segment is not empty, does not end in a dot and holds no encoded separator.
bool IsSegment(std::string_view segment)
{
    return !segment.empty() && segment.back() != '.' && segment.find("%2F") == std::string_view::npos &&
           segment.find("%5C") == std::string_view::npos;
}

std::string_view WithoutLeadingSeparator(std::string_view itemName)
{
    const bool leads = !itemName.empty() && (itemName.front() == '/' || itemName.front() == '\\');
    return itemName.substr(leads ? 1 : 0);
}

bool LiesOutside(std::string_view path)
{
    const auto end = std::find_if_not(path.begin(), path.end(), [](char c) {
        return IsLetter(c) || IsDigit(c) || c == '+' || c == '-' || c == '.';
    });
    const bool hasScheme = end != path.end() && *end == ':' && IsLetter(path.front());
    return hasScheme || path.starts_with("//");
}

/// The text of the part name that a reference resolves to.
std::string ResolveAgainst(std::string_view folder, std::string_view reference)
{
    const auto require = [&](bool holds, const char* fault) {
        if (!holds)
        {
            throw xml::MarkupError("refers to \"" + std::string(reference) + "\", which " + fault);
        }
    };
    const std::string_view path = reference.substr(0, reference.find_first_of("?#"));
    require(!path.empty(), "names no part");
    require(!LiesOutside(path), "lies outside the package");
    const std::string canonical = Canonical(path);
    const std::string joined =
        canonical.starts_with('/') ? canonical.substr(1) : std::string(folder.substr(1)) + canonical;
    std::vector<std::string_view> steps;
    for (const std::string_view segment : Split(joined))
    {
        if (segment == "..")
        {
            require(!steps.empty(), "leads out of the package");
            steps.pop_back();
        }
        else if (segment != ".")
        {
            steps.push_back(segment);
        }
    }
    require(!steps.empty() && std::all_of(steps.begin(), steps.end(), IsSegment), "is not a part name");
    std::string text;
    for (const std::string_view step : steps)
    {
        text.append("/").append(step);
    }
    return text;
}

std::string_view FolderOf(std::string_view name)
{
    return name.substr(0, name.rfind('/') + 1);
}

/// The number in "[12]", without leading zeros.
std::optional<std::uint32_t> ParseBracketed(std::string_view text)
{
    if (text.size() < 3 || text.front() != '[' || text.back() != ']')
    {
        return std::nullopt;
    }
    const std::string_view digits = text.substr(1, text.size() - 2);
    const bool isPlain = digits.size() == 1 || digits.front() != '0';
    return isPlain ? xml::ParseNumber<std::uint32_t>(digits) : std::nullopt;
}
} // namespace

PartName::PartName(std::string text) : m_text(std::move(text)), m_key(ToLowerAscii(m_text)) {}

std::optional<PartName> PartName::FromItem(std::string_view itemName)
{
    const std::string path = Canonical(WithoutLeadingSeparator(itemName));
    const auto segments = Split(path);
    if (!std::all_of(segments.begin(), segments.end(), IsSegment))
    {
        return std::nullopt;
    }
    return PartName("/" + path);
}

PartName PartName::Resolve(std::string_view reference) const
{
    return PartName(ResolveAgainst(FolderOf(m_text), reference));
}

std::optional<PartName> PartName::TryResolve(std::string_view reference) const
{
    try
    {
        return Resolve(reference);
    }
    catch (const xml::MarkupError&)
    {
        return std::nullopt;
    }
}

PartName PartName::RelationshipsPart() const
{
    const std::string_view folder = FolderOf(m_text);
    std::string text(folder);
    text.append(kRelationshipsFolder.substr(1));
    text.append(m_text, folder.size()).append(kRelationshipsEnding);
    return PartName(std::move(text));
}

std::optional<PartName> PartName::RelationshipsSource() const
{
    const std::size_t file = FolderOf(m_key).size();
    const bool inFolder = std::string_view(m_key).substr(0, file).ends_with(kRelationshipsFolder);
    if (!inFolder || !m_key.ends_with(kRelationshipsEnding))
    {
        return std::nullopt;
    }
    std::string text = m_text.substr(0, file - kRelationshipsFolder.size() + 1);
    text.append(m_text, file, m_text.size() - file - kRelationshipsEnding.size());
    return PartName(std::move(text));
}

std::string_view PartName::Extension() const noexcept
{
    const std::string_view file = std::string_view(m_text).substr(FolderOf(m_text).size());
    const std::size_t dot = file.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : file.substr(dot + 1);
}

ItemRole ParseItemName(std::string_view itemName)
{
    const ItemRole whole{itemName, std::nullopt, false};
    const std::size_t separator = itemName.find_last_of("/\\");
    if (separator == std::string_view::npos)
    {
        return whole;
    }
    const std::string_view segment = itemName.substr(separator + 1);
    const std::size_t bracketEnd = segment.find(']');
    if (bracketEnd == std::string_view::npos)
    {
        return whole;
    }
    const auto piece = ParseBracketed(segment.substr(0, bracketEnd + 1));
    const std::string ending = ToLowerAscii(segment.substr(bracketEnd + 1));
    if (!piece.has_value() || (ending != ".piece" && ending != ".last.piece"))
    {
        return whole;
    }
    return {itemName.substr(0, separator), piece, ending == ".last.piece"};
}

bool StepsUp(std::string_view itemName)
{
    const std::string path = Canonical(itemName);
    const auto segments = Split(path);
    return std::find(segments.begin(), segments.end(), "..") != segments.end();
}
} // namespace host::opc
