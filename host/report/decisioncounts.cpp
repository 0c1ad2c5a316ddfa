#include "host/report/decisioncounts.h"

#include <numeric>

namespace host::report
{
std::size_t DecisionCounts::All() const
{
    return std::accumulate(m_counts.begin(), m_counts.end(), std::size_t{0});
}

std::string DecisionCounts::Format() const
{
    std::string text;
    for (const Decision decision : kDecisions)
    {
        text += (text.empty() ? "" : "; ") + std::to_string(Of(decision)) + " " + NameOf(decision);
    }
    return text;
}
} // namespace host::report
