#pragma once

#include <functional>
#include <string>

#include "host/opc/package.h"
#include "host/tickets/jobtickets.h"

namespace host
{
/// Tells the tickets of a document, part by part in the order of the job: the part's own ticket and the
/// effective one at its level, each value with the level that it comes from. COM must be initialised on the
/// thread. Throws opc::PackageError when the document cannot be used, its tickets not be merged among it.
void ListTickets(const opc::Package& package,
                 const tickets::TicketSetting& setting,
                 const std::function<void(const std::string&)>& print);
} // namespace host
