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
    /// Of a medium, where the ticket tells it.
    std::optional<base::xps::printschema::MediaSize> size;
};

/// What a ticket says of the two features by which a page comes to its sheet; empty for what it leaves open.
struct SheetSelection
{
    std::optional<Selection> orientation;
    std::optional<Selection> medium;
};

/// Throws xml::MarkupError for what is no print ticket. COM must be initialised on the thread.
SheetSelection ReadSheetSelection(const std::string& ticket);

/// What the printer puts in place of what it does not have, as people know both: "CustomMediaSize 500x500"
/// and "NorthAmericaLetter 215.9x279.4".
struct Replacement
{
    std::string wanted;
    std::string taken;
};

/// `wanted` are the tickets that hold for a page, most specific first, of which the first one that selects
/// something is heard; `effective` is what the printer made of them.
std::vector<Replacement> FindReplacements(const std::vector<SheetSelection>& wanted,
                                          const SheetSelection& effective);
} // namespace host::tickets
