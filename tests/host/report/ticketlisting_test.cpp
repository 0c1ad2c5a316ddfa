#include "host/report/ticketlisting.h"

#include <gtest/gtest.h>

#include "host/ticketservice/printschema.h"

namespace host::report
{
namespace
{
std::string Ticket(const std::string& content)
{
    return R"(<p:PrintTicket version="1")"
           R"( xmlns:p="http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework")"
           R"( xmlns:k="http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords")"
           R"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema")"
           R"( xmlns:own="urn:own">)" +
           content + "</p:PrintTicket>";
}

std::string Feature(const std::string& name, const std::string& option, const std::string& content = "")
{
    return "<p:Feature name=\"" + name + "\"><p:Option name=\"" + option + "\">" + content +
           "</p:Option></p:Feature>";
}

std::string Value(const std::string& element, const std::string& name, int number)
{
    return "<p:" + element + " name=\"" + name + "\"><p:Value xsi:type=\"xsd:integer\">" +
           std::to_string(number) + "</p:Value></p:" + element + ">";
}

TEST(TicketListing, NamesTheMostSpecificLevelThatAskedForAValue)
{
    const std::string effective =
        Ticket(Feature("k:PageOrientation", "k:Landscape") +
               Feature("k:PageMediaSize", "k:ISOA4", Value("ScoredProperty", "k:MediaSizeWidth", 210'000)) +
               Feature("k:PageScaling", "k:None") + Feature("own:Mode", "own:Fast") +
               Feature("k:PageOutputColor", "k:Color") + Feature("k:DocumentCollate", "k:Collated") +
               Value("ParameterInit", "k:JobCopiesAllDocuments", 3));
    const std::vector<TicketLayer> layers = {
        {"page", Ticket(Feature("k:PageOrientation", "k:Landscape"))},
        {"job",
         Ticket(Feature("k:PageOrientation", "k:Portrait") +
                Feature("k:PageMediaSize", "k:ISOA4", Value("ScoredProperty", "k:MediaSizeWidth", 1)) +
                Feature("k:PageOutputColor", "k:Monochrome"))},
        {"user",
         Ticket(Feature("k:PageScaling", "k:None") + Feature("k:PageOutputColor", "k:Color") +
                Value("ParameterInit", "k:JobCopiesAllDocuments", 5))},
        {"driver default", Ticket(Feature("own:Mode", "own:Fast") + Feature("k:PageScaling", "k:None"))},
    };
    EXPECT_EQ(ListTicketWithOrigins(effective, layers),
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
    EXPECT_EQ(ListTicket(Ticket("")), "");
    EXPECT_EQ(ListTicket(Ticket(Feature("k:PageMediaSize", "own:Card", Value("Property", "own:W", 5)))),
              "    PageMediaSize = own:Card, own:W 5\n");
    EXPECT_THROW(ListTicket("<a/>"), ticketservice::FormatError);
    EXPECT_THROW(ListTicketWithOrigins(Ticket(""), {{"page", "<a>"}}), ticketservice::FormatError);
}
} // namespace
} // namespace host::report
