#include "host/opc/relationships.h"

#include <algorithm>

#include "host/xml/reader.h"
#include "host/xml/writer.h"

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

void Relationships::Add(std::string_view type, const PartName& target)
{
    m_all.push_back({UnusedId(), std::string(type), target.Text(), TargetMode::Internal});
}

bool Relationships::RemoveTargets(const std::set<PartName>& targets)
{
    const auto pointsAtOne = [&](const Relationship& relationship) {
        const auto part = relationship.mode == TargetMode::Internal ? m_source.TryResolve(relationship.target)
                                                                    : std::nullopt;
        return part && targets.contains(*part);
    };
    return std::erase_if(m_all, pointsAtOne) > 0;
}

std::string Relationships::Serialize() const
{
    xml::Writer writer;
    writer.Start("Relationships");
    writer.Attribute("xmlns", kNamespace);
    for (const Relationship& relationship : m_all)
    {
        writer.Start("Relationship");
        writer.Attribute("Id", relationship.id);
        writer.Attribute("Type", relationship.type);
        writer.Attribute("Target", relationship.target);
        if (relationship.mode == TargetMode::External)
        {
            writer.Attribute("TargetMode", "External");
        }
        writer.End();
    }
    writer.End();
    return writer.Take();
}

std::string Relationships::UnusedId() const
{
    for (std::size_t number = m_all.size() + 1;; ++number)
    {
        std::string id = "R" + std::to_string(number);
        if (std::none_of(m_all.begin(), m_all.end(), [&](const Relationship& each) { return each.id == id; }))
        {
            return id;
        }
    }
}
} // namespace host::opc
