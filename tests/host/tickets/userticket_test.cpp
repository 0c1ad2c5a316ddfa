#include "host/tickets/userticket.h"

#include <regex>

#include <gtest/gtest.h>

#include "tests/host/testpackages.h"

namespace host::tickets
{
namespace
{
TEST(UserTicket, IsTheFilesOwnBytesButForOverridesThatTakeThePlaceOfWhatItSays)
{
    TicketOverrides overrides;
    overrides.orientation = "Landscape";
    overrides.media = "ISOA4";
    overrides.limits = "76.2x127-215.9x355.6";
    const OutputFolder folder;
    const std::filesystem::path file = folder / "user.xml";
    const std::string ticket =
        "\xEF\xBB\xBF" + MakeUserTicket(std::nullopt, overrides) + "\r\n<!-- end -->\r\n";
    WriteFile(file, ticket);
    EXPECT_EQ(MakeUserTicket(file, {}), ticket);
    const std::string overridden = MakeUserTicket(file, overrides);
    for (const std::string feature : {"PageOrientation", "PageMediaSize", "ns0000:PagePrintableMediaSize"})
    {
        const std::regex name("[\":]" + feature + "\"");
        EXPECT_EQ(std::distance(std::sregex_iterator(overridden.begin(), overridden.end(), name), {}), 1)
            << feature;
    }
}
} // namespace
} // namespace host::tickets
