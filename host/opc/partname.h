#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/xml/text.h"

namespace host::opc
{
/// The name of a part in an Open Packaging Conventions package, such as "/Documents/1/FixedDocument.fdoc".
///
/// Names are kept in one spelling, whatever the producer wrote: absolute, with slashes, with unreserved
/// characters plain and all others that a segment must not hold percent-encoded. Two names are equal when
/// they match without regard to ASCII case.
class PartName
{
public:
    /// The package itself as the source of relationships; as a text "/".
    static PartName PackageRoot() { return PartName("/"); }

    /// The part that a ZIP item of this name holds; empty when the name cannot be a part's.
    static std::optional<PartName> FromItem(std::string_view itemName);

    /// The part that `reference`, as it stands in this part, points at. Throws xml::MarkupError for a
    /// reference that lies outside the package, climbs out of it or names no part.
    PartName Resolve(std::string_view reference) const;

    /// The same; empty where Resolve throws.
    std::optional<PartName> TryResolve(std::string_view reference) const;

    /// The part that holds this one's relationships.
    PartName RelationshipsPart() const;

    /// Whose relationships this part holds; empty when it is not a relationships part.
    std::optional<PartName> RelationshipsSource() const;

    const std::string& Text() const noexcept { return m_text; }

    /// Without the dot; empty when the last segment has none.
    std::string_view Extension() const noexcept;

    friend bool operator==(const PartName& left, const PartName& right) noexcept
    {
        return left.m_key == right.m_key;
    }
    friend std::strong_ordering operator<=>(const PartName& left, const PartName& right) noexcept
    {
        return left.m_key <=> right.m_key;
    }

private:
    explicit PartName(std::string text);

    std::string m_text;
    // The text in lower case, for comparisons.
    std::string m_key;
};

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

/// Whether an item's name has a ".." segment, which no part name has.
bool StepsUp(std::string_view itemName);

using xml::ToLowerAscii;
} // namespace host::opc
