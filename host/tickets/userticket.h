#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "base/utility/comptr.h"
#include "base/xps/printschema/vocabulary/mediasize.h"
#include "platform/msxml6.h"

namespace host::tickets
{
/// Settings that replace those of the user's ticket.
struct TicketOverrides
{
    /// An option of PageOrientation in any case.
    std::optional<std::string> orientation;
    /// An option of PageMediaSize in any case, or a size in millimetres as "210x297".
    std::optional<std::string> media;
    /// In millimetres, as "76.2x127-215.9x355.6".
    std::optional<std::string> limits;
};

/// A document's ticket with the overrides written into it; as it is where that cannot be done. COM must be
/// initialised on the thread, and MakeUserTicket have taken the overrides.
std::string OverrideTicket(const std::string& ticket, const TicketOverrides& overrides);

/// The options of PageMediaSize that a user may choose, one a line.
std::string ListMediaNames();

/// The driver's private namespace prefix where its property bag has none.
inline constexpr const char* kUsualPrivatePrefix = "ns0000";

/// The user's print ticket, from a file or the built-in one, with the overrides written into it; as bytes.
/// The driver's private prefix is without its colon. COM must be initialised on the thread. Throws
/// std::runtime_error for a file that is no print ticket and for an override or a prefix that cannot be
/// understood, with the reason.
std::string MakeUserTicket(const std::optional<std::filesystem::path>& file,
                           const TicketOverrides& overrides,
                           const std::string& privatePrefix = kUsualPrivatePrefix);
} // namespace host::tickets
