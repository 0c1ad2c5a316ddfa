#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "host/report/pagereport.h"
#include "host/tickets/userticket.h"

namespace host::app
{
/// Counts the pages on which a what-if option changes nothing, because the document's own tickets decide.
class WhatIf
{
public:
    /// `userTicket` has the options in it. COM must be initialised on the thread.
    WhatIf(const tickets::TicketOverrides& options, const std::string& userTicket);

    void Add(const report::PageReport& page);

    /// Each option that is used, and on how many pages it has no effect.
    std::vector<std::pair<const char*, std::size_t>> WithoutEffect() const;

    /// "--media had no effect on 3 of 4 pages: ..." with a line end for each such option.
    std::string Summarise() const;

private:
    tickets::TicketOverrides m_options;
    tickets::TicketFacts m_wanted;
    std::size_t m_pages = 0;
    std::size_t m_orientation = 0;
    std::size_t m_media = 0;
    std::size_t m_limits = 0;
};
} // namespace host::app
