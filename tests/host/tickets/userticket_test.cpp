#include "host/tickets/userticket.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "host/tickets/jobtickets.h"
#include "host/tickets/ticketbytes.h"
#include "tests/host/testpackages.h"

namespace host::tickets
{
namespace
{
using base::xps::printschema::MediaSize;
using base::xps::printschema::MediaSizeLimits;

std::size_t Count(const std::string& text, const std::string& what)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
    {
        ++count;
    }
    return count;
}

struct GoodMedia
{
    const char* typed;
    const char* name;
    MediaSize size;
};

class UserTicketMedia : public testing::TestWithParam<GoodMedia>
{
};

TEST_P(UserTicketMedia, IsTakenByNameOrBySize)
{
    TicketOverrides overrides;
    overrides.media = GetParam().typed;
    const std::string ticket = MakeUserTicket(std::nullopt, overrides);
    const SheetFacts facts = ReadSheetFacts(ticket);
    EXPECT_EQ(facts.mediaName, GetParam().name);
    EXPECT_EQ(facts.media, GetParam().size);
    EXPECT_EQ(facts.orientation, "Portrait");
    EXPECT_EQ(Count(ticket, ":PageMediaSize\""), 1U);
}

INSTANTIATE_TEST_SUITE_P(Table,
                         UserTicketMedia,
                         testing::Values(GoodMedia{"ISOA4", "ISOA4", {210'000, 297'000}},
                                         GoodMedia{
                                             "NorthAmericaLetter", "NorthAmericaLetter", {215'900, 279'400}},
                                         GoodMedia{"210x297", "ISOA4", {210'000, 297'000}},
                                         GoodMedia{"100.0004x200.5", "CustomMediaSize", {100'000, 200'500}}));

TEST(UserTicket, TakesOrientationAndLimitsInPlaceOfWhatItSays)
{
    for (const char* prefix : {"ns0000", "quell"})
    {
        TicketOverrides overrides;
        overrides.orientation = "ReverseLandscape";
        overrides.limits = "76.2x127-215.9x355.6";
        overrides.privatePrefix = prefix;
        const std::string ticket = MakeUserTicket(std::nullopt, overrides);
        const TicketFacts facts = ReadFacts(LoadBytes(ticket));
        EXPECT_EQ(facts.orientation, "ReverseLandscape");
        EXPECT_EQ(facts.mediaName, "NorthAmericaLetter");
        EXPECT_EQ(facts.limits, (MediaSizeLimits{{76'200, 127'000}, {215'900, 355'600}}));
        EXPECT_EQ(Count(ticket, ":PageOrientation\""), 1U);
        EXPECT_EQ(Count(ticket, std::string("\"") + prefix + ":PagePrintableMediaSize\""), 1U);
        // Again over its own: nothing is there twice.
        const OutputFolder folder;
        WriteFile(folder / "user.xml", ticket);
        EXPECT_EQ(Count(MakeUserTicket(folder / "user.xml", overrides), ":PagePrintableMediaSize\""), 1U);
    }
}

TEST(UserTicket, IsTheFilesOwnBytesWithoutOverrides)
{
    const OutputFolder folder;
    const std::string ticket = "\xEF\xBB\xBF" + MakeUserTicket(std::nullopt, {}) + "\r\n<!-- end -->\r\n";
    WriteFile(folder / "user.xml", ticket);
    EXPECT_EQ(MakeUserTicket(folder / "user.xml", {}), ticket);
}

struct BadOverride
{
    std::optional<std::string> TicketOverrides::*option;
    const char* typed;
};

class UserTicketFault : public testing::TestWithParam<BadOverride>
{
};

TEST_P(UserTicketFault, NamesTheOptionAndWhatWasTyped)
{
    TicketOverrides overrides;
    overrides.*GetParam().option = GetParam().typed;
    std::string fault = "(none)";
    try
    {
        static_cast<void>(MakeUserTicket(std::nullopt, overrides));
    }
    catch (const std::runtime_error& refused)
    {
        fault = refused.what();
    }
    EXPECT_EQ(fault.rfind("--", 0), 0U) << fault;
    EXPECT_NE(fault.find(std::string(" ") + GetParam().typed + ": is no"), std::string::npos) << fault;
}

INSTANTIATE_TEST_SUITE_P(Table,
                         UserTicketFault,
                         testing::Values(BadOverride{&TicketOverrides::orientation, "landscape"},
                                         BadOverride{&TicketOverrides::orientation, "ISOA4"},
                                         BadOverride{&TicketOverrides::media, "A4"},
                                         BadOverride{&TicketOverrides::media, "210x297mm"},
                                         BadOverride{&TicketOverrides::media, "210x"},
                                         BadOverride{&TicketOverrides::media, "-210x297"},
                                         BadOverride{&TicketOverrides::media, "nanx297"},
                                         BadOverride{&TicketOverrides::media, "210x2000000.1"},
                                         BadOverride{&TicketOverrides::limits, ""},
                                         BadOverride{&TicketOverrides::limits, "76x127"},
                                         BadOverride{&TicketOverrides::limits, "76x127-215x0"},
                                         BadOverride{&TicketOverrides::limits, "76x127-215x355 "},
                                         BadOverride{&TicketOverrides::limits, "76x127_215x355"}));
} // namespace
} // namespace host::tickets
