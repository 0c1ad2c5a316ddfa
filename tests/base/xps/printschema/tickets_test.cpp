#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "base/logging/boundary.h"
#include "base/logging/log.h"
#include "base/utility/variant.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/inputbindata.h"
#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/namespaceprefixes.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/printablemediasizedata.h"
#include "base/xps/printschema/scalingdata.h"
#include "support/heap.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using logging::FormatString;

struct Accessors
{
    MediaSizeData mediaSize;
    PageOrientationData orientation;
    InputBinData inputBin;
    ScalingData scaling;
    PrintableMediaSizeData printable;
};

/// What `step` gives, or the HRESULT that its failure becomes at the COM boundary.
template <typename Step>
std::string OutcomeOf(Step&& step)
{
    try
    {
        return step();
    }
    catch (...)
    {
        return FormatString("%08x", exception::MapCurrentException());
    }
}

/// Reads media size, orientation, input bin, scaling and limits, and describes each, or how it failed.
std::string Read(Accessors& accessors, const tests::Document& ticket)
{
    const auto read = [&](auto& accessor, auto&& describe) {
        return OutcomeOf([&] {
            accessor.Read(tests::HandlerOf(ticket));
            return FormatString("%d %d ", accessor.GetFeatureId(), accessor.GetOptionId()) + describe();
        });
    };
    const auto sizeText = [](MediaSize size) {
        return FormatString("%dx%d", size.widthMicrometres, size.heightMicrometres);
    };
    std::string text = read(accessors.mediaSize, [&] { return sizeText(accessors.mediaSize.GetSize()); });
    text += "| " + read(accessors.orientation, [] { return ""; });
    text += "| " +
            read(accessors.inputBin, [&] { return std::to_string(accessors.inputBin.GetFeedDirection()); });
    text += " | " + read(accessors.scaling, [&] {
                const PageScale& scale = accessors.scaling.GetScale();
                return FormatString("%d,%d %d%%x%d%%",
                                    scale.offsetWidthMicrometres,
                                    scale.offsetHeightMicrometres,
                                    scale.widthPercent,
                                    scale.heightPercent);
            });
    return text + " | " + read(accessors.printable, [&] {
               const MediaSizeLimits& limits = accessors.printable.GetLimits();
               return sizeText(limits.minimum) + "-" + sizeText(limits.maximum);
           });
}

/// The same for a file of tests/data/tickets and fresh accessors.
std::string ReadTicket(const std::wstring& name)
{
    return OutcomeOf([&] {
        const tests::Document ticket = tests::LoadTicket(name);
        tests::HandlerOf(ticket);
        ticket->AddRef();
        const ULONG before = ticket->Release();
        Accessors accessors;
        std::string outcome = Read(accessors, ticket);
        ticket->AddRef();
        EXPECT_EQ(ticket->Release(), before) << "a reference is lost";
        return outcome;
    });
}

void Replace(const PrintTicketFunctionOption& accessor, const tests::Document& ticket)
{
    accessor.Remove(tests::HandlerOf(ticket));
    accessor.Write(tests::HandlerOf(ticket));
}

// The file that this test leaves behind is queried once more by query_written_ticket, without MSXML.
TEST(Ticket, OfAVendorIsReadChangedWrittenAndReadAgain)
{
    SetPrivatePrefix(L"vnd");
    const tests::Document ticket = tests::LoadTicket(L"vendor.xml");
    Accessors accessors;
    EXPECT_EQ(Read(accessors, ticket),
              "0 94 215900x279400| 0 2 | 1 2 0 | 0 1 -3175,6350 94%x94% | 2 0 76200x127000-215900x355600");
    accessors.mediaSize.Rotate();
    accessors.orientation.RotateOption();
    accessors.inputBin.SetOptionId(6);
    accessors.inputBin.SetFeedDirection(L"ShortEdgeFirst");
    accessors.scaling.SetOptionId(ScalingData::kCustom);
    accessors.scaling.SetScale({-1, 2, 30, 40});
    accessors.printable.SetLimits({{1000, 2000}, {3000, 4000}});
    Replace(accessors.mediaSize, ticket);
    Replace(accessors.orientation, ticket);
    Replace(accessors.inputBin, ticket);
    Replace(accessors.scaling, ticket);
    Replace(accessors.printable, ticket);

    const std::filesystem::path written = TEST_OUTPUT L"/vendor.xml";
    std::filesystem::create_directories(written.parent_path());
    ASSERT_EQ(ticket->save(utility::Variant(utility::Bstr(written.wstring())).Get()), S_OK);
    Accessors again;
    EXPECT_EQ(Read(again, xml::XmlUtility::LoadDocumentFromFile(written.wstring())),
              "0 95 279400x215900| 0 3 | 1 6 1 | 0 0 -1,2 30%x40% | 2 0 1000x2000-3000x4000");
    SetPrivatePrefix(L"");
}

TEST(Ticket, LeavesNothingOnTheHeap)
{
    constexpr std::size_t runs = 10;
    const auto rewrite = [](const auto& accessor, const tests::Document& ticket) {
        return OutcomeOf([&] {
            Replace(accessor, ticket);
            return std::string();
        });
    };
    const auto rewriteAll = [&](const wchar_t* name) {
        for (std::size_t run = 0; run < runs; ++run)
        {
            const tests::Document ticket = tests::LoadTicket(name);
            Accessors accessors;
            Read(accessors, ticket);
            rewrite(accessors.mediaSize, ticket);
            rewrite(accessors.orientation, ticket);
            rewrite(accessors.inputBin, ticket);
            rewrite(accessors.scaling, ticket);
            rewrite(accessors.printable, ticket);
        }
    };
    for (const wchar_t* name :
         {L"vendor.xml", L"missingvalues.xml", L"nokeywords.xml", L"defaultnamespace.xml"})
    {
        OutcomeOf([&] {
            rewriteAll(name);
            return std::string();
        });
        const std::size_t before = tests::CountHeapBlocks();
        OutcomeOf([&] {
            rewriteAll(name);
            return std::string();
        });
        EXPECT_LT(tests::CountHeapBlocks(), before + runs / 2) << name;
    }
}

TEST(Ticket, ThatIsBadEndsInItsOwnOutcome)
{
    SetPrivatePrefix(L"");
    const std::string defaults = "0 9 210000x297000| 0 1 | 0 0 1 | 0 5 0,0 0%x0% | 0 0 0x0-0x0";
    const std::string sound = "0 6 297000x420000| 0 0 | 0 5 1 | 0 5 0,0 0%x0% | 0 0 0x0-0x0";
    const struct
    {
        const wchar_t* name;
        std::string outcome;
    } cases[] = {
        {L"empty.xml", "80004005"},
        {L"truncated.xml", "80004005"},
        {L"otherroot.xml", "80004005"},
        {L"defaultnamespace.xml", "80004005"},
        {L"httpsnamespace.xml", "80004005"},
        {L"nokeywords.xml", "8000ffff| 8000ffff| 8000ffff | 8000ffff | 8000ffff"},
        {L"utf16.xml", sound},
        {L"utf8mark.xml", sound},
        {L"foreigncase.xml", defaults},
        {L"duplicatefeatures.xml", "0 12 148000x210000| 0 3 | 0 5 1 | 0 5 0,0 0%x0% | 2 0 1x2-3x4"},
        {L"hugenumbers.xml",
         "0 0 2147483647x-2147483648| 0 1 | 0 0 1 | 0 5 0,0 0%x0% | 2 0 -5x0-2147483647x2147483647"},
        {L"nonnumbers.xml", "0 0 0x0| 0 1 | 0 0 1 | 0 1 12,-7 1%x1% | 2 0 1x2-3x5"},
        {L"missingvalues.xml", "80004005| 0 1 | 0 0 1 | 80070057 | 80004005"},
    };
    for (const auto& row : cases)
    {
        EXPECT_EQ(ReadTicket(row.name), row.outcome) << row.name;
    }
    // Where the parser knows no ban on document types, the entity is replaced.
    const std::string outcome = ReadTicket(L"doctype.xml");
    EXPECT_TRUE(outcome == "80004005" || outcome.starts_with("0 6 297000x420000")) << outcome;
}
} // namespace
} // namespace base::xps::printschema
