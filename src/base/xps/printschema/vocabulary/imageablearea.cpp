#include "base/xps/printschema/vocabulary/imageablearea.h"

#include <cstdlib>

namespace base::xps::printschema
{
namespace
{
constexpr std::int64_t kRoundingMicrometres = 50;

bool IsSameLength(std::int64_t first, std::int64_t second) noexcept
{
    return std::abs(first - second) <= kRoundingMicrometres;
}
} // namespace

ImageableSize TurnClockwise(ImageableSize size, int quarters) noexcept
{
    for (int quarter = 0; quarter < quarters; ++quarter)
    {
        const auto& [sheet, area] = size;
        const std::int64_t bottom =
            std::int64_t{sheet.heightMicrometres} - area.topMicrometres - area.heightMicrometres;
        size = {{sheet.heightMicrometres, sheet.widthMicrometres},
                {static_cast<std::int32_t>(bottom),
                 area.leftMicrometres,
                 area.heightMicrometres,
                 area.widthMicrometres}};
    }
    return size;
}

bool IsSameSheet(MediaSize first, MediaSize second) noexcept
{
    return IsSameLength(first.widthMicrometres, second.widthMicrometres) &&
           IsSameLength(first.heightMicrometres, second.heightMicrometres);
}
} // namespace base::xps::printschema
