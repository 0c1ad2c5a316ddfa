#include "host/xps/pagemarkup.h"

#include <gtest/gtest.h>

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
    const std::string xps = "http://schemas.microsoft.com/xps/2005/06'";
    const std::string open = "http://schemas.openxps.org/oxps/v1.0'";
    const std::string foreign = "is no XPS page: line 1, column ";
    const std::string wrapped =
        "<mc:AlternateContent xmlns:mc='http://schemas.openxmlformats.org/markup-compatibility/2006'>"
        "<mc:Choice Requires='v'><v xmlns='urn:v'/></mc:Choice><mc:Fallback>";
    const std::pair<std::string, std::string> pages[] = {
        {"<FixedPage xmlns='" + xps + "><Canvas/></FixedPage>", ""},
        {"<FixedPage xmlns='" + open + "><Path/><Canvas xmlns=''/></FixedPage>", ""},
        {"<q:FixedPage xmlns:q='" + open + " xmlns='" + xps + "><Canvas/></q:FixedPage>", ""},
        {"<q:FixedPage xmlns:q='" + xps + "><Canvas/></q:FixedPage>", foreign},
        {"<FixedPage xmlns='" + xps + "><Canvas xmlns='urn:x'/></FixedPage>", foreign},
        {"<FixedPage/>", foreign},
        {wrapped + "<FixedPage xmlns='" + xps + "><Canvas/></FixedPage></mc:Fallback></mc:AlternateContent>",
         ""},
        {wrapped + "<FixedPage/></mc:Fallback></mc:AlternateContent>", foreign},
        {wrapped + "</mc:Fallback></mc:AlternateContent>",
         "is no XPS page: its alternate content has no fallback"},
        {"<FixedPage xmlns='" + xps + ">\n<Canvas>\n<Path A='?a&b=c'/></Canvas></FixedPage>",
         "is not well-formed: line 3, column "},
        {"<!DOCTYPE a><FixedPage xmlns='" + xps + "/>", "declares a document type"},
        {"", "is empty"},
    };
    for (const auto& [markup, fault] : pages)
    {
        const std::string found = ReadPage(markup).fault;
        EXPECT_TRUE(fault.empty() ? found.empty() : found.starts_with(fault)) << markup << " gives " << found;
    }
}
} // namespace
} // namespace host::xps
