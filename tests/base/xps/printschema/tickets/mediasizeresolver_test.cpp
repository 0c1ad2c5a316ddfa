#include "base/xps/printschema/tickets/mediasizeresolver.h"

#include <map>

#include <gtest/gtest.h>

#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
class FakeTicketSource : public TicketSource
{
public:
    FakeTicketSource(const char* page, const char* document, const char* job)
        : m_options{{kPTPageScope, page}, {kPTDocumentScope, document}, {kPTJobScope, job}}
    {
    }
    PrintSchemaHandler GetTicket(EPrintTicketScope scope) override
    {
        ++asked;
        return support::HandlerOf(support::MakeTicket(support::MediaFeature(m_options.at(scope))));
    }

    std::size_t asked = 0;

private:
    std::map<EPrintTicketScope, const char*> m_options;
};

TEST(MediaSizeResolver, TakesTheFirstSizeWithinTheLimits)
{
    const struct
    {
        FakeTicketSource source;
        Scope start;
        const wchar_t* expected;
        std::size_t asked;
    } cases[] = {
        {{"ISOA5", "ISOA4", "ISOA6"}, Scope::Page, L"ISOA5", 1},
        {{"ISOA5", "ISOA4", "ISOA6"}, Scope::Document, L"ISOA4", 1},
        {{"ISOA5", "ISOA4", "ISOA6"}, Scope::Job, L"ISOA6", 1},
        {{"ISOA5", "ISOA3", "ISOB5Envelope"}, Scope::Document, L"ISOB5Envelope", 2},
        // A ticket with an unknown size counts with the size before it, the first with ISOA4.
        {{"Unheard", "ISOA5", "ISOA5"}, Scope::Page, L"ISOA4", 1},
        {{"ISOA3", "Unheard", "ISOA6"}, Scope::Page, L"ISOA6", 3},
    };
    for (const auto& row : cases)
    {
        FakeTicketSource source = row.source;
        const MediaSizeResolver resolver(source, {{76200, 127000}, {210000, 297000}});
        EXPECT_EQ(resolver.Resolve(row.start).name.localName, row.expected) << &row - &cases[0];
        EXPECT_EQ(source.asked, row.asked) << &row - &cases[0];
    }
}

TEST(MediaSizeResolver, FallsBackOnTheUsersDefaultOrTheSmallestSheet)
{
    // The default of this user; the other default is within the limits too.
    wchar_t measure[8] = L"";
    ASSERT_NE(GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_IMEASURE, measure, 8), 0);
    const std::wstring byUser = MediaSizeTable::Shared().Lookup(DefaultMediaSizeOf(measure)).name.localName;
    FakeTicketSource source("ISOA0", "ISOA0", "ISOA1");
    const struct
    {
        Scope start;
        MediaSizeLimits limits;
        std::wstring expected;
    } cases[] = {
        {Scope::Document, {{200000, 270000}, {220000, 300000}}, byUser},
        {Scope::None, {{0, 0}, {2000000, 2000000}}, byUser},
        // The smallest sheet gets its name if it has one.
        {Scope::Job, {{148000, 210000}, {149000, 211000}}, L"ISOA5"},
        {Scope::Job, {{76200, 127000}, {200000, 200000}}, L"CustomMediaSize"},
    };
    for (const auto& [start, limits, expected] : cases)
    {
        const MediaSizeEntry entry = MediaSizeResolver(source, limits).Resolve(start);
        EXPECT_EQ(entry.name.localName, expected);
        EXPECT_TRUE(limits.Contains(entry.size)) << entry.size.widthMicrometres;
    }
    EXPECT_EQ(DefaultMediaSizeOf(L" 01"), 94);
    EXPECT_EQ(DefaultMediaSizeOf(L"0"), 9);
    EXPECT_EQ(DefaultMediaSizeOf(L""), 9);
}
} // namespace
} // namespace base::xps::printschema
