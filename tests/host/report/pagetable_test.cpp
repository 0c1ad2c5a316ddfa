#include "host/report/pagetable.h"

#include <gtest/gtest.h>

#include "tests/host/report/testpages.h"

namespace host::report
{
namespace
{
TEST(PageTable, AlignsTheLinesBelowTheHead)
{
    PageReport page = PassedPage();
    page.after = {1'056.5, std::nullopt};
    EXPECT_EQ(
        FormatTableHead(),
        "page before, px      after, px       asks for         medium, mm                      limits, mm    "
        "         decision         reason; ticket\n");
    EXPECT_EQ(
        FormatTableLine(page),
        "3    816x1056.5      1056.5x?        Portrait         NorthAmericaLetter 215.9x279.4  "
        "76.2x127-215.9x355.6   passed           Portrait on an upright sheet within the limits; none\n");
}

TEST(PageTable, KeepsColumnsApartThatAreTooLong)
{
    PageReport page = GivenPage();
    page.before = {1'234.567, 12'345.678};
    page.oldTicket = "/old.xml";
    page.isMarkupReplaced = true;
    const std::string line = FormatTableLine(page);
    EXPECT_TRUE(line.starts_with("3    1234.57x12345.68 816x1056.5      Portrait")) << line;
    EXPECT_TRUE(line.ends_with("; /old.xml -> /new.xml\n")) << line;
}

TEST(PageTable, GivesJsonInMicrometresWithNullForWhatThereIsNot)
{
    PageReport page = PassedPage();
    page.after.height.reset();
    EXPECT_EQ(
        FormatJson(page),
        R"({"after":{"height":null,"width":816.0},"asked":{"limits":{"maximum":{"heightMicrometres":355600,)"
        R"("widthMicrometres":215900},"minimum":{"heightMicrometres":127000,"widthMicrometres":76200}},)"
        R"("media":{"heightMicrometres":279400,"name":"NorthAmericaLetter","widthMicrometres":215900},)"
        R"("orientation":"Portrait","scaling":"FitApplicationMediaSizeToPageMediaSize"},)"
        R"("before":{"height":1056.5,"width":816.0},"decision":"passed","given":null,"givenReplacement":null,"markupFault":null,"newTicket":null,)"
        R"("oldTicket":null,"page":3,"part":"/1.fpage",)"
        R"("reason":"Portrait on an upright sheet within the limits","replacements":[]})"
        "\n");
    const std::string given = FormatJson(GivenPage());
    EXPECT_NE(given.find(R"("given":{"media":{"heightMicrometres":279400,"name":"NorthAmericaLetter",)"
                         R"("widthMicrometres":215900},"orientation":"Portrait","scaling":"Custom"},)"),
              std::string::npos)
        << given;
}
} // namespace
} // namespace host::report
