#pragma once

#include <string>
#include <vector>

namespace host::tickets
{
/// A ticket that an effective ticket may get values from, and its name for people.
struct TicketLayer
{
    std::string name;
    std::string bytes;
};

/// Lists what a ticket selects: a line for each feature, with the option and its properties, and for each
/// parameter. Throws xml::MarkupError for what is no print ticket.
std::string ListTicket(const std::string& ticket);

/// The same for an effective ticket. Each line names the first layer, most specific first, that asks for the
/// value; a value that no layer asks for comes from the device.
std::string ListTicketWithOrigins(const std::string& effective, const std::vector<TicketLayer>& layers);
} // namespace host::tickets
