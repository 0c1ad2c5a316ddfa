#include "base/xps/page/pagedecision.h"

#include <limits>

#include <gtest/gtest.h>

namespace base::xps
{
namespace
{
using printschema::ImageableArea;
using printschema::PageScale;

TEST(FitOnto, BringsOneAreaIntoTheOther)
{
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
    constexpr struct
    {
        const char* name;
        ImageableArea source;
        ImageableArea target;
        PageScale expected;
    } cases[] = {
        {"the same", {0, 0, 2000, 3000}, {0, 0, 2000, 3000}, {0, 0, 100, 100}},
        {"narrower", {0, 0, 2000, 3000}, {0, 0, 1000, 3000}, {0, 0, 50, 50}},
        {"lower", {0, 0, 2000, 3000}, {0, 0, 2000, 750}, {0, 0, 25, 25}},
        {"larger", {0, 0, 2000, 3000}, {0, 0, 6000, 12000}, {0, 0, 300, 300}},
        // 0.7070..., of which whole percents are kept.
        {"A3 onto A4", {0, 0, 297000, 420000}, {0, 0, 210000, 297000}, {0, 0, 70, 70}},
        {"just below a percent", {0, 0, 1000, 1000}, {0, 0, 999, 1000}, {0, 0, 99, 99}},
        // (100 - 40 * 0.5) / 0.5 and (10 - 40 * 0.5) / 0.5, each with the sign changed.
        {"with margins", {40, 40, 2000, 2000}, {100, 10, 1000, 1000}, {-160, 20, 50, 50}},
        // 1 / 2 and -1 / 2: halves are rounded away from zero, so both lengths are 1.
        {"halves", {0, 0, 100, 100}, {1, -1, 200, 200}, {-1, 1, 200, 200}},
        {"quarters", {0, 0, 100, 100}, {1, 3, 400, 400}, {0, -1, 400, 400}},
        {"onto nothing", {0, 0, 100, 100}, {0, 0, 0, 0}, {0, 0, 0, 0}},
        {"onto nothing with margins", {0, 0, 100, 100}, {5, -5, 0, 0}, {-most, most, 0, 0}},
        {"from nothing", {0, 0, 0, 0}, {0, 0, 100, 100}, {0, 0, 100, 100}},
        {"nothing onto nothing", {1, 2, 0, 0}, {3, 4, 0, 0}, {-2, -2, 100, 100}},
        {"from a line", {0, 0, 0, 100}, {0, 0, 100, 200}, {0, 0, 200, 200}},
        {"beyond what a ticket can hold", {0, 0, 1, 1}, {0, 0, most, most}, {0, 0, most, most}},
        {"offsets beyond that", {0, 0, most, most}, {most, least, 1, 1}, {-most, most, 0, 0}},
    };
    for (const auto& [name, source, target, expected] : cases)
    {
        EXPECT_EQ(FitOnto(source, target), expected) << name;
    }
}

TEST(MustTurn, ComparesTheOrientationWithTheShapeOfTheSheet)
{
    constexpr bool expected[4][2] = {{false, true}, {true, false}, {false, false}, {false, false}};
    for (int option = 0; option < 4; ++option)
    {
        EXPECT_EQ(MustTurn(option, false), expected[option][0]) << option;
        EXPECT_EQ(MustTurn(option, true), expected[option][1]) << option;
    }
}
} // namespace
} // namespace base::xps
