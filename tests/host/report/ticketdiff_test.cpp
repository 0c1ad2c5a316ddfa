#include "host/report/ticketdiff.h"

#include <gtest/gtest.h>

#include "host/ticketservice/printschema.h"

namespace host::report
{
namespace
{
/// Prefixes differ from ticket to ticket.
std::string Ticket(const std::string& prefix, const std::string& content)
{
    return R"(<p:PrintTicket version="1")"
           R"( xmlns:p="http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework")"
           R"( xmlns:k="http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords")"
           R"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema")"
           " xmlns:" +
           prefix + R"(="urn:own">)" + content + "</p:PrintTicket>";
}

std::string Feature(const std::string& name, const std::string& option, const std::string& content = "")
{
    return "<p:Feature name=\"" + name + "\"><p:Option name=\"" + option + "\">" + content +
           "</p:Option></p:Feature>";
}

std::string Text(const std::string& name, const std::string& value)
{
    return "<p:ScoredProperty name=\"" + name + "\"><p:Value xsi:type=\"xsd:string\">" + value +
           "</p:Value></p:ScoredProperty>";
}

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
    const std::string before =
        Ticket("a",
               Feature("a:Mode", "a:Fast", Text("a:Deep", "1") + Text("a:Kept", "x")) +
                   Feature("k:PageOrientation", "k:Landscape") + Feature("k:Gone", "k:On"));
    const std::string effective =
        Ticket("c", Feature("k:PageScaling", "k:None") + Feature("k:PageMediaSize", "k:ISOA3"));
    const std::string after =
        Ticket("b",
               Feature("k:PageOrientation", "k:Portrait") + Feature("k:PageMediaSize", "k:ISOA4") +
                   Feature("k:PageScaling", "k:None") + Feature("k:New", "k:On") +
                   Feature("b:Mode",
                           "b:Fast",
                           Text("b:Kept", "x") + "<p:ScoredProperty name=\"b:Deep\"><p:ParameterRef "
                                                 "name=\"b:Depth\"/></p:ScoredProperty>") +
                   Feature("k:New", "k:Off"));
    EXPECT_EQ(List(CompareTickets(before, effective, after)),
              "1 PageOrientation: Landscape > Portrait\n"
              "2 PageMediaSize: - > ISOA4 (ISOA3)\n"
              "3 PageScaling: - > None (None)\n"
              "2 New: - > On\n"
              "0 b:Mode: a:Fast > b:Fast\n"
              "0 b:Mode / b:Kept: x > x\n"
              "1 b:Mode / b:Deep: 1 > as parameter b:Depth\n"
              "2 New (2): - > Off\n"
              "4 Gone: On > -\n");
    EXPECT_EQ(List(CompareTickets("", "", Ticket("a", Feature("a:Mode", "a:Fast")))),
              "2 a:Mode: - > a:Fast\n");
    EXPECT_THROW(CompareTickets("<a/>", "", ""), ticketservice::FormatError);
    EXPECT_EQ(FindOption(effective, "PageMediaSize"), "ISOA3");
    EXPECT_EQ(FindOption(effective, "PageOrientation"), std::nullopt);
}
} // namespace
} // namespace host::report
