#include "host/report/pageview.h"

#include <limits>

#include <gtest/gtest.h>

#include "host/report/html/pagedrawing.h"

namespace host::report
{
namespace
{
TEST(PageView, ScalesThePageSoThatItsOffsetComesToTheCorner)
{
    PageReport page;
    page.after = {1000.0, 2000.0};
    page.given.emplace().scale = {-4'000, 2'000, 50, 25};
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
    const std::string arrow = " px; the content's arrow then points ";
    const std::pair<xps::ContentTransform, std::string> table[] = {
        {{0, -1, 1, 0, 0, 816},
         "a quarter turn anticlockwise (270 degrees clockwise): (x, y) comes to (y, 816 - x)" + arrow +
             "to the left"},
        {{0, 1, -1, 0, 1056, 0},
         "a quarter turn clockwise: (x, y) comes to (1056 - y, x)" + arrow + "to the right"},
        {{-1, 0, 0, -1, 5, 6}, "a half turn: (x, y) comes to (5 - x, 6 - y)" + arrow + "down"},
        {{0.5, 0, 0, 2, 0, -3}, "(x, y) comes to (0.5 x, -3 + 2 y)" + arrow + "up"},
    };
    for (const auto& [transform, words] : table)
    {
        EXPECT_EQ(html::DescribeTransform(transform), words);
    }
}
} // namespace
} // namespace host::report
