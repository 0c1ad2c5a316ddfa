#include "base/xps/printschema/tickets/defaulttickets.h"

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "base/utility/utf8.h"
#include "support/pipelinetest.h"
#include "support/table.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using support::Pipeline;

class DefaultTickets : public support::PipelineTest
{
protected:
    /// Names and values of the selected ticket in document order.
    std::string Selected()
    {
        const std::wstring ticket = SelectDefaultPrintTicket(*pipeline->bag.Get());
        return support::Join(
            support::LoadDocument(utility::ToUtf8(ticket)),
            "/f:PrintTicket[@version='1']//@name | //f:Value[@*[name()='xsi:type']='xsd:integer']");
    }

    const std::vector<std::vector<std::string>> published = support::LoadTable("defaulttickets.txt");
};

TEST_F(DefaultTickets, AreSelectedByTheDriversPageDescriptionType)
{
    ASSERT_EQ(published.size(), 3U);
    VARIANT dispatch{};
    dispatch.vt = VT_DISPATCH;
    dispatch.pdispVal = pipeline->driverBag.Get();
    ASSERT_EQ(pipeline->bag->AddProperty(L"DriverPropertyBag", &dispatch), S_OK);
    for (const auto& row : published)
    {
        pipeline->SetDriver(L"", std::stoi(row[0]));
        EXPECT_EQ(Selected(), row[1]);
    }
    for (const LONG other : {-1, 0, 2})
    {
        pipeline->SetDriver(L"", other);
        EXPECT_EQ(Selected(), published[1][1]) << other;
    }
}

TEST_F(DefaultTickets, AreThatOfType7WhereTheDriverDoesNotSay)
{
    const wchar_t* const key = L"DriverPropertyBag";
    EXPECT_EQ(Selected(), published[1][1]);
    const std::function<void(Pipeline&)> changes[] = {
        [](Pipeline&) {},
        [&](Pipeline& given) { given.bag->SetText(key, L"driver"); },
        [&](Pipeline& given) { given.bag->SetObject(key, nullptr); },
        [&](Pipeline& given) { given.bag->SetObject(key, given.control.Get()); },
        [&](Pipeline& given) { given.bag->SetHandle(key, given.driverBag.Get()); },
    };
    for (const auto& change : changes)
    {
        Renew();
        pipeline->SetDriver(L"", 'L');
        pipeline->bag->DeleteProperty(key);
        change(*pipeline);
        EXPECT_EQ(Selected(), published[1][1]) << &change - &changes[0];
    }
}

TEST_F(DefaultTickets, DeclareTheNamespacesOfTheirNames)
{
    EXPECT_EQ(support::Count(support::LoadDocument(utility::ToUtf8(DefaultPrintTicketOf(7))),
                             "/*[namespace::xsd='http://www.w3.org/2001/XMLSchema']"
                             "[namespace::xsi='http://www.w3.org/2001/XMLSchema-instance']"
                             "/f:Feature[contains(namespace::ns0000, '/printing/2005/08/printticket')]"
                             "[contains(namespace::psk, '/2003/08/printing/printschemakeywords')]"),
              8);
}
} // namespace
} // namespace base::xps::printschema
