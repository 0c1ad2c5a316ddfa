#pragma once

#include <cstdint>

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
} // namespace base::xps::printschema
