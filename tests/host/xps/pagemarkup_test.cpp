#include "host/xps/pagemarkup.h"

#include <gtest/gtest.h>

#include "host/report/pagereport.h"
#include "tests/host/testpackages.h"

namespace host::xps
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
        EXPECT_EQ(report::FormatPageSize(ReadPageStart(markup).size), size) << markup;
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

TEST(PageMarkup, IsAtFaultWhereNoReaderOfXpsWouldTakeIt)
{
    const std::string xps = "http://schemas.microsoft.com/xps/2005/06'";
    const std::string open = "http://schemas.openxps.org/oxps/v1.0'";
    const std::string foreign = "is no XPS page: line 1, column ";
    const std::pair<std::string, std::string> pages[] = {
        {"<FixedPage xmlns='" + xps + "><Canvas/></FixedPage>", ""},
        {"<FixedPage xmlns='" + open + "><Path/><Canvas xmlns=''/></FixedPage>", ""},
        {"<q:FixedPage xmlns:q='" + open + " xmlns='" + xps + "><Canvas/></q:FixedPage>", ""},
        {"<q:FixedPage xmlns:q='" + xps + "><Canvas/></q:FixedPage>", foreign},
        {"<FixedPage xmlns='" + xps + "><Canvas xmlns='urn:x'/></FixedPage>", foreign},
        {"<FixedPage/>", foreign},
        {"<FixedPage xmlns='" + xps + ">\n<Canvas>\n<Path A='?a&b=c'/></Canvas></FixedPage>",
         "is not well-formed: line 3, column "},
        {"<!DOCTYPE a><FixedPage xmlns='" + xps + "/>", "declares a document type"},
        {"", "is not well-formed: "},
    };
    for (const auto& [markup, fault] : pages)
    {
        const std::string found = ReadPage(markup).fault;
        EXPECT_TRUE(fault.empty() ? found.empty() : found.starts_with(fault)) << markup << " gives " << found;
    }
}
} // namespace
} // namespace host::xps
