#include "host/diff/markupdiff.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "host/xml/elementreader.h"

namespace host::diff
{
namespace
{
constexpr std::string_view kPrintSchema =
    "http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework";
constexpr std::string_view kSchemaInstance = "http://www.w3.org/2001/XMLSchema-instance";
constexpr std::string_view kBlanks = " \t\r\n";

std::string QualifiedName(std::string_view namespaceUri, std::string_view localName)
{
    return namespaceUri.empty() ? std::string(localName)
                                : "{" + std::string(namespaceUri) + "}" + std::string(localName);
}

std::string LocalName(const std::string& name)
{
    return name.substr(name.find('}') + 1);
}

/// What can differ: a start tag or text.
struct Item
{
    /// Of text, that of the tags beside it.
    int depth = 0;
    /// With the namespace; empty for text.
    std::string name;
    std::string text;
    std::map<std::string, std::string> attributes;
};

/// The prefixes that are declared where the reading stands.
class PrefixScope
{
public:
    void Enter(const xml::Element& element)
    {
        std::erase_if(m_bindings, [&](const auto& binding) { return binding.first >= element.depth; });
        for (const xml::PrefixBinding& binding : element.prefixes)
        {
            m_bindings.emplace_back(element.depth, binding);
        }
    }

    /// "psk:ISOA4" as "ISOA4 in " its namespace; any other text as it stands.
    std::string Expand(const std::string& text) const
    {
        const std::size_t colon = text.find(':');
        if (colon == text.npos)
        {
            return text;
        }
        const std::string prefix = text.substr(0, colon);
        const auto found = std::find_if(m_bindings.rbegin(), m_bindings.rend(), [&](const auto& binding) {
            return binding.second.prefix == prefix;
        });
        return found == m_bindings.rend() ? text
                                          : text.substr(colon + 1) + " in " + found->second.namespaceUri;
    }

private:
    std::vector<std::pair<int, xml::PrefixBinding>> m_bindings;
};

void ReadItems(std::string_view markup, const std::function<void(Item&&)>& onItem)
{
    PrefixScope prefixes;
    const auto takeElement = [&](const xml::Element& element) {
        prefixes.Enter(element);
        Item item{element.depth, QualifiedName(element.namespaceUri, element.localName), {}, {}};
        for (const xml::Attribute& attribute : element.attributes)
        {
            const bool isName = element.namespaceUri == kPrintSchema && attribute.localName == "name";
            const bool isType = attribute.namespaceUri == kSchemaInstance && attribute.localName == "type";
            item.attributes.emplace(QualifiedName(attribute.namespaceUri, attribute.localName),
                                    isName || isType ? prefixes.Expand(attribute.value) : attribute.value);
        }
        onItem(std::move(item));
    };
    const auto takeText = [&](const std::string& text, int depth) {
        if (text.find_first_not_of(kBlanks) != text.npos)
        {
            onItem({depth + 1, {}, text, {}});
        }
    };
    xml::ReadMarkup(markup, takeElement, takeText);
}

/// The items of a document one behind the other in little more room than the document itself takes.
class ItemRoll
{
public:
    void Append(const Item& item)
    {
        Put(std::to_string(item.depth));
        Put(item.name);
        Put(item.text);
        for (const auto& [name, value] : item.attributes)
        {
            Put(name);
            Put(value);
        }
        m_bytes += kItemEnd;
    }

    /// Empty after the last one.
    std::optional<Item> Next()
    {
        if (m_position == m_bytes.size())
        {
            return std::nullopt;
        }
        Item item;
        item.depth = std::stoi(Take());
        item.name = Take();
        item.text = Take();
        while (m_bytes[m_position] != kItemEnd)
        {
            std::string name = Take();
            item.attributes.emplace(std::move(name), Take());
        }
        ++m_position;
        return item;
    }

private:
    // Neither may stand in XML.
    static constexpr char kFieldEnd = '\0';
    static constexpr char kItemEnd = '\1';

    void Put(std::string_view field) { m_bytes.append(field) += kFieldEnd; }

    std::string Take()
    {
        const std::size_t end = m_bytes.find(kFieldEnd, m_position);
        std::string field = m_bytes.substr(m_position, end - m_position);
        m_position = end + 1;
        return field;
    }

    std::string m_bytes;
    std::size_t m_position = 0;
};

/// Where the reading stands, as a path that XPath understands but for the namespaces.
class ElementPath
{
public:
    void Enter(const Item& item)
    {
        LeaveTo(item.depth);
        const std::string name = LocalName(item.name);
        m_levels.resize(static_cast<std::size_t>(item.depth) + 1);
        const std::size_t number = ++m_levels.back().children[name];
        m_levels.back().step = item.depth == 0 ? name : name + "[" + std::to_string(number) + "]";
    }

    /// The path of what holds the items of this depth.
    std::string HolderOf(int depth) const
    {
        std::string path;
        for (std::size_t level = 0; level < std::min(m_levels.size(), static_cast<std::size_t>(depth));
             ++level)
        {
            path += "/" + m_levels[level].step;
        }
        return path.empty() ? "/" : path;
    }

private:
    /// The elements of one depth that have the same holder.
    struct Level
    {
        std::map<std::string, std::size_t> children;
        std::string step;
    };

    void LeaveTo(int depth)
    {
        m_levels.resize(std::min(m_levels.size(), static_cast<std::size_t>(depth) + 1));
    }

    std::vector<Level> m_levels;
};

/// Some of a text from `start` on; line ends and tabs show.
std::string Excerpt(std::string_view text, std::size_t start, std::size_t length)
{
    std::string shown = start > 0 ? "..." : "";
    for (const char c : text.substr(std::min(start, text.size())))
    {
        const bool isContinued = (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
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

std::string DescribeItem(const Item* item)
{
    if (item == nullptr)
    {
        return "nothing more";
    }
    return item->name.empty() ? "text" : "<" + LocalName(item->name) + ">";
}

std::string ValueOr(const std::map<std::string, std::string>& values, const std::string& name)
{
    const auto found = values.find(name);
    return found == values.end() ? "none" : found->second;
}

/// Of two tags of one name.
std::optional<std::string> FindAttributeDifference(const Item& one, const Item& other)
{
    for (const Item* const item : {&one, &other})
    {
        for (const auto& [name, value] : item->attributes)
        {
            if (!one.attributes.contains(name) || !other.attributes.contains(name) ||
                one.attributes.at(name) != other.attributes.at(name))
            {
                return "/@" + LocalName(name) + ": " +
                       FormatChange(ValueOr(one.attributes, name), ValueOr(other.attributes, name));
            }
        }
    }
    return std::nullopt;
}

/// Holds the items of one document against those of another.
class Comparison
{
public:
    explicit Comparison(ItemRoll& expected) : m_expected(expected) {}

    void Take(const Item& item)
    {
        if (!m_difference)
        {
            Compare(m_expected.Next(), &item);
        }
    }

    std::optional<std::string> Finish()
    {
        if (!m_difference)
        {
            Compare(m_expected.Next(), nullptr);
        }
        return m_difference;
    }

private:
    void Compare(const std::optional<Item>& one, const Item* other)
    {
        const Item* const first = one ? &*one : nullptr;
        if (first == nullptr && other == nullptr)
        {
            return;
        }
        if (first == nullptr || other == nullptr || first->depth != other->depth ||
            first->name != other->name)
        {
            DescribeTurn(first, other);
            return;
        }
        if (first->name.empty())
        {
            if (first->text != other->text)
            {
                m_difference = m_path.HolderOf(first->depth) + ": " + FormatChange(first->text, other->text);
            }
            return;
        }
        m_path.Enter(*first);
        if (const auto difference = FindAttributeDifference(*first, *other))
        {
            m_difference = m_path.HolderOf(first->depth + 1) + *difference;
        }
    }

    /// Here the trees part: what is deeper down comes in the innermost element that both are in.
    void DescribeTurn(const Item* one, const Item* other)
    {
        const int depth = std::max(one != nullptr ? one->depth : 0, other != nullptr ? other->depth : 0);
        const Item* const inOne = one != nullptr && one->depth == depth ? one : nullptr;
        const Item* const inOther = other != nullptr && other->depth == depth ? other : nullptr;
        std::string from = DescribeItem(inOne);
        std::string to = DescribeItem(inOther);
        if (from == to)
        {
            from = "<" + one->name + ">";
            to = "<" + other->name + ">";
        }
        m_difference = m_path.HolderOf(depth) + ": " + from + " -> " + to;
    }

    ItemRoll& m_expected;
    ElementPath m_path;
    std::optional<std::string> m_difference;
};
} // namespace

std::optional<std::string> FindMarkupDifference(std::string_view one, std::string_view other)
{
    ItemRoll items;
    ReadItems(one, [&](Item&& item) { items.Append(item); });
    Comparison comparison(items);
    ReadItems(other, [&](Item&& item) { comparison.Take(item); });
    return comparison.Finish();
}

std::string FormatChange(std::string_view one, std::string_view other)
{
    constexpr std::size_t shownLength = 60;
    constexpr std::size_t shownBefore = 20;
    const auto parted = std::mismatch(one.begin(), one.end(), other.begin(), other.end());
    const auto alike = static_cast<std::size_t>(parted.first - one.begin());
    const bool isLong = std::max(one.size(), other.size()) > shownLength;
    std::size_t start = isLong && alike > shownBefore ? alike - shownBefore : 0;
    // Not in the middle of a character.
    while (start > 0 && (static_cast<unsigned char>(one[start]) & 0xC0U) == 0x80U)
    {
        --start;
    }
    return Excerpt(one, start, shownLength) + " -> " + Excerpt(other, start, shownLength);
}
} // namespace host::diff
