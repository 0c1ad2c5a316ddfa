#include "base/xps/printschema/printablemediasizedata.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "support/failures.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using tests::Document;
using tests::Feature;
using tests::HandlerOf;
using tests::Integers;
using tests::MakeTicket;

std::wstring Limits(const std::wstring& values)
{
    return Feature(L"ns0000:PagePrintableMediaSize",
                   L"ns0000:PrintableMediaSize",
                   Integers(L"Property", L"ns0000:", values));
}

TEST(PrintableMediaSizeData, ReadsLimitsAndTakesIncompleteOnesForNone)
{
    const std::string invalid =
        "base\\xps\\printschema\\printablemediasizedata(...) : printticket is in invalid state.\n";
    const std::string valid = "(nothing was thrown)";
    const struct
    {
        std::wstring ticket;
        MediaSizeLimits limits;
        std::string outcome;
    } cases[] = {
        {Limits(L"MinWidth=1 MinHeight=2 MaxWidth=3 MaxHeight=4"), {{1, 2}, {3, 4}}, valid},
        {Limits(L"MinWidth=3 MinHeight=4 MaxWidth=3 MaxHeight=4"), {{3, 4}, {3, 4}}, valid},
        {Limits(L"MinWidth=1 MaxWidth=3 MaxHeight=4"), {{0, 0}, {3, 4}}, valid},
        {Limits(L"MinHeight=1 MaxWidth=3"), {}, valid},
        {Limits(L""), {}, valid},
        {Limits(L"MinWidth=1 MinHeight=2"), {{1, 2}, {0, 0}}, invalid},
        {Limits(L"MinWidth=4 MinHeight=2 MaxWidth=3 MaxHeight=4"), {{4, 2}, {3, 4}}, invalid},
        {Limits(L"MinWidth=1 MinHeight=5 MaxWidth=3 MaxHeight=4"), {{1, 5}, {3, 4}}, invalid},
        // Not the private namespace.
        {Feature(L"psk:PagePrintableMediaSize", L"ns0000:PrintableMediaSize"), {{9, 9}, {9, 9}}, valid},
        {Feature(L"ns0000:PagePrintableMediaSize", L"psk:PrintableMediaSize"), {{9, 9}, {9, 9}}, valid},
    };
    for (const auto& row : cases)
    {
        PrintableMediaSizeData data;
        data.SetLimits({{9, 9}, {9, 9}});
        const Document document = MakeTicket(row.ticket);
        EXPECT_EQ(tests::MessageOf<std::logic_error>([&] { data.Read(HandlerOf(document)); }), row.outcome);
        EXPECT_EQ(data.GetLimits(), row.limits) << utility::Bstr(row.ticket).Get();
    }
}

TEST(PrintableMediaSizeData, WritesItsLimitsInOrderUnderThePrivateNamespace)
{
    PrintableMediaSizeData data;
    data.SetLimits({{76200, 127000}, {215900, 355600}});
    const Document document = MakeTicket(L"");
    data.Write(HandlerOf(document), Scope::Page);
    EXPECT_EQ(tests::Names(document, L"//psf:Feature | //psf:Option | //psf:Property"),
              L"ns0000:PagePrintableMediaSize ns0000:PrintableMediaSize ns0000:MinWidth ns0000:MinHeight"
              L" ns0000:MaxWidth ns0000:MaxHeight");
    PrintableMediaSizeData again;
    again.Read(HandlerOf(document));
    EXPECT_EQ(again.GetLimits(), data.GetLimits());
    EXPECT_EQ(again.GetScope(), Scope::Page);
}

TEST(MediaSizeLimits, ContainTheirBounds)
{
    const MediaSizeLimits limits{{10, 20}, {30, 40}};
    for (const MediaSize inside : {MediaSize{10, 20}, {30, 40}, {30, 20}, {20, 30}})
    {
        EXPECT_TRUE(limits.Contains(inside));
    }
    for (const MediaSize outside : {MediaSize{9, 20}, {31, 40}, {30, 19}, {20, 41}})
    {
        EXPECT_FALSE(limits.Contains(outside));
    }
}
} // namespace
} // namespace base::xps::printschema
