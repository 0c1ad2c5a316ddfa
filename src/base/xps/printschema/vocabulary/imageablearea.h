#pragma once

#include <cstdint>

#include "base/xps/printschema/vocabulary/mediasize.h"

namespace base::xps::printschema
{
/// The part of a sheet that the printer can print on, measured from the sheet's top left corner.
struct ImageableArea
{
    std::int32_t leftMicrometres = 0;
    std::int32_t topMicrometres = 0;
    std::int32_t widthMicrometres = 0;
    std::int32_t heightMicrometres = 0;

    bool operator==(const ImageableArea&) const = default;
};

/// PageImageableSize of print capabilities: a sheet, held so that the page can be read, and its imageable
/// area.
struct ImageableSize
{
    MediaSize sheet;
    ImageableArea area;

    bool operator==(const ImageableSize&) const = default;
};

/// The values of PageScaling's custom options: the page's position in the imageable area, and its scale.
struct PageScale
{
    std::int32_t offsetWidthMicrometres = 0;
    std::int32_t offsetHeightMicrometres = 0;
    std::int32_t widthPercent = 0;
    std::int32_t heightPercent = 0;

    bool operator==(const PageScale&) const = default;
};

/// The same after the sheet is turned clockwise by `quarters` times 90 degrees.
ImageableSize TurnClockwise(ImageableSize size, int quarters) noexcept;

/// Whether two sheets have the same size, apart from rounding: printers use units of their own.
bool IsSameSheet(MediaSize first, MediaSize second) noexcept;
} // namespace base::xps::printschema
