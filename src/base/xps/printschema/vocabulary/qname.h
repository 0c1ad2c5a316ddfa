#pragma once

#include <cstdint>
#include <string>

namespace base::xps::printschema
{
/// The namespaces of the names in a ticket. PrintSchemaHandler knows the prefix of each.
enum class NamespaceId : std::uint32_t
{
    Keywords = 0,
    Framework = 1,
    /// The driver's own, under the prefix that its property bag names.
    Private = 2,
    /// The prefix "ns0000", under which private names stand where the driver names none.
    Fallback = 3,
};

/// A qualified name of the Print Schema.
struct Qname
{
    NamespaceId namespaceId{};
    std::wstring localName;

    bool operator==(const Qname&) const = default;
};
} // namespace base::xps::printschema
