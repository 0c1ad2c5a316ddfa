#include "host/tickets/ticketdiff.h"

#include <map>
#include <variant>

#include "host/tickets/ticketdocument.h"

namespace host::tickets
{

namespace
{
/// Names with their namespaces are compared, those with prefixes are shown.
struct Shown
{
    std::string identity;
    std::string text;
};

struct Setting
{
    Shown path;
    Shown value;
};

/// A ticket as a list of settings.
class SettingList
{
public:
    explicit SettingList(const std::string& ticket)
        : m_document(ticket.empty() ? Document() : ReadDocument(ticket, Kind::PrintTicket)),
          m_display(m_document.prefixes)
    {
        Walk(m_document.root, {});
    }
    SettingList(const SettingList&) = delete;
    SettingList& operator=(const SettingList&) = delete;

    const std::vector<Setting>& All() const noexcept { return m_settings; }

    const Setting* Find(const std::string& path) const
    {
        const auto found = m_places.find(path);
        return found == m_places.end() ? nullptr : &m_settings[found->second];
    }

private:
    Shown Show(const ExpandedName& name) const
    {
        return {"{" + name.namespaceUri + "}" + name.local, m_display(name)};
    }

    static Shown Below(const Shown& path, const Shown& name)
    {
        return path.text.empty() ? name
                                 : Shown{path.identity + "/" + name.identity, path.text + " / " + name.text};
    }

    /// The Value of a property or a parameter, or the parameter that it refers to.
    std::optional<Shown> ValueOf(const Node& element) const
    {
        if (const Node* const reference = FindChild(&element, Kind::ParameterRef))
        {
            const Shown name = Show(reference->name);
            return Shown{"@" + name.identity, "as parameter " + name.text};
        }
        const Node* const value = FindChild(&element, Kind::Value);
        if (value == nullptr)
        {
            return std::nullopt;
        }
        if (const auto* const name = std::get_if<ExpandedName>(&value->content))
        {
            return Show(*name);
        }
        const std::string& text = std::get<std::string>(value->content);
        return Shown{text, text};
    }

    void Add(Shown path, Shown value)
    {
        // A faulty ticket may have a setting twice.
        if (const int count = ++m_counts[path.identity]; count > 1)
        {
            const std::string number = " (" + std::to_string(count) + ")";
            path = {path.identity + number, path.text + number};
        }
        m_places.emplace(path.identity, m_settings.size());
        m_settings.push_back({std::move(path), std::move(value)});
    }

    void Walk(const Node& parent, const Shown& path)
    {
        for (const Node& child : parent.children)
        {
            switch (child.kind)
            {
            case Kind::Option:
                Add(path,
                    child.name.local.empty() ? Shown{"", "an option without a name"} : Show(child.name));
                Walk(child, path);
                break;
            case Kind::Feature:
            case Kind::Property:
            case Kind::ScoredProperty:
            case Kind::ParameterInit: {
                const Shown place = Below(path, Show(child.name));
                if (auto value = ValueOf(child))
                {
                    Add(place, std::move(*value));
                }
                Walk(child, place);
                break;
            }
            default:
                break;
            }
        }
    }

    Document m_document;
    NameDisplay m_display;
    std::vector<Setting> m_settings;
    // By the path's identity.
    std::map<std::string, std::size_t, std::less<>> m_places;
    std::map<std::string, int, std::less<>> m_counts;
};

std::optional<std::string> TextOf(const Setting* setting)
{
    return setting == nullptr ? std::nullopt : std::optional(setting->value.text);
}

TicketChange Classify(const Setting* old, const Setting* inForce, const Setting& now)
{
    const auto agrees = [&](const Setting* other) {
        return other != nullptr && other->value.identity == now.value.identity;
    };
    if (old != nullptr)
    {
        return agrees(old) ? TicketChange::Same : TicketChange::Changed;
    }
    return agrees(inForce) ? TicketChange::WrittenOut : TicketChange::Added;
}
} // namespace

std::vector<TicketDifference> CompareTickets(const std::string& before,
                                             const std::string& effective,
                                             const std::string& after)
{
    const SettingList old(before);
    const SettingList held(effective);
    const SettingList now(after);
    std::vector<TicketDifference> differences;
    for (const Setting& setting : now.All())
    {
        const Setting* const former = old.Find(setting.path.identity);
        const Setting* const inForce = former == nullptr ? held.Find(setting.path.identity) : nullptr;
        differences.push_back({Classify(former, inForce, setting),
                               setting.path.text,
                               TextOf(former),
                               setting.value.text,
                               TextOf(inForce)});
    }
    for (const Setting& setting : old.All())
    {
        if (now.Find(setting.path.identity) == nullptr)
        {
            differences.push_back(
                {TicketChange::Removed, setting.path.text, setting.value.text, std::nullopt, std::nullopt});
        }
    }
    return differences;
}
} // namespace host::tickets
