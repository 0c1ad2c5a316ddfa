#include "host/report/pagesize.h"

#include <gtest/gtest.h>

namespace host::report
{
namespace
{
TEST(PageSize, ComesWithTheTransformOfACanvasThatBeginsThePage)
{
    const std::string canvas = "<FixedPage><Canvas RenderTransform='0.00,-1.00,1.00,0.00,0.00,816.00'>";
    for (const char* rest : {"</Canvas></FixedPage>", "<Path Data='cut o"})
    {
        EXPECT_EQ(ReadPageStart(canvas + rest).transform, (ContentTransform{0, -1, 1, 0, 0, 816}));
    }
    for (const std::string other : {"<Path RenderTransform='1,0,0,1,0,0'/>",
                                    "<Path/><Canvas RenderTransform='1,0,0,1,0,0'/>",
                                    "<Canvas RenderTransform='1,0,0,1,0'/>",
                                    "<Canvas RenderTransform='1,0,0,1,0,0,0'/>",
                                    "<Canvas RenderTransform='1,0,0,1,0,x'/>",
                                    "<Canvas/>",
                                    ""})
    {
        EXPECT_FALSE(ReadPageStart("<FixedPage>" + other + "</FixedPage>").transform) << other;
    }
}
} // namespace
} // namespace host::report
