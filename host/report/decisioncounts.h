#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "host/report/pagereport.h"

namespace host::report
{
/// The number of pages of a run for each decision.
class DecisionCounts
{
public:
    void Add(const PageReport& page) { ++m_counts.at(static_cast<std::size_t>(Decide(page))); }

    std::size_t Of(Decision decision) const { return m_counts.at(static_cast<std::size_t>(decision)); }
    std::size_t All() const;

    /// "2 passed; 1 turned; 0 refitted; 1 turned, refitted".
    std::string Format() const;

private:
    std::array<std::size_t, 4> m_counts{};
};
} // namespace host::report
