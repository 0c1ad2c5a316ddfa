#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "base/xps/printschema/vocabulary/mediasize.h"
#include "base/xps/printschema/vocabulary/qname.h"

namespace base::xps::printschema
{
/// One option of PageMediaSize. Its value is its index in MediaSizeOptionSchema.
struct MediaSizeEntry
{
    Qname name;
    std::int32_t value = 0;
    MediaSize size;

    bool operator==(const MediaSizeEntry&) const = default;
};

/// The PageMediaSize options that the filter knows, by value.
class MediaSizeTable
{
public:
    /// The value of the entry for "not found", which is not an option of a ticket.
    static constexpr std::int32_t kOptionUnknown = -1;
    static constexpr std::int32_t kCustomMediaSize = 0;
    static constexpr std::int32_t kIsoA4 = 9;
    static constexpr std::int32_t kNorthAmericaLetter = 94;

    MediaSizeTable();

    /// The one shared instance.
    static const MediaSizeTable& Shared();

    /// Whether a value has a size of its own. The upper bound is one past the last value.
    static constexpr bool IsStandard(std::int32_t value) noexcept { return value >= 2 && value <= 172; }

    /// `fullName` is "MediaSizeSchema::" and the option's name. Throws std::logic_error for a name without
    /// that start.
    void AddEntry(NamespaceId namespaceId, const std::wstring& fullName, std::int32_t value, MediaSize size);

    const std::map<std::int32_t, MediaSizeEntry>& GetEntries() const noexcept { return m_entries; }

    /// The entry of a value, or that of kOptionUnknown.
    const MediaSizeEntry& Lookup(std::int32_t value) const;

    /// The entry of the lowest value with exactly this size, as several names share a size; or that of
    /// kOptionUnknown.
    const MediaSizeEntry& LookupBySize(MediaSize size) const;

private:
    std::map<std::int32_t, MediaSizeEntry> m_entries;
};
} // namespace base::xps::printschema
