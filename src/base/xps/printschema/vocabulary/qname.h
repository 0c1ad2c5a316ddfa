#pragma once

#include <cstdint>
#include <string>

namespace base::xps::printschema
{
/// The namespaces of names in a ticket. PrintSchemaHandler knows their prefixes.
enum class NamespaceId : std::uint32_t
{
    Keywords = 0,
    Framework = 1,
    /// The driver's namespace, under the prefix in its property bag.
    Private = 2,
    /// The prefix "ns0000", used for private names if the driver's property bag has no prefix.
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
