#include "host/ticketservice/operations.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/host/ticketservice/offlineservice.h"

namespace host::ticketservice
{
namespace
{
/// A delta of tests/data/merge over base.xml, and the ticket of tests/data/merge/expected that it makes.
struct MergeCase
{
    const char* delta;
    EPrintTicketScope scope;
    HRESULT result;
    const char* expected;
};

constexpr MergeCase kMergeCases[] = {
    {nullptr, kPTJobScope, S_PT_NO_CONFLICT, "base"},
    {"levels", kPTJobScope, S_PT_NO_CONFLICT, "levels.job"},
    {"levels", kPTDocumentScope, S_PT_NO_CONFLICT, "levels.document"},
    {"levels", kPTPageScope, S_PT_NO_CONFLICT, "levels.page"},
    // The stamp still refers to the scaling's horizontal offset, and nothing ever did to PageUnreferred.
    {"scalingnone", kPTPageScope, S_PT_NO_CONFLICT, "scalingnone"},
    {"scalevalue", kPTPageScope, S_PT_NO_CONFLICT, "scalevalue"},
    {"otherprefixes", kPTJobScope, S_PT_NO_CONFLICT, "otherprefixes"},
    {"notoffered", kPTJobScope, S_PT_CONFLICT_RESOLVED, "notoffered"},
    {"customwithin", kPTPageScope, S_PT_NO_CONFLICT, "customwithin"},
    {"customnarrow", kPTPageScope, S_PT_CONFLICT_RESOLVED, "customrefused"},
    {"customlong", kPTPageScope, S_PT_CONFLICT_RESOLVED, "customrefused"},
    {"beyondlimits", kPTPageScope, S_PT_CONFLICT_RESOLVED, "beyondlimits"},
    {"duplicates", kPTJobScope, S_PT_NO_CONFLICT, "duplicates"},
};

TEST(Merge, GivesTheExpectedTicketAndOfThatTheSameAgain)
{
    const std::string base = ReadData("merge/base.xml");
    for (const auto& [deltaName, scope, result, expected] : kMergeCases)
    {
        SCOPED_TRACE(expected);
        const std::string delta =
            deltaName == nullptr ? "" : ReadData("merge/" + std::string(deltaName) + ".xml");
        const Answer answer = Merge(base, deltaName == nullptr ? nullptr : &delta, scope);
        EXPECT_EQ(answer.hr, result);
        EXPECT_EQ(answer.message, "");
        EXPECT_EQ(answer.document, ReadJoined("merge/expected/" + std::string(expected) + ".xml"));
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
