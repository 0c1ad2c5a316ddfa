#include "base/xps/printschema/mediasizeresolver.h"

#include <map>
#include <vector>

#include <gtest/gtest.h>

#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using tests::Feature;

class FakeTicketSource : public TicketSource
{
public:
    PrintSchemaHandler GetTicket(EPrintTicketScope scope) override
    {
        m_asked.push_back(scope);
        return tests::HandlerOf(tests::MakeTicket(m_tickets[scope]));
    }

    std::map<EPrintTicketScope, std::wstring> m_tickets;
    std::vector<EPrintTicketScope> m_asked;
};

std::wstring Media(const std::wstring& option)
{
    return Feature(L"psk:PageMediaSize", L"psk:" + option);
}

TEST(MediaSizeResolver, TakesTheFirstSizeWithinTheLimits)
{
    const struct
    {
        const wchar_t* page;
        const wchar_t* document;
        const wchar_t* job;
        Scope start;
        const wchar_t* expected;
        std::size_t asked;
    } cases[] = {
        {L"ISOA5", L"ISOA4", L"ISOA6", Scope::Page, L"ISOA5", 1},
        {L"ISOA5", L"ISOA4", L"ISOA6", Scope::Document, L"ISOA4", 1},
        {L"ISOA5", L"ISOA4", L"ISOA6", Scope::Job, L"ISOA6", 1},
        {L"ISOA5", L"ISOA3", L"ISOB5Envelope", Scope::Document, L"ISOB5Envelope", 2},
        // A ticket with an unknown size is as good as one with the size before it, to begin with ISOA4.
        {L"Unheard", L"ISOA5", L"ISOA5", Scope::Page, L"ISOA4", 1},
        {L"ISOA3", L"Unheard", L"ISOA6", Scope::Page, L"ISOA6", 3},
    };
    for (const auto& [page, document, job, start, expected, asked] : cases)
    {
        FakeTicketSource source;
        source.m_tickets = {
            {kPTPageScope, Media(page)}, {kPTDocumentScope, Media(document)}, {kPTJobScope, Media(job)}};
        const MediaSizeResolver resolver(source, {{76200, 127000}, {210000, 297000}});
        EXPECT_EQ(resolver.Resolve(start).name.localName, expected) << page << document << job;
        EXPECT_EQ(source.m_asked.size(), asked);
    }
}

TEST(MediaSizeResolver, FallsBackOnTheUsersDefaultOrTheSmallestSheet)
{
    DWORD measure = 0;
    ASSERT_NE(GetLocaleInfoW(LOCALE_USER_DEFAULT,
                             LOCALE_IMEASURE | LOCALE_RETURN_NUMBER,
                             reinterpret_cast<wchar_t*>(&measure),
                             sizeof(measure) / sizeof(wchar_t)),
              0);
    FakeTicketSource source;
    source.m_tickets = {{kPTDocumentScope, Media(L"ISOA0")}, {kPTJobScope, Media(L"ISOA1")}};
    MediaSizeLimits limits{{200000, 270000}, {220000, 300000}};
    EXPECT_EQ(MediaSizeResolver(source, limits).Resolve(Scope::Document).name.localName,
              measure == 1 ? L"NorthAmericaLetter" : L"ISOA4");
    EXPECT_EQ(source.m_asked, (std::vector{kPTDocumentScope, kPTJobScope}));

    // The smallest sheet takes its name when it has one.
    limits = {{148000, 210000}, {149000, 211000}};
    EXPECT_EQ(MediaSizeResolver(source, limits).Resolve(Scope::Job).name.localName, L"ISOA5");
    limits = {{76200, 127000}, {200000, 200000}};
    const MediaSizeEntry smallest = MediaSizeResolver(source, limits).Resolve(Scope::Job);
    EXPECT_EQ(smallest.name.localName, L"CustomMediaSize");
    EXPECT_EQ(smallest.size, limits.minimum);
    EXPECT_EQ(MediaSizeResolver(source, {{0, 0}, {2000000, 2000000}}).Resolve(Scope::None).value,
              DefaultMediaSizeOf(measure == 1 ? L"1" : L"0"));
    EXPECT_EQ(DefaultMediaSizeOf(L"1"), 94);
    EXPECT_EQ(DefaultMediaSizeOf(L" 01"), 94);
    for (const wchar_t* other : {L"0", L"2", L""})
    {
        EXPECT_EQ(DefaultMediaSizeOf(other), 9);
    }
}
} // namespace
} // namespace base::xps::printschema
