#include "host/tickets/userticket.h"

#include <regex>
#include <stdexcept>

#include <gtest/gtest.h>

#include "host/tickets/jobtickets.h"
#include "host/tickets/ticketbytes.h"
#include "tests/host/testpackages.h"

namespace host::tickets
{
namespace
{
using Option = std::optional<std::string> TicketOverrides::*;

/// The ticket that one option makes of the built-in one.
std::string MakeWith(Option option, const std::string& typed)
{
    TicketOverrides overrides;
    overrides.*option = typed;
    return MakeUserTicket(std::nullopt, overrides);
}

/// How often a feature of this name, with or without a prefix, stands in a ticket.
std::ptrdiff_t Count(const std::string& ticket, const std::string& feature)
{
    const std::regex name("[\":]" + feature + "\"");
    return std::distance(std::sregex_iterator(ticket.begin(), ticket.end(), name), std::sregex_iterator());
}

TEST(UserTicket, TakesMediaByNameOrBySize)
{
    const struct
    {
        const char* typed;
        const char* name;
        base::xps::printschema::MediaSize size;
    } media[] = {{"ISOA4", "ISOA4", {210'000, 297'000}},
                 {"NorthAmericaLetter", "NorthAmericaLetter", {215'900, 279'400}},
                 {"210x297", "ISOA4", {210'000, 297'000}},
                 {"100.0004x200.5", "CustomMediaSize", {100'000, 200'500}}};
    for (const auto& [typed, name, size] : media)
    {
        const std::string ticket = MakeWith(&TicketOverrides::media, typed);
        const SheetFacts facts = ReadSheetFacts(ticket);
        EXPECT_EQ(facts.mediaName, name);
        EXPECT_EQ(facts.media, size) << typed;
        EXPECT_EQ(facts.orientation, "Portrait");
        EXPECT_EQ(Count(ticket, "PageMediaSize"), 1);
    }
}

TEST(UserTicket, TakesOrientationAndLimitsInPlaceOfWhatItSays)
{
    for (const std::string prefix : {"ns0000", "quell"})
    {
        TicketOverrides overrides;
        overrides.orientation = "ReverseLandscape";
        overrides.limits = "76.2x127-215.9x355.6";
        const std::string ticket = MakeUserTicket(std::nullopt, overrides, prefix);
        const TicketFacts facts = ReadFacts(LoadBytes(ticket));
        EXPECT_EQ(facts.orientation, "ReverseLandscape");
        EXPECT_EQ(facts.mediaName, "NorthAmericaLetter");
        EXPECT_EQ(facts.limits,
                  (base::xps::printschema::MediaSizeLimits{{76'200, 127'000}, {215'900, 355'600}}));
        EXPECT_EQ(Count(ticket, "PageOrientation"), 1);
        EXPECT_EQ(Count(ticket, prefix + ":PagePrintableMediaSize"), 1);
        // Again over its own: nothing is there twice.
        const OutputFolder folder;
        WriteFile(folder / "user.xml", ticket);
        EXPECT_EQ(Count(MakeUserTicket(folder / "user.xml", overrides, prefix), "PagePrintableMediaSize"), 1);
    }
}

TEST(UserTicket, IsTheFilesOwnBytesWithoutOverrides)
{
    const OutputFolder folder;
    const std::string ticket = "\xEF\xBB\xBF" + MakeUserTicket(std::nullopt, {}) + "\r\n<!-- end -->\r\n";
    WriteFile(folder / "user.xml", ticket);
    EXPECT_EQ(MakeUserTicket(folder / "user.xml", {}), ticket);
}

TEST(UserTicket, NamesTheOptionThatIsAtFaultAndWhatWasTyped)
{
    const std::pair<Option, const char*> faults[] = {{&TicketOverrides::orientation, "landscape"},
                                                     {&TicketOverrides::orientation, "ISOA4"},
                                                     {&TicketOverrides::media, "A4"},
                                                     {&TicketOverrides::media, "210x297mm"},
                                                     {&TicketOverrides::media, "210x"},
                                                     {&TicketOverrides::media, "-210x297"},
                                                     {&TicketOverrides::media, "nanx297"},
                                                     {&TicketOverrides::media, "210x2000000.1"},
                                                     {&TicketOverrides::limits, ""},
                                                     {&TicketOverrides::limits, "76x127"},
                                                     {&TicketOverrides::limits, "76x127-215x0"},
                                                     {&TicketOverrides::limits, "76x127-215x355 "},
                                                     {&TicketOverrides::limits, "76x127_215x355"}};
    for (const auto& row : faults)
    {
        const std::string fault =
            FaultOf<std::runtime_error>([&] { static_cast<void>(MakeWith(row.first, row.second)); });
        EXPECT_TRUE(fault.starts_with("--")) << fault;
        EXPECT_NE(fault.find(std::string(" ") + row.second + ": is no"), std::string::npos) << fault;
    }
}
} // namespace
} // namespace host::tickets
