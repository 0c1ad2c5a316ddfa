#pragma once

#include <cstdint>

#include "base/xps/printschema/vocabulary/imageablearea.h"

namespace base::xps
{
/// Whether the page must be turned by 90 degrees because its orientation and its sheet disagree. The
/// orientation is the option's index: 0 is landscape, 1 portrait; others never turn. A square sheet counts as
/// portrait.
bool MustTurn(std::int32_t orientationOption, bool sheetIsPortrait) noexcept;

/// The custom scaling that fits the imageable area of one sheet into that of another, as large as possible,
/// with the same top left corner.
printschema::PageScale FitOnto(const printschema::ImageableArea& source,
                               const printschema::ImageableArea& target) noexcept;
} // namespace base::xps
