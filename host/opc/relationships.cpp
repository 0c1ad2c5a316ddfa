#include "host/opc/relationships.h"

#include <algorithm>

#include "host/xml/elementreader.h"
#include "host/xml/markuptext.h"

namespace host::opc
{
namespace
{
constexpr std::string_view kNamespace = "http://schemas.openxmlformats.org/package/2006/relationships";

std::string ValueOf(const xml::Element& element, std::string_view attribute)
{
    const std::string* const value = element.Find(attribute);
    return value != nullptr ? *value : std::string();
}

void AppendAttribute(std::string& markup, std::string_view name, std::string_view value)
{
    markup.append(" ").append(name).append("=\"").append(xml::EscapeAttribute(value)).append("\"");
}
} // namespace

Relationships Relationships::Parse(PartName source, std::string_view markup)
{
    Relationships relationships(std::move(source));
    xml::ReadElements(markup, [&](const xml::Element& element) {
        if (element.namespaceUri == kNamespace && element.localName == "Relationship")
        {
            const bool isExternal = ValueOf(element, "TargetMode") == "External";
            relationships.m_all.push_back({ValueOf(element, "Id"),
                                           ValueOf(element, "Type"),
                                           ValueOf(element, "Target"),
                                           isExternal ? TargetMode::External : TargetMode::Internal});
        }
    });
    return relationships;
}

std::optional<PartName> Relationships::FindTarget(std::string_view type) const
{
    const auto found = std::find_if(m_all.begin(), m_all.end(), [&](const Relationship& relationship) {
        return relationship.type == type && relationship.mode == TargetMode::Internal;
    });
    return found == m_all.end() ? std::nullopt : std::optional(m_source.Resolve(found->target));
}

std::string Relationships::Add(std::string_view type, const PartName& target)
{
    std::string id = UnusedId();
    m_all.push_back({id, std::string(type), target.Text(), TargetMode::Internal});
    return id;
}

void Relationships::Remove(std::string_view id)
{
    std::erase_if(m_all, [&](const Relationship& relationship) { return relationship.id == id; });
}

bool Relationships::RemoveTargets(const std::set<PartName>& targets)
{
    const auto isOne = [&](const Relationship& relationship) { return PointsAtOne(targets, relationship); };
    return std::erase_if(m_all, isOne) > 0;
}

std::string Relationships::Serialize() const
{
    std::string markup = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Relationships xmlns=\"";
    markup.append(kNamespace).append("\">");
    for (const Relationship& relationship : m_all)
    {
        markup.append("<Relationship");
        AppendAttribute(markup, "Id", relationship.id);
        AppendAttribute(markup, "Type", relationship.type);
        AppendAttribute(markup, "Target", relationship.target);
        if (relationship.mode == TargetMode::External)
        {
            AppendAttribute(markup, "TargetMode", "External");
        }
        markup.append("/>");
    }
    return markup.append("</Relationships>");
}

bool Relationships::PointsAtOne(const std::set<PartName>& targets, const Relationship& relationship) const
{
    const auto part = m_source.TryResolve(relationship.target);
    return relationship.mode == TargetMode::Internal && part.has_value() && targets.contains(*part);
}

std::string Relationships::UnusedId() const
{
    for (std::size_t number = m_all.size() + 1;; ++number)
    {
        std::string id("R");
        id += std::to_string(number);
        const bool isUsed = std::any_of(m_all.begin(), m_all.end(), [&](const Relationship& relationship) {
            return relationship.id == id;
        });
        if (!isUsed)
        {
            return id;
        }
    }
}
} // namespace host::opc
