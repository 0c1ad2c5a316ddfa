#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/tickets/parameters.h"
#include "host/tickets/ticketdocument.h"

namespace host::tickets
{
/// What a ticket selects for a feature.
struct Selection
{
    ExpandedName option;
    /// The size of a medium, if the ticket gives it.
    std::optional<base::xps::printschema::MediaSize> size;
};

/// A ticket's selections for the two features that decide a page's sheet; empty for a feature that it lacks.
struct SheetSelection
{
    std::optional<Selection> orientation;
    std::optional<Selection> medium;
};

/// Throws xml::MarkupError for what is no print ticket.
SheetSelection ReadSheetSelection(const std::string& ticket);

/// An option that the device does not have, and the one that it takes instead, as shown to people:
/// "CustomMediaSize 500x500" and "NorthAmericaLetter 215.9x279.4".
struct Replacement
{
    std::string wanted;
    std::string taken;
};

/// `wanted` are the tickets that apply to a page, most specific first; for each feature the first one that
/// selects an option counts. `effective` is the validated ticket.
std::vector<Replacement> FindReplacements(const std::vector<SheetSelection>& wanted,
                                          const SheetSelection& effective);
} // namespace host::tickets
