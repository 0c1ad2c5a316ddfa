#pragma once

#include <cstdint>

#include "platform/win32.h"

#include <prntvpt.h>

namespace base::xps::printschema
{
/// What a print ticket speaks for.
enum class Scope : std::int32_t
{
    None = 0,
    Job = 1,
    Document = 2,
    Page = 3,
};

/// The print-ticket provider's own numbering. Throws std::logic_error for None and values outside the
/// enumeration.
EPrintTicketScope ToEPrintTicketScope(Scope scope);
} // namespace base::xps::printschema
