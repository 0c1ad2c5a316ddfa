#include "host/report/pagesize.h"

#include <gtest/gtest.h>

#include "host/report/pagereport.h"
#include "tests/host/testpackages.h"

namespace host::report
{
namespace
{
TEST(PageSize, IsReadFromTheStartOfTheMarkup)
{
    const std::string page = "<!-- a --><FixedPage Width='816' Height=\"1122.519685039370\"><Path/><Canvas>";
    const std::pair<std::string, const char*> starts[] = {
        {page + "</Canvas></FixedPage>", "816x1122.52"},
        {page + "<Path Data='cut o", "816x1122.52"},
        {page + "<Path Name='\xE2\x82", "816x1122.52"},
        {ToUtf16(page), "816x1122.52"},
        {ToUtf16(page + "<") + '\0', "816x1122.52"},
        {"<FixedPage Width='3g25' Height=' 5'/>", "?x?"},
        {"<FixedPage Height='0.004'/>", "?x0"},
        {"<FixedPage Width='816' Height='10", "?x?"},
        {"no markup", "?x?"},
        {"", "?x?"},
    };
    for (const auto& [markup, size] : starts)
    {
        EXPECT_EQ(FormatPageSize(ReadPageStart(markup).size), size) << markup;
    }
}

TEST(PageSize, ComesWithTheTransformOfACanvasThatBeginsThePage)
{
    const auto find = [](const std::string& content) {
        return ReadPageStart("<FixedPage>" + content + "</FixedPage>").transform;
    };
    const std::string canvas = "<Canvas RenderTransform='0.00,-1.00,1.00,0.00,0.00,816.00'>";
    EXPECT_EQ(find(canvas + "</Canvas>"), (ContentTransform{0, -1, 1, 0, 0, 816}));
    EXPECT_TRUE(ReadPageStart("<FixedPage>" + canvas + "<Path Data='cut o").transform);
    for (const char* other : {"<Path RenderTransform='1,0,0,1,0,0'/>",
                              "<Path/><Canvas RenderTransform='1,0,0,1,0,0'/>",
                              "<Canvas RenderTransform='1,0,0,1,0'/>",
                              "<Canvas RenderTransform='1,0,0,1,0,0,0'/>",
                              "<Canvas RenderTransform='1,0,0,1,0,x'/>",
                              "<Canvas/>",
                              ""})
    {
        EXPECT_FALSE(find(other)) << other;
    }
}
} // namespace
} // namespace host::report
