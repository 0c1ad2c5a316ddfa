#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace host::opc
{
/// What a ZIP item contains: a whole part, or one piece of an interleaved part.
struct ItemRole
{
    /// The name without the piece's own segment, as it stands in the item.
    std::string_view logicalName;
    /// Counted from 0; empty for a part in one piece.
    std::optional<std::uint32_t> piece;
    bool isLastPiece = false;
};

/// Recognises the items of pieces: "1.fpage/[0].piece", "1.fpage/[1].last.piece", in any case (OPC,
/// mapping logical item names to ZIP item names).
ItemRole ParseItemName(std::string_view itemName);
} // namespace host::opc
