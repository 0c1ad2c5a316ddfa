#pragma once

#include <cstdint>

#include "base/xps/printschema/vocabulary/mediasize.h"

namespace base::xps::printschema
{
/// The part of a sheet that the printer can print on, from the sheet's top left corner.
struct ImageableArea
{
    std::int32_t leftMicrometres = 0;
    std::int32_t topMicrometres = 0;
    std::int32_t widthMicrometres = 0;
    std::int32_t heightMicrometres = 0;

    bool operator==(const ImageableArea&) const = default;
};

/// PageImageableSize of print capabilities: a sheet, as someone sees it who holds the page so that it can be
/// read, and what of it can be printed on.
struct ImageableSize
{
    MediaSize sheet;
    ImageableArea area;

    bool operator==(const ImageableSize&) const = default;
};

/// Where PageScaling's custom options put the page, relative to the imageable area, and how large they make
/// it.
struct PageScale
{
    std::int32_t offsetWidthMicrometres = 0;
    std::int32_t offsetHeightMicrometres = 0;
    std::int32_t widthPercent = 0;
    std::int32_t heightPercent = 0;

    bool operator==(const PageScale&) const = default;
};

/// The same, seen after the sheet was turned clockwise a number of quarter turns.
ImageableSize TurnClockwise(ImageableSize size, int quarters) noexcept;

/// Whether two sheets are the same but for rounding: printers count in units of their own.
bool IsSameSheet(MediaSize first, MediaSize second) noexcept;
} // namespace base::xps::printschema
