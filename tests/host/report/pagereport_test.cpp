#include "host/report/pagereport.h"

#include <gtest/gtest.h>

#include "tests/host/report/testpages.h"

namespace host::report
{
namespace
{
using base::xps::printschema::MediaSize;

struct Seen
{
    const char* orientation;
    MediaSize media;
    bool isMarkupReplaced;
    bool isGiven;
    Decision decision;
    const char* reason;
};

class PageReportDecision : public testing::TestWithParam<Seen>
{
};

TEST_P(PageReportDecision, FollowsFromWhatWasSeenOfThePage)
{
    PageReport page = GetParam().isGiven ? GivenPage() : PassedPage();
    page.asked.orientation = GetParam().orientation;
    page.asked.media = GetParam().media;
    page.isMarkupReplaced = GetParam().isMarkupReplaced;
    EXPECT_STREQ(NameOf(Decide(page)), NameOf(GetParam().decision));
    EXPECT_EQ(ExplainDecision(page), GetParam().reason);
}

constexpr MediaSize kLargest{215'900, 355'600};

INSTANTIATE_TEST_SUITE_P(
    Pages,
    PageReportDecision,
    testing::Values(
        Seen{"Portrait",
             kLetter,
             false,
             false,
             Decision::Passed,
             "Portrait on an upright sheet within the limits"},
        Seen{"Portrait",
             kLargest,
             false,
             true,
             Decision::Passed,
             "Portrait on an upright sheet within the limits"},
        Seen{"Landscape", kLetter, true, true, Decision::Turned, "Landscape on an upright sheet"},
        Seen{"Portrait", {279'400, 215'900}, true, true, Decision::Turned, "Portrait on a landscape sheet"},
        Seen{"Portrait",
             kA3,
             false,
             true,
             Decision::Refitted,
             "297x420 mm is outside the limits: now NorthAmericaLetter 215.9x279.4, scaled to 65 %"},
        Seen{"ReverseLandscape",
             kLetter,
             false,
             true,
             Decision::Refitted,
             "279.4x215.9 mm is outside the limits: now NorthAmericaLetter 215.9x279.4, scaled to 65 %"},
        Seen{"Landscape",
             kA3,
             true,
             true,
             Decision::TurnedAndRefitted,
             "Landscape on an upright sheet; 297x420 mm is outside the limits: now NorthAmericaLetter "
             "215.9x279.4, scaled to 65 %"}));

TEST(PageReport, SaysThatAScalingWasKept)
{
    PageReport page = GivenPage();
    page.asked.media = kA3;
    page.given->scaling = "None";
    EXPECT_TRUE(ExplainDecision(page).ends_with("215.9x279.4, scaling stays None"));
}
} // namespace
} // namespace host::report
