#include "base/xps/page/pagedecision.h"

#include <cmath>
#include <limits>

namespace base::xps
{
namespace
{
/// Drops the fraction. A value out of range becomes the nearest value in range; not-a-number becomes 0.
std::int32_t Truncate(double value) noexcept
{
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(value))
    {
        return 0;
    }
    if (value <= Limits::min())
    {
        return Limits::min();
    }
    return value >= Limits::max() ? Limits::max() : static_cast<std::int32_t>(value);
}

/// Infinite for an open length, such as that of a roll: it fits any target.
double Ratio(std::int32_t source, std::int32_t target) noexcept
{
    return source > 0 ? static_cast<double>(target) / source : std::numeric_limits<double>::infinity();
}

std::int32_t RoundHalfAwayFromZero(double value) noexcept
{
    return Truncate(value > 0.0 ? value + 0.5 : value - 0.5);
}

std::int32_t Offset(std::int32_t source, std::int32_t target, double factor) noexcept
{
    // The sign changes after rounding; the lowest number has no positive counterpart.
    const std::int32_t distance = RoundHalfAwayFromZero((target - source * factor) / factor);
    return distance == std::numeric_limits<std::int32_t>::min() ? std::numeric_limits<std::int32_t>::max()
                                                                : -distance;
}
} // namespace

bool MustTurn(std::int32_t orientationOption, bool sheetIsPortrait) noexcept
{
    constexpr std::int32_t landscape = 0;
    constexpr std::int32_t portrait = 1;
    return orientationOption == (sheetIsPortrait ? landscape : portrait);
}

printschema::PageScale FitOnto(const printschema::ImageableArea& source,
                               const printschema::ImageableArea& target) noexcept
{
    const double widthRatio = Ratio(source.widthMicrometres, target.widthMicrometres);
    const double heightRatio = Ratio(source.heightMicrometres, target.heightMicrometres);
    const double smaller = widthRatio < heightRatio ? widthRatio : heightRatio;
    // A sheet without any extent is not scaled.
    const double factor = std::isinf(smaller) ? 1.0 : smaller;
    const std::int32_t percent = Truncate(factor * 100.0);
    return {Offset(source.leftMicrometres, target.leftMicrometres, factor),
            Offset(source.topMicrometres, target.topMicrometres, factor),
            percent,
            percent};
}
} // namespace base::xps
