#pragma once

#include <cstdint>

namespace base::xps::printschema
{
/// The size of a sheet. A height of 0 means a roll, whose length is open.
struct MediaSize
{
    std::int32_t widthMicrometres = 0;
    std::int32_t heightMicrometres = 0;

    bool operator==(const MediaSize&) const = default;
};

/// The smallest and the largest sheet that a device can print on.
struct MediaSizeLimits
{
    MediaSize minimum;
    MediaSize maximum;

    bool operator==(const MediaSizeLimits&) const = default;

    /// Whether a sheet is within the limits, which are inclusive.
    constexpr bool Contains(MediaSize size) const noexcept
    {
        return size.heightMicrometres <= maximum.heightMicrometres &&
               size.widthMicrometres <= maximum.widthMicrometres &&
               size.heightMicrometres >= minimum.heightMicrometres &&
               size.widthMicrometres >= minimum.widthMicrometres;
    }
};
} // namespace base::xps::printschema
