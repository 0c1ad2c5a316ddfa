#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/opc/package.h"
#include "host/pipeline/documentconsumer.h"
#include "host/pipeline/effectivetickets.h"
#include "host/report/pagereport.h"

namespace host::report
{
/// Makes a report of each page that a filter sends. Works on the thread that sends, from the first part to
/// Finish; its own reading of the tickets does not show in the pipeline's trace.
class PageReporter
{
public:
    using Listener = std::function<void(const PageReport&)>;

    PageReporter(const opc::Package& package,
                 pipeline::TicketSetting setting,
                 Listener onPage,
                 Detail detail = Detail::None)
        : m_package(package), m_setting(std::move(setting)), m_onPage(std::move(onPage)), m_detail(detail)
    {
    }

    void Take(const pipeline::SentPart& sent);

    /// Lets go of what belongs to the thread.
    void Finish() { m_tickets.reset(); }

    std::size_t Documents() const noexcept { return m_documents; }
    std::size_t Pages() const noexcept { return m_pages; }

private:
    /// What an effective ticket comes to.
    struct Asked
    {
        tickets::TicketFacts facts;
        std::vector<tickets::Replacement> replacements;
        std::string ticket;
        std::optional<base::xps::printschema::ImageableArea> area;
    };

    void EnterLevel(const xps::JobPart& part);
    const Asked& AskedBy(const xps::JobPart& page);
    std::optional<tickets::Replacement> FindGivenReplacement(const std::string& newTicket);
    PageDetails ReadDetails(const xps::JobPart& page, std::string newTicket, const Asked& asked);
    PageReport Describe(const pipeline::SentPart& sent);

    const opc::Package& m_package;
    pipeline::TicketSetting m_setting;
    Listener m_onPage;
    Detail m_detail;
    std::unique_ptr<pipeline::EffectiveTickets> m_tickets;
    // What the tickets of page, document, job, user and driver select.
    std::vector<tickets::SheetSelection> m_wanted;
    // Of the last page: the next one of the document that has the same ticket, or none either, agrees.
    std::optional<opc::PartName> m_askedBy;
    std::optional<Asked> m_asked;
    // Of the last new ticket: those of many pages are the same.
    std::string m_newTicket;
    std::optional<base::xps::printschema::ImageableArea> m_newArea;
    // And of the last one of a refitted page.
    std::string m_refittedTicket;
    std::optional<tickets::Replacement> m_givenReplacement;
    std::size_t m_documents = 0;
    std::size_t m_pages = 0;
};
} // namespace host::report
