#pragma once

#include <optional>
#include <string>
#include <vector>

namespace host::tickets
{
enum class TicketChange
{
    Same,
    Changed,
    Added,
    /// The ticket did not have the setting, but its value was in force already.
    WrittenOut,
    Removed
};

/// One setting of two tickets.
struct TicketDifference
{
    TicketChange change = TicketChange::Same;
    /// "PageMediaSize / MediaSizeWidth": features, properties and parameters from the root on.
    std::string path;
    /// The values in the tickets; empty for a ticket without the setting.
    std::optional<std::string> before;
    std::optional<std::string> after;
    /// The value that was in force for a setting that the old ticket did not have.
    std::optional<std::string> inForce;
};

/// Compares tickets setting by setting, whatever their prefixes and the order of their elements: first in the
/// order of the new ticket, then what only the old one has. Either may be empty, for none. `effective` is the
/// ticket that was in force before. Throws xml::MarkupError for what is no print ticket.
std::vector<TicketDifference> CompareTickets(const std::string& before,
                                             const std::string& effective,
                                             const std::string& after);
} // namespace host::tickets
