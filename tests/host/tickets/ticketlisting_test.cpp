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
    EXPECT_EQ(ListTicketWithOrigins(Ticket("effective"),
                                    {{"page", Ticket("page")},
                                     {"job", Ticket("job")},
                                     {"user", Ticket("user")},
                                     {"driver default", Ticket("driver")}}),
              "    PageOrientation = Landscape  (page)\n"
              "    PageMediaSize = ISOA4, MediaSizeWidth 210000  (job)\n"
              "    PageScaling = None  (user)\n"
              "    own:Mode = own:Fast  (driver default)\n"
              "    PageOutputColor = Color  (device; job asked for Monochrome)\n"
              "    DocumentCollate = Collated  (device)\n"
              "    JobCopiesAllDocuments = 3  (device; user asked for 5)\n");
}

TEST(TicketListing, ListsATicketAsItStands)
{
    EXPECT_EQ(ListTicket(Ticket("vendor")), "    PageMediaSize = own:Card, own:W 5\n");
    EXPECT_THROW(ListTicket("<a/>"), xml::MarkupError);
    EXPECT_THROW(ListTicketWithOrigins(Ticket("page"), {{"page", "<a>"}}), xml::MarkupError);
}
} // namespace
} // namespace host::tickets
