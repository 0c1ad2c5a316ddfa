#include "host/diff/packagediff.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "host/tickets/ticketdocument.h"
#include "host/xml/encoding.h"
#include "host/xml/reader.h"

namespace host::diff
{
namespace
{
/// A start tag or a text: what is compared.
struct Item
{
    /// A text has the depth of the tags beside it.
    int depth = 0;
    /// With the namespace; empty for a text.
    std::string name;
    std::string text;
    std::map<std::string, std::string> attributes;
};

/// The items of a document in one block of bytes, which takes little more memory than the document. A list of
/// items would take too much: each has a map of its attributes, and a part of 64 MB may consist of short
/// tags.
class PackedItems
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
    // XML cannot contain either.
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

std::string QualifiedName(std::string_view namespaceUri, std::string_view localName)
{
    return namespaceUri.empty() ? std::string(localName)
                                : "{" + std::string(namespaceUri) + "}" + std::string(localName);
}

std::string LocalName(const std::string& qualifiedName)
{
    return qualifiedName.substr(qualifiedName.find('}') + 1);
}

/// "psk:ISOA4" as "ISOA4 in " its namespace; any other text as it stands.
std::string Expand(const std::string& text, const xml::PrefixScope& scope)
{
    const std::size_t colon = text.find(':');
    const std::string* const namespaceUri = colon == text.npos ? nullptr : scope.Find(text.substr(0, colon));
    return namespaceUri == nullptr ? text : text.substr(colon + 1) + " in " + *namespaceUri;
}

/// Collects the tags and texts of a document.
class ItemListener final : public xml::Listener
{
public:
    bool WantsText() const override { return true; }

    void OnStart(xml::Element element) override
    {
        m_scope.Enter(element);
        m_depth = element.depth + 1;
        Item item{element.depth, QualifiedName(element.namespaceUri, element.localName), {}, {}};
        for (const xml::Attribute& attribute : element.attributes)
        {
            const bool isName =
                element.namespaceUri == tickets::kFrameworkNamespace && attribute.localName == "name";
            const bool isType =
                attribute.namespaceUri == tickets::kSchemaInstanceNamespace && attribute.localName == "type";
            item.attributes.emplace(QualifiedName(attribute.namespaceUri, attribute.localName),
                                    isName || isType ? Expand(attribute.value, m_scope) : attribute.value);
        }
        m_items.Append(item);
    }

    void OnEnd() override
    {
        --m_depth;
        m_scope.Leave();
    }

    void OnText(const std::string& text) override
    {
        if (text.find_first_not_of(" \t\r\n") != text.npos)
        {
            m_items.Append({m_depth, {}, text, {}});
        }
    }

    PackedItems TakeItems() { return std::move(m_items); }

private:
    PackedItems m_items;
    xml::PrefixScope m_scope;
    // That of what stands directly in the innermost open element.
    int m_depth = 0;
};

PackedItems ReadItems(std::string_view markup)
{
    ItemListener listener;
    xml::Reader().Read(markup, listener);
    return listener.TakeItems();
}

/// The position in a document as an XPath without namespaces.
class ElementPath
{
public:
    void Enter(const Item& item)
    {
        const std::string name = LocalName(item.name);
        // Deeper levels have ended.
        m_levels.resize(static_cast<std::size_t>(item.depth) + 1);
        const std::size_t number = ++m_levels.back().children[name];
        m_levels.back().step = item.depth == 0 ? name : name + "[" + std::to_string(number) + "]";
    }

    /// The path of the parent of items at this depth.
    std::string ParentOf(int depth) const
    {
        std::string path;
        for (int level = 0; level < std::min(depth, static_cast<int>(m_levels.size())); ++level)
        {
            path += "/" + m_levels[static_cast<std::size_t>(level)].step;
        }
        return path.empty() ? "/" : path;
    }

private:
    /// The elements at one depth that have the same parent.
    struct Level
    {
        std::map<std::string, std::size_t> children;
        std::string step;
    };

    std::vector<Level> m_levels;
};

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
        const std::size_t control = std::string_view("\n\r\t").find(c);
        shown += control == std::string_view::npos ? std::string(1, c) : std::string("\\") + "nrt"[control];
    }
    return shown;
}

/// Two values side by side, long ones cut to where they differ: "816 -> 1056.00".
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

/// Compares two tags of the same name.
std::optional<std::string> FindAttributeDifference(const Item& one, const Item& other)
{
    const auto valueOf = [](const Item& item, const std::string& name) {
        const auto found = item.attributes.find(name);
        return found == item.attributes.end() ? std::nullopt : std::optional(found->second);
    };
    for (const Item* const item : {&one, &other})
    {
        for (const auto& [name, value] : item->attributes)
        {
            const auto before = valueOf(one, name);
            const auto after = valueOf(other, name);
            if (before != after)
            {
                return "/@" + LocalName(name) + ": " +
                       FormatChange(before.value_or("none"), after.value_or("none"));
            }
        }
    }
    return std::nullopt;
}

/// Where the trees differ. An item that is deeper is named by the innermost element that both trees have.
std::string DescribeBranch(const ElementPath& path,
                           const std::optional<Item>& one,
                           const std::optional<Item>& other)
{
    const int depth = std::max(one ? one->depth : 0, other ? other->depth : 0);
    const auto describe = [&](const std::optional<Item>& item, const auto& nameOf) {
        return !item || item->depth != depth ? std::string("nothing more")
               : item->name.empty()          ? std::string("text")
                                             : "<" + nameOf(item->name) + ">";
    };
    std::string from = describe(one, LocalName);
    std::string to = describe(other, LocalName);
    if (from == to)
    {
        // Elements of the same name in two namespaces.
        from = describe(one, std::identity());
        to = describe(other, std::identity());
    }
    return path.ParentOf(depth) + ": " + from + " -> " + to;
}
} // namespace

std::optional<std::string> FindMarkupDifference(std::string_view one, std::string_view other)
{
    PackedItems before = ReadItems(one);
    PackedItems after = ReadItems(other);
    ElementPath path;
    for (;;)
    {
        const std::optional<Item> first = before.Next();
        const std::optional<Item> second = after.Next();
        if (!first && !second)
        {
            return std::nullopt;
        }
        if (!first || !second || first->depth != second->depth || first->name != second->name)
        {
            return DescribeBranch(path, first, second);
        }
        if (first->name.empty())
        {
            if (first->text != second->text)
            {
                return path.ParentOf(first->depth) + ": " + FormatChange(first->text, second->text);
            }
            continue;
        }
        path.Enter(*first);
        if (const auto difference = FindAttributeDifference(*first, *second))
        {
            return path.ParentOf(first->depth + 1) + *difference;
        }
    }
}
} // namespace host::diff
