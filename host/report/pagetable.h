#pragma once

#include <cstddef>
#include <string>

#include "host/report/pagereport.h"

namespace host::report
{
/// The table of a run, for people: a row for each run of pages that are alike, with their notes.
class PageTable
{
public:
    /// With details each page has a row of its own, and its ticket and limits below it. Lines are at most
    /// `width` long, as far as the text can be broken, and 80 at least.
    PageTable(bool showsDetails, std::size_t width);

    /// The text that can be printed by now. Pages come in order.
    std::string Add(const PageReport& page);

    /// The rest; to be called after the last page. More pages may follow.
    std::string Finish();

private:
    bool m_showsDetails;
    std::size_t m_width;
    bool m_hasHead = false;
    // The row that is not printed yet, without the number.
    std::string m_row;
    std::size_t m_first = 0;
    std::size_t m_last = 0;
};
} // namespace host::report
