#pragma once

#include <cstdint>

#include "platform/win32.h"

#include <prntvpt.h>

namespace base::xps::printschema
{
/// The part of a job that a print ticket, or a feature's name, applies to.
enum class Scope : std::int32_t
{
    None = 0,
    Job = 1,
    Document = 2,
    Page = 3,
};

/// Converts to the print ticket provider's numbering. Throws std::logic_error for None and any other value.
EPrintTicketScope ToEPrintTicketScope(Scope scope);
} // namespace base::xps::printschema
