#include "host/diff/markupdiff.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

#include "host/diff/differencetext.h"
#include "host/diff/packeditems.h"
#include "host/tickets/ticketdocument.h"
#include "host/xml/prefixscope.h"

namespace host::diff
{
namespace
{
constexpr std::string_view kBlanks = " \t\r\n";

std::string QualifiedName(std::string_view namespaceUri, std::string_view localName)
{
    return namespaceUri.empty() ? std::string(localName)
                                : "{" + std::string(namespaceUri) + "}" + std::string(localName);
}

/// "psk:ISOA4" as "ISOA4 in " its namespace; any other text as it stands.
std::string Expand(const std::string& text, const xml::PrefixScope& scope)
{
    const std::size_t colon = text.find(':');
    const std::string* const namespaceUri = colon == text.npos ? nullptr : scope.Find(text.substr(0, colon));
    return namespaceUri == nullptr ? text : text.substr(colon + 1) + " in " + *namespaceUri;
}

/// Forwards tags and text as items.
class ItemListener final : public xml::Listener
{
public:
    explicit ItemListener(const std::function<void(const Item&)>& onItem) : m_onItem(onItem) {}

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
        m_onItem(item);
    }

    void OnEnd() override
    {
        --m_depth;
        m_scope.Leave();
    }

    void OnText(const std::string& text) override
    {
        if (text.find_first_not_of(kBlanks) != text.npos)
        {
            m_onItem({m_depth, {}, text, {}});
        }
    }

private:
    const std::function<void(const Item&)>& m_onItem;
    xml::PrefixScope m_scope;
    // That of what stands directly in the innermost open element.
    int m_depth = 0;
};

void ReadItems(std::string_view markup, const std::function<void(const Item&)>& onItem)
{
    ItemListener listener(onItem);
    xml::Reader().Read(markup, listener);
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

/// Compares two tags of the same name.
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

/// Compares the items of one document with those of another.
class Comparison
{
public:
    explicit Comparison(PackedItems& expected) : m_expected(expected) {}

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
            DescribeBranch(first, other);
            return;
        }
        if (first->name.empty())
        {
            if (first->text != other->text)
            {
                m_difference = m_path.ParentOf(first->depth) + ": " + FormatChange(first->text, other->text);
            }
            return;
        }
        m_path.Enter(*first);
        if (const auto difference = FindAttributeDifference(*first, *other))
        {
            m_difference = m_path.ParentOf(first->depth + 1) + *difference;
        }
    }

    /// The trees differ here. An item that is deeper is named by the innermost element that both trees have.
    void DescribeBranch(const Item* one, const Item* other)
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
        m_difference = m_path.ParentOf(depth) + ": " + from + " -> " + to;
    }

    PackedItems& m_expected;
    ElementPath m_path;
    std::optional<std::string> m_difference;
};
} // namespace

std::optional<std::string> FindMarkupDifference(std::string_view one, std::string_view other)
{
    PackedItems items;
    ReadItems(one, [&](const Item& item) { items.Append(item); });
    Comparison comparison(items);
    ReadItems(other, [&](const Item& item) { comparison.Take(item); });
    return comparison.Finish();
}

} // namespace host::diff
