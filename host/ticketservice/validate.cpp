#include "host/ticketservice/operations.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "host/tickets/parameters.h"

namespace host::ticketservice
{
namespace
{
bool IsPickMany(const Node& described)
{
    const Node* const value = FindPropertyValue(described, Framework("SelectionType"));
    return value != nullptr && value->content == Content(Keyword("PickMany"));
}

/// A described option as a ticket selects it: its name and its scored properties.
Node ToTicketOption(const Node& described)
{
    Node option{Kind::Option, described.name};
    std::copy_if(described.children.begin(),
                 described.children.end(),
                 std::back_inserter(option.children),
                 [](const Node& child) { return child.kind == Kind::ScoredProperty; });
    return option;
}

/// The text that replaces a number; none when the number is valid.
std::optional<std::string> FindCorrection(const Parameter& parameter, const std::string& text)
{
    const std::optional<double> number = parameter.ReadNumber(text);
    if (!number)
    {
        return std::get<std::string>(parameter.defaultValue.content);
    }
    const Limit* const broken = parameter.FindBrokenLimit(*number);
    return broken == nullptr ? std::nullopt : std::optional(broken->text);
}

class Validator
{
public:
    Validator(Node& ticket, const Device& device) : m_ticket(ticket), m_device(device) {}

    bool Resolve()
    {
        const tickets::References before = tickets::ReferencesIn(m_ticket);
        for (Node& setting : m_ticket.children)
        {
            const Node* const described =
                setting.kind == Kind::Feature ? m_device.FindFeature(setting.name) : nullptr;
            if (described != nullptr)
            {
                ResolveFeature(setting, *described);
            }
        }
        tickets::RemoveOrphans(m_ticket, before);
        ResolveParameters();
        AddMissingParameters();
        return m_hasReplaced;
    }

private:
    void ResolveFeature(Node& requested, const Node& described)
    {
        const auto isOption = [](const Node& child) { return child.kind == Kind::Option; };
        const bool asksForOption =
            std::any_of(requested.children.begin(), requested.children.end(), isOption);
        if (!IsPickMany(described))
        {
            KeepFirstOption(requested);
        }
        const auto refused = std::erase_if(requested.children, [&](const Node& child) {
            return isOption(child) && !IsOffered(child, requested, described);
        });
        if (refused > 0)
        {
            m_hasReplaced = true;
        }
        if (asksForOption && FindChild(&requested, Kind::Option) == nullptr)
        {
            requested.children.push_back(ToTicketOption(GetDefaultOption(described)));
        }
        for (Node& child : requested.children)
        {
            const Node* const nested =
                child.kind == Kind::Feature ? FindChild(&described, Kind::Feature, child.name) : nullptr;
            if (nested != nullptr)
            {
                ResolveFeature(child, *nested);
            }
        }
    }

    static void KeepFirstOption(Node& feature)
    {
        bool isFirst = true;
        std::erase_if(feature.children, [&](const Node& child) {
            return child.kind == Kind::Option && !std::exchange(isFirst, false);
        });
    }

    bool IsOffered(const Node& option, const Node& requested, const Node& described) const
    {
        const bool isNamed = !option.name.local.empty();
        if (!isNamed || FindChild(&described, Kind::Option, option.name) == nullptr)
        {
            return false;
        }
        const bool isMediaSize = requested.name == Keyword("PageMediaSize");
        const Medium* const medium = isMediaSize ? m_device.FindMedium(option.name) : nullptr;
        if (medium == nullptr || !medium->isCustom)
        {
            return true;
        }
        const std::optional<MediaSize> size = tickets::FindRequestedSize(m_ticket, option);
        return size && medium->Takes(*size);
    }

    void ResolveParameters()
    {
        for (Node& setting : m_ticket.children)
        {
            const Parameter* const parameter =
                setting.kind == Kind::ParameterInit ? m_device.FindParameter(setting.name) : nullptr;
            if (parameter == nullptr || parameter->type == Parameter::Type::Other)
            {
                continue;
            }
            const std::optional<std::string> correction =
                FindCorrection(*parameter, FindText(&setting).value_or(""));
            if (correction)
            {
                setting.children = {parameter->defaultValue};
                setting.children.front().content = *correction;
                m_hasReplaced = true;
            }
        }
    }

    void AddMissingParameters()
    {
        for (const ExpandedName& name : tickets::ReferencesIn(m_ticket))
        {
            const Parameter* const parameter = m_device.FindParameter(name);
            if (parameter != nullptr && FindChild(&m_ticket, Kind::ParameterInit, name) == nullptr)
            {
                m_ticket.children.push_back(
                    {.kind = Kind::ParameterInit, .name = name, .children = {parameter->defaultValue}});
                m_hasReplaced = true;
            }
        }
    }

    Node& m_ticket;
    const Device& m_device;
    bool m_hasReplaced = false;
};
} // namespace

bool ResolveConflicts(Node& ticket, const Device& device)
{
    return Validator(ticket, device).Resolve();
}
} // namespace host::ticketservice
