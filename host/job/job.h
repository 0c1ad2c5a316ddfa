#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "host/opc/partcontent.h"
#include "host/tickets/userticket.h"

namespace host::job
{
/// What the filter is run on, and the printer, the driver and the user that it is run for.
struct Job
{
    std::filesystem::path document;
    /// Empty for a run that writes nothing.
    std::optional<std::filesystem::path> output;
    /// zlib's level for new parts: 0 to 9.
    int compression = opc::kUsualCompression;

    /// Empty for the built-in ticket.
    std::optional<std::filesystem::path> userTicket;
    tickets::TicketOverrides overrides;
    /// Whether they also replace what the document's tickets say.
    bool overridesDocument = false;
    /// "Letter" or "A4"; empty for that of the user's locale.
    std::optional<std::string> paper;
    /// A description; empty for the built-in device.
    std::optional<std::filesystem::path> device;
    /// A printer of the spooler in place of a device, with the platform's own print ticket provider.
    std::optional<std::string> printer;
    /// What the driver's property bag holds; empty for a value that it lacks.
    std::optional<std::int32_t> tesselType;
    std::optional<std::string> privatePrefix;

    /// The filter's DLL; empty for the one beside this program.
    std::optional<std::filesystem::path> module;
    /// Whether new markup of a page is taken even if it is malformed.
    bool acceptsMalformed = false;
};
} // namespace host::job
