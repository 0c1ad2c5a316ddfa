#include "host/ticketservice/device.h"

#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "host/ticketservice/operations.h"
#include "tests/host/ticketservice/offlineservice.h"

namespace host::ticketservice
{
namespace
{
TEST(Device, IsRefusedWithItsReasonWhenTheDescriptionCannotServe)
{
    const UnevenDevice device;
    const std::string usable = ReadData("devices/uneven.xml");
    for (const auto& row : ReadTable("devices/faults.txt"))
    {
        const std::string& from = row.at(0);
        const std::string& reason = row.at(2);
        std::string description = usable;
        const Answer answer = Describe(description.replace(description.find(from), from.size(), row.at(1)));
        EXPECT_EQ(answer.hr, static_cast<HRESULT>(E_PRINTCAPABILITIES_FORMAT)) << reason;
        EXPECT_NE(answer.message.find(reason), std::string::npos) << answer.message << ", not " << reason;
    }
    EXPECT_EQ(Describe("").hr, static_cast<HRESULT>(E_PRINTCAPABILITIES_FORMAT));
    EXPECT_EQ(Describe(ReadData("merge/base.xml")).message,
              "line 2, column 1: the root is not the Print Schema's PrintCapabilities");
    // What was in force before a refusal stays in force.
    EXPECT_NE(GetCapabilities(nullptr).document.find("\"v:PageFinish\""), std::string::npos);
}

TEST(Device, HoldsForProvidersThatAreOpenedLater)
{
    const std::string ticket = ReadData("merge/notoffered.xml");
    const OpenProvider earlier;
    const UnevenDevice device;
    const auto media = base::utility::MakeCom<ShortStream>(ticket);
    const auto result = base::utility::MakeCom<ShortStream>();
    EXPECT_EQ(PTMergeAndValidatePrintTicket(
                  earlier.handle, media.Get(), nullptr, kPTPageScope, result.Get(), nullptr),
              S_PT_CONFLICT_RESOLVED);
    EXPECT_NE(result->content.find("<psf:Option name=\"psk:NorthAmericaLetter\">"), std::string::npos);
    EXPECT_NE(Merge(ticket, nullptr, kPTPageScope).document.find("<psf:Option name=\"psk:ISOA4\">"),
              std::string::npos);
}

TEST(Device, TakesManyOptionsWhereItsFeatureDoes)
{
    const Device device(ReadData("devices/uneven.xml"));
    // The options that a ticket asks for, and those that it is left with.
    const std::tuple<std::vector<const char*>, std::vector<std::string>, bool> cases[] = {
        {{"Punch", "Fold"}, {"Punch", "Fold"}, false},
        {{"Glue", "Punch"}, {"Punch"}, true},
        {{"Glue"}, {"Fold"}, true},
        {{}, {}, false}};
    for (const auto& [wanted, left, isReplaced] : cases)
    {
        tickets::Node feature{.kind = tickets::Kind::Feature, .name = {"urn:vendor:one", "PageFinish"}};
        for (const char* const option : wanted)
        {
            feature.children.push_back({.kind = tickets::Kind::Option, .name = {"urn:vendor:one", option}});
        }
        tickets::Node ticket{.kind = tickets::Kind::PrintTicket, .children = {feature}};
        EXPECT_EQ(ResolveConflicts(ticket, device), isReplaced);
        std::vector<std::string> names;
        for (const tickets::Node& each : ticket.children.front().children)
        {
            names.push_back(each.name.local);
        }
        EXPECT_EQ(names, left);
    }
}
} // namespace
} // namespace host::ticketservice
