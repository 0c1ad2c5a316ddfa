#pragma once

#include <string_view>

#include "host/report/pagereport.h"

namespace host::report
{
/// How much of a page's markup is enough to find its size in.
inline constexpr std::size_t kMarkupStart = 65'536;

/// The Width and Height of a FixedPage from the start of its markup. COM must be initialised on the thread.
PageSize ReadPageSize(std::string_view markupStart);
} // namespace host::report
