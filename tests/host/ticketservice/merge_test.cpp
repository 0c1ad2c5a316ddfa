#include "host/ticketservice/operations.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/host/ticketservice/offlineservice.h"

namespace host::ticketservice
{
namespace
{
TEST(Merge, GivesTheExpectedTicketAndOfThatTheSameAgain)
{
    const std::string base = ReadData("merge/base.xml");
    for (const auto& row : ReadTable("merge/cases.txt"))
    {
        SCOPED_TRACE(row.at(3));
        const auto scope = static_cast<EPrintTicketScope>(std::stoi(row[1]));
        const std::string delta = row[0].empty() ? "" : ReadData("merge/" + row[0] + ".xml");
        const Answer answer = Merge(base, row[0].empty() ? nullptr : &delta, scope);
        EXPECT_EQ(answer.hr, row[2] == "yes" ? S_PT_CONFLICT_RESOLVED : S_PT_NO_CONFLICT);
        EXPECT_EQ(answer.message, "");
        EXPECT_EQ(answer.document, ReadJoined("merge/expected/" + row[3] + ".xml"));
        const Answer again = Merge(answer.document, nullptr, scope);
        EXPECT_EQ(again.hr, S_PT_NO_CONFLICT);
        EXPECT_EQ(again.document, answer.document);
    }
}

TEST(Scope, IsTakenFromTheNameInAnyNamespace)
{
    constexpr std::pair<const char*, EPrintTicketScope> narrowest[] = {{"JobInputBin", kPTJobScope},
                                                                       {"Job", kPTJobScope},
                                                                       {"DocumentInputBin", kPTDocumentScope},
                                                                       {"PageInputBin", kPTPageScope},
                                                                       {"InputBin", kPTPageScope},
                                                                       {"Jobless", kPTPageScope},
                                                                       {"Documentation", kPTPageScope},
                                                                       {"PageJobLabel", kPTPageScope},
                                                                       {"jobInputBin", kPTPageScope}};
    for (const auto& [local, own] : narrowest)
    {
        for (const EPrintTicketScope scope : {kPTPageScope, kPTDocumentScope, kPTJobScope})
        {
            EXPECT_EQ(IsWithin(scope, tickets::Keyword(local)), own <= scope) << local;
            EXPECT_EQ(IsWithin(scope, {"urn:vendor:one", local}), own <= scope) << local;
        }
    }
}
} // namespace
} // namespace host::ticketservice
