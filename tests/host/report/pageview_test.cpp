#include "host/report/pageview.h"

#include <limits>

#include <gtest/gtest.h>

#include "host/report/pagedrawing.h"
#include "tests/host/report/testpages.h"

namespace host::report
{
namespace
{
PageReport TurnedPage()
{
    PageReport page = GivenPage();
    page.asked.orientation = "Landscape";
    page.isMarkupReplaced = true;
    page.before = {1056.0, 816.0};
    page.after = {816.0, 1056.0};
    page.given->scale = {};
    return page;
}

TEST(PageView, LaysATurnedPageAcrossItsSheetAndTheLimitsFirst)
{
    const PageView before = ViewBefore(TurnedPage());
    EXPECT_EQ(before.sheet, (MillimetreBox{0.0, 0.0, 279.4, 215.9}));
    EXPECT_EQ(before.largest, (MillimetreBox{0.0, 0.0, 355.6, 215.9}));
    ASSERT_TRUE(before.page);
    EXPECT_NEAR(before.page->width, before.sheet.width, 1e-9);
    const PageView after = ViewAfter(TurnedPage());
    EXPECT_EQ(after.sheet, (MillimetreBox{0.0, 0.0, 215.9, 279.4}));
    EXPECT_EQ(after.smallest, (MillimetreBox{0.0, 0.0, 76.2, 127.0}));
    ASSERT_TRUE(after.page);
    EXPECT_NEAR(after.page->width, after.sheet.width, 1e-9);
    EXPECT_NEAR(after.page->height, after.sheet.height, 1e-9);
}

TEST(PageView, ScalesThePageSoThatItsOffsetComesToTheCorner)
{
    PageReport page = GivenPage();
    page.after = {1000.0, 2000.0};
    page.given->scale = {-4'000, 2'000, 50, 25};
    const MillimetreBox box = ViewAfter(page).page.value();
    EXPECT_EQ(box.left, 2.0);
    EXPECT_EQ(box.top, -0.5);
    EXPECT_NEAR(box.width, 1000.0 * 25.4 / 96 / 2, 1e-9);
    EXPECT_NEAR(box.height, 2000.0 * 25.4 / 96 / 4, 1e-9);
    page.after.height = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(ViewAfter(page).page);
}

TEST(PageDrawing, TellsTurnsApart)
{
    const std::pair<xps::ContentTransform, const char*> table[] = {
        {{0, -1, 1, 0, 0, 816},
         "a quarter turn anticlockwise (270 degrees clockwise): (x, y) comes to (y, 816 - x) px; the "
         "content's "
         "arrow then points to the left"},
        {{0, 1, -1, 0, 1056, 0},
         "a quarter turn clockwise: (x, y) comes to (1056 - y, x) px; the content's arrow then points to the "
         "right"},
        {{-1, 0, 0, -1, 5, 6},
         "a half turn: (x, y) comes to (5 - x, 6 - y) px; the content's arrow then points down"},
        {{0.5, 0, 0, 2, 0, -3}, "(x, y) comes to (0.5 x, -3 + 2 y) px; the content's arrow then points up"},
    };
    for (const auto& [transform, words] : table)
    {
        EXPECT_EQ(DescribeTransform(transform), words);
    }
}

TEST(PageDrawing, KeepsTheSheetInSightHoweverFarTheLimitsAre)
{
    PageReport page = PassedPage();
    page.asked.limits.maximum = {2'000'000'000, 2'000'000'000};
    const PageDrawings drawings = DrawPage(page);
    EXPECT_NE(drawings.before.find("width=\"2000000\" height=\"2000000\""), std::string::npos);
    // As wide as the sheet and its margins.
    EXPECT_NE(drawings.before.find("<svg width=\"100%\" viewBox=\"-25.91 -25.91 248.29 "), std::string::npos)
        << drawings.before;
    EXPECT_EQ(drawings.after, "");
}
} // namespace
} // namespace host::report
