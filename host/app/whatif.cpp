#include "host/app/whatif.h"

#include "host/tickets/ticketfacts.h"
#include "host/xml/text.h"

namespace host::app
{
WhatIf::WhatIf(const tickets::TicketOverrides& options, const std::string& userTicket)
    : m_options(options), m_wanted(tickets::TicketFactsReader().Read(tickets::LoadBytes(userTicket)))
{
}

void WhatIf::Add(const report::PageReport& page)
{
    ++m_pages;
    if (!page.replacements.empty())
    {
        // The device decides.
        return;
    }
    m_orientation += page.asked.orientation != m_wanted.orientation ? 1 : 0;
    m_media += page.asked.media != m_wanted.media ? 1 : 0;
    m_limits += page.asked.limits != m_wanted.limits ? 1 : 0;
}

std::vector<std::pair<const char*, std::size_t>> WhatIf::WithoutEffect() const
{
    std::vector<std::pair<const char*, std::size_t>> options;
    const auto add = [&](const char* name, const std::optional<std::string>& option, std::size_t count) {
        if (option)
        {
            options.emplace_back(name, count);
        }
    };
    add("--orientation", m_options.orientation, m_orientation);
    add("--media", m_options.media, m_media);
    add("--limits", m_options.limits, m_limits);
    return options;
}

std::string WhatIf::Summarise() const
{
    std::string text;
    for (const auto& [name, count] : WithoutEffect())
    {
        if (count > 0)
        {
            text += std::string(name) + " had no effect on " + std::to_string(count) + " of " +
                    xml::CountOf(m_pages, "page") +
                    ": their tickets say otherwise; --override changes those, too\n";
        }
    }
    return text;
}
} // namespace host::app
