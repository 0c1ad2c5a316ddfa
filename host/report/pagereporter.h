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
/// Makes a report of each page that a filter sends. Works on the sending thread, from the first part to
/// Finish. Its own reading of tickets is not in the pipeline's trace.
class PageReporter
{
public:
    using Listener = std::function<void(const PageReport&)>;

    PageReporter(const opc::Package& package,
                 pipeline::TicketSetting setting,
                 Listener onPage,
                 bool wantsDetails)
        : m_package(package),
          m_setting(std::move(setting)),
          m_onPage(std::move(onPage)),
          m_wantsDetails(wantsDetails)
    {
    }

    void Take(const pipeline::SentPart& sent);

    /// Releases what belongs to the thread.
    void Finish() { m_tickets.reset(); }

    std::size_t Documents() const noexcept { return m_documents; }
    std::size_t Pages() const noexcept { return m_pages; }

private:
    void EnterLevel(const xps::JobPart& part);
    const PageReport& AskedBy(const xps::JobPart& page);
    std::string ReadTicket(const opc::PartName& name) const;
    std::string FindGivenOrigin(const PageReport& page) const;
    std::optional<tickets::Replacement> FindGivenReplacement(const std::string& newTicket);
    PageReport Describe(const pipeline::SentPart& sent);
    void TakeNewTicket(const std::string& ticket, PageReport& page);

    const opc::Package& m_package;
    pipeline::TicketSetting m_setting;
    Listener m_onPage;
    bool m_wantsDetails;
    std::unique_ptr<pipeline::EffectiveTickets> m_tickets;
    tickets::TicketFactsReader m_facts;
    base::xps::printschema::MediaSize m_jobSheet;
    base::xps::printschema::MediaSize m_documentSheet;
    // The selections of the tickets of page, document, job, user and driver.
    std::vector<tickets::SheetSelection> m_wanted;
    // The last page's ticket and what it asks for, which holds for the next page of the document with the
    // same ticket, or none.
    std::optional<opc::PartName> m_askedBy;
    std::optional<PageReport> m_asked;
    // The last new ticket, what it says and its area: many pages get the same one.
    std::optional<std::string> m_newTicket;
    tickets::SheetFacts m_given;
    std::optional<base::xps::printschema::ImageableArea> m_newArea;
    // The last new ticket of a refitted page, likewise.
    std::string m_refittedTicket;
    std::optional<tickets::Replacement> m_givenReplacement;
    std::size_t m_documents = 0;
    std::size_t m_pages = 0;
};
} // namespace host::report
