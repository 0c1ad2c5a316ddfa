#include "bench/pagejob.h"

#include <stdexcept>

#include "base/logging/errors.h"
#include "support/pipeline.h"
#include "support/tickettext.h"

namespace bench
{
namespace
{
using base::exception::ThrowIfFailed;
using support::Feature;
using support::MediaFeature;

struct KindFacts
{
    const char* name;
    /// Empty if the page has no ticket of its own.
    std::string ticket;
    bool isTurned;
    bool getsNewTicket;
};

const std::string kLetter = MediaFeature("NorthAmericaLetter", 215900, 279400);

const KindFacts kKinds[] = {
    {"inherited", "", false, false},
    {"passed", support::Ticket(kLetter + Feature("PageOrientation", "Portrait")), false, false},
    {"turned", support::Ticket(kLetter + Feature("PageOrientation", "Landscape")), true, true},
    {"refitted",
     support::Ticket(MediaFeature("ISOA3", 297000, 420000) +
                     Feature("PageScaling", "FitApplicationMediaSizeToPageMediaSize")),
     false,
     true}};

const KindFacts& FactsOf(PageKind kind)
{
    return kKinds[static_cast<std::size_t>(kind)];
}
} // namespace

const std::string kSmallPage =
    R"(<FixedPage xmlns="http://schemas.microsoft.com/xps/2005/06" xml:lang="en" Width="816" Height="1056">)"
    R"(<Path Stroke="#FF000000" Data="M 96,96 L 720,96"/></FixedPage>)";

PageKind KindOf(const std::string& name)
{
    for (std::size_t kind = 0; kind < std::size(kKinds); ++kind)
    {
        if (name == kKinds[kind].name)
        {
            return static_cast<PageKind>(kind);
        }
    }
    throw std::invalid_argument(name + ": is no kind of page");
}

void RunPageJob(IPrintPipelineFilter& filter,
                const PageJob& job,
                const std::function<void(const std::string& name)>& onCall)
{
    const KindFacts& facts = FactsOf(job.kind);
    support::Pipeline pipeline(support::Ticket(kLetter));
    pipeline.record.onCall = onCall;
    pipeline.Add<support::SequencePart>("sequence");
    pipeline.Add<support::DocumentPart>("document");

    std::size_t pages = 0;
    std::size_t turned = 0;
    std::size_t newTickets = 0;
    pipeline.provider->beforePart = [&] {
        newTickets += pipeline.consumer->newPartNames.size();
        turned += pipeline.record.writeStreams.size() - pipeline.consumer->newPartNames.size();
        pipeline.record.writeStreams.clear();
        pipeline.consumer->newPartNames.clear();
        if (pipeline.provider->parts.empty() && pages < job.pages)
        {
            pipeline.Add<support::PagePart>(
                "page", job.markup, job.ticket.empty() ? facts.ticket : job.ticket);
            ++pages;
        }
    };
    ThrowIfFailed(pipeline.Initialize(filter));
    ThrowIfFailed(filter.StartOperation());
    if (turned != (facts.isTurned ? job.pages : 0) || newTickets != (facts.getsNewTicket ? job.pages : 0))
    {
        throw std::logic_error(std::string("not all pages were ") + facts.name);
    }
}
} // namespace bench
