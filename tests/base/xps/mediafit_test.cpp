#include "base/xps/mediafit.h"

#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace base::xps
{
namespace
{
using printschema::ImageableArea;
using printschema::PageScale;

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

struct FitCase
{
    const char* name;
    ImageableArea source;
    ImageableArea target;
    PageScale expected;
};

class FitOntoTest : public ::testing::TestWithParam<FitCase>
{
};

TEST_P(FitOntoTest, BringsOneAreaIntoTheOther)
{
    const PageScale scale = FitOnto(GetParam().source, GetParam().target);
    EXPECT_EQ(scale.offsetWidthMicrometres, GetParam().expected.offsetWidthMicrometres);
    EXPECT_EQ(scale.offsetHeightMicrometres, GetParam().expected.offsetHeightMicrometres);
    EXPECT_EQ(scale.widthPercent, GetParam().expected.widthPercent);
    EXPECT_EQ(scale.heightPercent, GetParam().expected.heightPercent);
}

INSTANTIATE_TEST_SUITE_P(
    Areas,
    FitOntoTest,
    ::testing::Values(FitCase{"Same", {0, 0, 2000, 3000}, {0, 0, 2000, 3000}, {0, 0, 100, 100}},
                      FitCase{"NarrowerByWidth", {0, 0, 2000, 3000}, {0, 0, 1000, 3000}, {0, 0, 50, 50}},
                      FitCase{"ShorterByHeight", {0, 0, 2000, 3000}, {0, 0, 2000, 750}, {0, 0, 25, 25}},
                      FitCase{"Larger", {0, 0, 2000, 3000}, {0, 0, 6000, 12000}, {0, 0, 300, 300}},
                      // A3 onto A4 is 0.7070..., and no more than whole percents are kept.
                      FitCase{"A3OntoA4", {0, 0, 297000, 420000}, {0, 0, 210000, 297000}, {0, 0, 70, 70}},
                      FitCase{"JustBelowAPercent", {0, 0, 1000, 1000}, {0, 0, 999, 1000}, {0, 0, 99, 99}},
                      // (100 - 40 * 0.5) / 0.5 and (10 - 40 * 0.5) / 0.5, each with its sign turned.
                      FitCase{"WithMargins", {40, 40, 2000, 2000}, {100, 10, 1000, 1000}, {-160, 20, 50, 50}},
                      // 1 / 2 and -1 / 2: halves go away from zero, so that both lengths come out as one.
                      FitCase{"HalvesUp", {0, 0, 100, 100}, {1, -1, 200, 200}, {-1, 1, 200, 200}},
                      // 1 / 4 and 3 / 4.
                      FitCase{"Quarters", {0, 0, 100, 100}, {1, 3, 400, 400}, {0, -1, 400, 400}},
                      FitCase{"OntoNothing", {0, 0, 100, 100}, {0, 0, 0, 0}, {0, 0, 0, 0}},
                      FitCase{
                          "OntoNothingWithMargins", {0, 0, 100, 100}, {5, -5, 0, 0}, {-kMost, kMost, 0, 0}},
                      FitCase{"FromNothing", {0, 0, 0, 0}, {0, 0, 100, 100}, {0, 0, kMost, kMost}},
                      FitCase{"NothingOntoNothing", {1, 2, 0, 0}, {3, 4, 0, 0}, {0, 0, 0, 0}},
                      FitCase{"FromALineByWidth", {0, 0, 0, 100}, {0, 0, 100, 200}, {0, 0, 200, 200}}),
    [](const auto& given) { return std::string(given.param.name); });

TEST(FitOnto, StaysWithinWhatATicketCanHold)
{
    EXPECT_EQ(FitOnto({0, 0, 1, 1}, {0, 0, kMost, kMost}).widthPercent, kMost);
    EXPECT_EQ(FitOnto({0, 0, kMost, kMost}, {kMost, kLeast, 1, 1}), (PageScale{-kMost, kMost, 0, 0}));
}

TEST(MustTurn, ComparesTheOrientationWithTheShapeOfTheSheet)
{
    const bool expected[4][2] = {{false, true}, {true, false}, {false, false}, {false, false}};
    for (int option = 0; option < 4; ++option)
    {
        EXPECT_EQ(MustTurn(option, false), expected[option][0]) << option;
        EXPECT_EQ(MustTurn(option, true), expected[option][1]) << option;
    }
}
} // namespace
} // namespace base::xps
