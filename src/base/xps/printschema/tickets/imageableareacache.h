#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>

#include "base/xps/printschema/vocabulary/imageablearea.h"

namespace base::xps::printschema
{
/// A cache of imageable areas by a key of any text. If the keys would come to more than four megabytes, the
/// cache is emptied first. A key of more than a tenth of that is not stored.
class ImageableAreaCache
{
public:
    /// The printer's answer, which may be that it has none.
    using Area = std::optional<ImageableSize>;

    /// Null if the key is not stored. The pointer is valid until the next Add.
    const Area* Find(const std::wstring& key) const;
    void Add(std::wstring key, const Area& area);

private:
    std::map<std::wstring, Area> m_areas;
    std::size_t m_characters = 0;
};
} // namespace base::xps::printschema
