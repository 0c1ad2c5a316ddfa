#include "host/report/secondrun.h"

#include "host/report/pagenotes.h"

namespace host::report
{
bool IsJudged(const PageReport& page)
{
    return page.markupFault.empty();
}

bool IsStable(const PageReport& page)
{
    return IsJudged(page) && !page.isMarkupReplaced && page.newTicket.empty();
}

std::string NameSecondRun(const PageReport& page)
{
    if (!IsJudged(page))
    {
        return "not judged";
    }
    if (IsStable(page))
    {
        return "stable";
    }
    const Decision decision = Decide(page);
    return std::string("would be ") +
           (decision == Decision::Passed ? "given another ticket" : NameOf(decision));
}

std::string ExplainSecondRun(const PageReport& page)
{
    if (!IsJudged(page))
    {
        return ExplainMarkupFault(page);
    }
    if (IsStable(page))
    {
        return ExplainWithNotes(page);
    }
    return page.asked.mediaName + " " + tickets::FormatSheet(page.asked.media) + " mm; " +
           ExplainWithNotes(page);
}
} // namespace host::report
