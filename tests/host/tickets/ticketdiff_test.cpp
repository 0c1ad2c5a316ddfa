#include "host/tickets/ticketdiff.h"

#include <gtest/gtest.h>

#include "host/tickets/ticketdocument.h"
#include "tests/host/testpackages.h"

namespace host::tickets
{
namespace
{
std::string List(const std::vector<TicketDifference>& differences)
{
    std::string list;
    for (const TicketDifference& each : differences)
    {
        list += std::to_string(static_cast<int>(each.change)) + " " + each.path + ": " +
                each.before.value_or("-") + " > " + each.after.value_or("-") +
                (each.inForce ? " (" + *each.inForce + ")" : "") + "\n";
    }
    return list;
}

TEST(TicketDiff, ComparesSettingsByTheirNamesWhateverTheirPrefixesAndOrder)
{
    // Prefixes differ from ticket to ticket.
    const std::string inForce = ReadData("listing/inforce.xml");
    EXPECT_EQ(List(CompareTickets(ReadData("listing/before.xml"), inForce, ReadData("listing/after.xml"))),
              "1 PageOrientation: Landscape > Portrait\n"
              "2 PageMediaSize: - > ISOA4 (ISOA3)\n"
              "3 PageScaling: - > None (None)\n"
              "2 New: - > On\n"
              "0 b:Mode: a:Fast > b:Fast\n"
              "0 b:Mode / b:Kept: x > x\n"
              "1 b:Mode / b:Deep: 1 > as parameter b:Depth\n"
              "2 New (2): - > Off\n"
              "4 Gone: On > -\n");
    EXPECT_EQ(List(CompareTickets("", "", inForce)),
              "2 PageScaling: - > None\n"
              "2 PageMediaSize: - > ISOA3\n");
    EXPECT_THROW(CompareTickets("<a/>", "", ""), xml::MarkupError);
}
} // namespace
} // namespace host::tickets
