#pragma once

#include <cstdint>

#include "base/xps/printschema/vocabulary/imageablearea.h"

namespace base::xps
{
/// Whether the sheet must be turned a quarter turn to lie as its orientation says. Orientations count by
/// their option, 0 for landscape and 1 for portrait; a square sheet is upright.
bool MustTurn(std::int32_t orientationOption, bool sheetIsPortrait) noexcept;

/// The custom scaling that brings the printable part of one sheet into that of another, as large as fits,
/// and sets their corners together.
printschema::PageScale FitOnto(const printschema::ImageableArea& source,
                               const printschema::ImageableArea& target) noexcept;
} // namespace base::xps
