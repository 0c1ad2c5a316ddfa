#pragma once

#include <string>
#include <vector>

namespace host::tickets
{
/// A ticket that can lend a value to the effective ones, and what people know it by.
struct TicketLayer
{
    std::string name;
    std::string bytes;
};

/// Lists what a ticket selects: a line for each feature, with the option and its properties, and for each
/// parameter. Throws xml::MarkupError for what is no print ticket.
std::string ListTicket(const std::string& ticket);

/// The same of an effective ticket, each line with the first of the layers, most specific first, that asks
/// for it. A value that the layers do not account for is the device's.
std::string ListTicketWithOrigins(const std::string& effective, const std::vector<TicketLayer>& layers);
} // namespace host::tickets
