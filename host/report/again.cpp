#include "host/report/again.h"

#include "host/report/ticketdiff.h"
#include "host/ticketservice/printschema.h"

namespace host::report
{
namespace
{
/// "; its ticket asks for ISOA3, and the printer takes NorthAmericaLetter"; empty where a page gets what its
/// own ticket asks for.
std::string ExplainReplacement(const PageDetails& details)
{
    std::string text;
    for (const char* feature : {"PageOrientation", "PageMediaSize"})
    {
        const auto wanted = FindOption(details.ownTicket, feature);
        const auto taken = FindOption(details.effectiveTicket, feature);
        if (wanted && taken && wanted != taken)
        {
            text += "; its ticket asks for " + *wanted + ", in whose place the printer puts " + *taken;
        }
    }
    return text;
}

std::string FindReplacement(const PageReport& page)
{
    try
    {
        return page.details ? ExplainReplacement(*page.details) : std::string();
    }
    catch (const ticketservice::FormatError&)
    {
        return {};
    }
}
} // namespace

bool IsJudged(const PageReport& page)
{
    return page.markupFault.empty();
}

bool IsStable(const PageReport& page)
{
    return IsJudged(page) && !page.isMarkupReplaced && page.newTicket.empty();
}

std::string NameAgain(const PageReport& page)
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

std::string ExplainAgain(const PageReport& page)
{
    if (!IsJudged(page))
    {
        return ExplainMarkupFault(page);
    }
    if (IsStable(page))
    {
        return ExplainDecision(page);
    }
    return page.asked.mediaName + " " + FormatSheet(page.asked.media) + " mm; " + ExplainDecision(page) +
           FindReplacement(page);
}
} // namespace host::report
