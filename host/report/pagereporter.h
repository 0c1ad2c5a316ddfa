#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

#include "host/opc/package.h"
#include "host/pipeline/documentconsumer.h"
#include "host/report/pagereport.h"
#include "host/tickets/jobtickets.h"

namespace host::report
{
/// Makes a report of each page that a filter sends. Works on the thread that sends, from the first part to
/// Finish; its own reading of the tickets does not show in the pipeline's trace.
class PageReporter
{
public:
    using Listener = std::function<void(const PageReport&)>;

    PageReporter(const opc::Package& package, tickets::TicketSetting setting, Listener onPage)
        : m_package(package), m_setting(std::move(setting)), m_onPage(std::move(onPage))
    {
    }

    void Take(const pipeline::SentPart& sent);

    /// Lets go of what belongs to the thread.
    void Finish() { m_tickets.reset(); }

    std::size_t Documents() const noexcept { return m_documents; }
    std::size_t Pages() const noexcept { return m_pages; }

private:
    const tickets::TicketFacts& FactsOf(const xps::JobPart& page);
    PageReport Describe(const pipeline::SentPart& sent);

    const opc::Package& m_package;
    tickets::TicketSetting m_setting;
    Listener m_onPage;
    std::unique_ptr<tickets::JobTickets> m_tickets;
    // Of the last page: the next one of the document that has the same ticket, or none either, agrees.
    std::optional<opc::PartName> m_factsTicket;
    std::optional<tickets::TicketFacts> m_facts;
    std::size_t m_documents = 0;
    std::size_t m_pages = 0;
};
} // namespace host::report
