#include "host/tickets/ticketlisting.h"

#include <gtest/gtest.h>

#include "host/tickets/ticketdocument.h"
#include "tests/host/testpackages.h"

namespace host::tickets
{
namespace
{
/// A ticket of tests/data/listing.
std::string Ticket(const std::string& name)
{
    return ReadData("listing/" + name + ".xml");
}

TEST(TicketListing, NamesTheMostSpecificLevelThatAskedForAValue)
{
    EXPECT_EQ(FormatListing(ListTicket(Ticket("effective"),
                                       {{"page", Ticket("page")},
                                        {"job", Ticket("job")},
                                        {"user", Ticket("user")},
                                        {"driver default", Ticket("driver")}})),
              "    PageOrientation = Landscape  (page)\n"
              "    PageMediaSize = ISOA4, MediaSizeWidth 210000 (210 mm)  (job)\n"
              "    PageScaling = None  (user)\n"
              "    own:Mode = own:Fast  (driver default)\n"
              "    PageOutputColor = Color  (device; job asked for Monochrome)\n"
              "    DocumentCollate = Collated  (device)\n"
              "    JobCopiesAllDocuments = 3  (device; user asked for 5)\n");
}

TEST(TicketListing, ListsATicketAsItStands)
{
    EXPECT_EQ(FormatListing(ListTicket(Ticket("vendor"))),
              "    PageMediaSize = own:Card, own:W 5\n"
              "    own is urn:own\n");
    // The prefix that the driver has as a rule is the document's own here, and the private one stands further
    // in.
    EXPECT_EQ(
        FormatListing(ListTicket("<p:PrintTicket xmlns:p='" + std::string(kFrameworkNamespace) +
                                 "' xmlns:vendor1='urn:a' version='1'><p:Feature xmlns:v='urn:b' name='v:A'>"
                                 "<p:Option name='v:B'/></p:Feature></p:PrintTicket>")),
        "    vendor2:A = vendor2:B\n"
        "    vendor2 is urn:b\n");
    EXPECT_THROW(ListTicket("<a/>"), xml::MarkupError);
    EXPECT_THROW(ListTicket(Ticket("page"), {{"page", "<a>"}}), xml::MarkupError);
}
} // namespace
} // namespace host::tickets
