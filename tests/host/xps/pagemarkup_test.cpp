#include "host/xps/pagemarkup.h"

#include <gtest/gtest.h>

#include "tests/host/testpackages.h"

namespace host::xps
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

TEST(PageMarkup, IsAtFaultWhereNoReaderOfXpsWouldTakeIt)
{
    for (const auto& row : ReadTable("pagefaults.txt"))
    {
        const std::string fault = ReadPage(row.at(1)).fault;
        EXPECT_TRUE(row[0].empty() ? fault.empty() : fault.starts_with(row[0]))
            << row[1] << " gives " << fault;
    }
}
} // namespace
} // namespace host::xps
