#include "host/report/pagesize.h"

#include <gtest/gtest.h>

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
        EXPECT_EQ(FormatPageSize(ReadPageSize(markup)), size) << markup;
    }
}
} // namespace
} // namespace host::report
