#include "host/report/pagereporter.h"

#include <string>

#include "host/report/pagesize.h"

namespace host::report
{
namespace
{
std::string ContentOf(const pipeline::PartWriteStream& stream, std::size_t limit)
{
    std::string content(static_cast<std::size_t>(std::min<std::uint64_t>(stream.Content().Size(), limit)),
                        '\0');
    content.resize(stream.Content().Read(0, content.data(), content.size()));
    return content;
}

// Tickets are some thousand bytes long.
constexpr std::size_t kTicketLimit = 16'777'216;
} // namespace

void PageReporter::Take(const pipeline::SentPart& sent)
{
    if (!m_tickets)
    {
        m_tickets = std::make_unique<tickets::JobTickets>(m_package, m_setting);
    }
    if (sent.part.kind == xps::JobPartKind::FixedPage)
    {
        ++m_pages;
        m_onPage(Describe(sent));
        return;
    }
    m_documents += sent.part.kind == xps::JobPartKind::FixedDocument ? 1 : 0;
    m_facts.reset();
    m_tickets->Enter(sent.part);
}

const tickets::TicketFacts& PageReporter::FactsOf(const xps::JobPart& page)
{
    if (!m_facts || m_factsTicket != page.printTicket)
    {
        m_tickets->Enter(page);
        m_facts = tickets::ReadFacts(m_tickets->GetEffective());
        m_factsTicket = page.printTicket;
    }
    return *m_facts;
}

PageReport PageReporter::Describe(const pipeline::SentPart& sent)
{
    PageReport page;
    page.number = m_pages;
    page.part = sent.part.name.Text();
    page.before = ReadPageSize(m_package.ReadStart(sent.part.name, kMarkupStart));
    page.isMarkupReplaced = sent.newMarkup != nullptr;
    page.after = page.isMarkupReplaced ? ReadPageSize(ContentOf(*sent.newMarkup, kMarkupStart)) : page.before;
    page.asked = FactsOf(sent.part);
    if (sent.part.printTicket)
    {
        page.oldTicket = sent.part.printTicket->Text();
    }
    if (sent.newTicket != nullptr)
    {
        page.newTicket = sent.newTicket->Name().Text();
        if (sent.newTicket->NewContent() != nullptr)
        {
            page.given = tickets::ReadSheetFacts(ContentOf(*sent.newTicket->NewContent(), kTicketLimit));
        }
    }
    return page;
}
} // namespace host::report
