#include "host/report/pagesize.h"

#include <gtest/gtest.h>

namespace host::report
{
namespace
{
std::string Utf16(std::string_view text)
{
    std::string wide = "\xFF\xFE";
    for (const char c : text)
    {
        wide += c;
        wide += '\0';
    }
    return wide;
}

TEST(PageSize, IsReadFromTheStartOfTheMarkup)
{
    const std::string page = "<!-- a --><FixedPage Width='816' Height=\"1122.519685039370\"><Path/><Canvas>";
    const struct
    {
        std::string markup;
        const char* size;
    } table[] = {
        {page + "</Canvas></FixedPage>", "816x1122.52"},
        {page + "<Path Data='cut o", "816x1122.52"},
        {page + "<Path Name='\xE2\x82", "816x1122.52"},
        {Utf16(page), "816x1122.52"},
        {Utf16(page + "<").substr(0, 2 * page.size() + 3), "816x1122.52"},
        {"<FixedPage Width='3g25' Height=' 5'/>", "?x?"},
        {"<FixedPage Height='0.004'/>", "?x0"},
        {"<FixedPage Width='816' Height='10", "?x?"},
        {"no markup", "?x?"},
        {"", "?x?"},
    };
    for (const auto& row : table)
    {
        EXPECT_EQ(FormatPageSize(ReadPageSize(row.markup)), row.size) << row.markup;
    }
}
} // namespace
} // namespace host::report
