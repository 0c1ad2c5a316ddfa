#pragma once

#include <cstdint>

namespace base::xps::printschema
{
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
} // namespace base::xps::printschema
