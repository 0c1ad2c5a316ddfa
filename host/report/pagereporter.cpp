#include "host/report/pagereporter.h"

#include <algorithm>
#include <string>

#include "base/logging/errors.h"
#include "base/utility/utf8.h"
#include "host/tickets/ticketdocument.h"
#include "host/tickets/ticketfacts.h"
#include "host/xps/pagemarkup.h"
#include "host/xps/xpsvocabulary.h"

namespace host::report
{
namespace
{
/// Additional questions for a report must not fail a job.
template <typename Question>
auto AnswerOrNone(Question&& ask) -> std::optional<decltype(ask())>
{
    try
    {
        return ask();
    }
    catch (const base::exception::HresultError&)
    {
        return std::nullopt;
    }
    catch (const xml::MarkupError&)
    {
        return std::nullopt;
    }
}

tickets::SheetSelection SelectionOf(const std::string& ticket)
{
    return AnswerOrNone([&] { return tickets::ReadSheetSelection(ticket); })
        .value_or(tickets::SheetSelection());
}
} // namespace

void PageReporter::Take(const pipeline::SentPart& sent)
{
    if (!m_tickets)
    {
        m_tickets = std::make_unique<pipeline::EffectiveTickets>(m_package, m_setting);
        m_wanted = {{},
                    {},
                    {},
                    SelectionOf(m_setting.userTicket),
                    SelectionOf(base::utility::ToUtf8(m_setting.defaultTicket))};
    }
    if (sent.part.kind == xps::JobPartKind::FixedPage)
    {
        ++m_pages;
        m_onPage(Describe(sent));
        return;
    }
    m_documents += sent.part.kind == xps::JobPartKind::FixedDocument ? 1 : 0;
    m_asked.reset();
    EnterLevel(sent.part);
    // Also for the values that a page's ticket may lack.
    const auto sheet = m_facts.Read(m_tickets->GetEffective()).media;
    (sent.part.kind == xps::JobPartKind::FixedDocument ? m_documentSheet : m_jobSheet) = sheet;
}

void PageReporter::EnterLevel(const xps::JobPart& part)
{
    m_tickets->Enter(part);
    const auto level =
        static_cast<std::size_t>(xps::JobPartKind::FixedPage) - static_cast<std::size_t>(part.kind);
    std::fill_n(m_wanted.begin(), level, tickets::SheetSelection());
    m_wanted[level] =
        part.printTicket ? SelectionOf(ReadTicket(*part.printTicket)) : tickets::SheetSelection();
}

std::string PageReporter::ReadTicket(const opc::PartName& name) const
{
    std::string ticket = m_package.Read(name, xps::kPrintTicketLimit);
    return m_setting.editTicket ? m_setting.editTicket(ticket) : ticket;
}

const PageReport& PageReporter::AskedBy(const xps::JobPart& page)
{
    if (!m_asked || m_askedBy != page.printTicket)
    {
        EnterLevel(page);
        const auto ticket = m_tickets->GetEffective();
        const std::string bytes = tickets::SaveBytes(ticket.Get());
        m_asked.emplace();
        m_asked->asked = m_facts.Read(ticket);
        m_asked->replacements = tickets::FindReplacements(m_wanted, SelectionOf(bytes));
        m_asked->oldTicket = page.printTicket ? page.printTicket->Text() : "";
        if (m_wantsDetails)
        {
            PageDetails& details = m_asked->details.emplace();
            details.effectiveTicket = bytes;
            details.ownTicket = page.printTicket ? ReadTicket(*page.printTicket) : "";
            details.areaBefore = AnswerOrNone([&] { return m_tickets->ReadImageableArea(); });
            details.areaAfter = details.areaBefore;
        }
        m_askedBy = page.printTicket;
    }
    return *m_asked;
}

std::string PageReporter::FindGivenOrigin(const PageReport& page) const
{
    // In the order in which the filter looks for a sheet.
    const auto sheet = page.given->media;
    if (sheet == m_documentSheet || sheet == m_jobSheet)
    {
        return sheet == m_documentSheet ? "the document's sheet" : "the job's sheet";
    }
    return sheet == page.asked.limits.minimum ? "the lower limit" : kUserPaper;
}

std::optional<tickets::Replacement> PageReporter::FindGivenReplacement(const std::string& newTicket)
{
    if (newTicket != m_refittedTicket)
    {
        tickets::SheetSelection given = SelectionOf(newTicket);
        given.orientation.reset();
        const auto validated =
            AnswerOrNone([&] { return tickets::ReadSheetSelection(m_tickets->Validate(newTicket)); });
        const auto found = tickets::FindReplacements({given}, validated.value_or(tickets::SheetSelection()));
        m_givenReplacement = found.empty() ? std::nullopt : std::optional(found.front());
        m_refittedTicket = newTicket;
    }
    return m_givenReplacement;
}

PageReport PageReporter::Describe(const pipeline::SentPart& sent)
{
    PageReport page = AskedBy(sent.part);
    page.number = m_pages;
    page.part = sent.part.name.Text();
    page.before = page.after =
        xps::ReadPageStart(m_package.ReadStart(sent.part.name, xps::kMarkupStart)).size;
    page.isMarkupReplaced = sent.newMarkup != nullptr;
    if (page.isMarkupReplaced)
    {
        page.after = sent.newMarkup->size;
        page.markupFault = sent.newMarkup->fault;
        page.isRefused = sent.isRefused;
    }
    page.newTicket = sent.newTicket != nullptr ? sent.newTicket->Name().Text() : "";
    if (sent.newTicket != nullptr && sent.newTicket->NewContent() != nullptr)
    {
        TakeNewTicket(sent.newTicket->NewContent()->Content().ReadStart(xps::kPrintTicketLimit), page);
    }
    if (page.details && page.isMarkupReplaced)
    {
        page.details->transform = sent.newMarkup->transform;
    }
    return page;
}

void PageReporter::TakeNewTicket(const std::string& ticket, PageReport& page)
{
    if (ticket != m_newTicket)
    {
        m_given = tickets::ReadSheetFacts(ticket);
        m_newArea = m_wantsDetails ? AnswerOrNone([&] { return m_tickets->ReadImageableArea(ticket); })
                                   : std::nullopt;
        m_newTicket = ticket;
    }
    page.given = m_given;
    if (IsRefitted(page))
    {
        page.givenOrigin = FindGivenOrigin(page);
        page.givenReplacement = FindGivenReplacement(ticket);
    }
    if (page.details)
    {
        page.details->newTicket = ticket;
        page.details->areaAfter = m_newArea;
    }
}
} // namespace host::report
