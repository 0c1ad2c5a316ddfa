#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "base/logging/errors.h"
#include "base/logging/log.h"
#include "base/utility/utf8.h"
#include "base/utility/variant.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/inputbindata.h"
#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/namespaceprefixes.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/printablemediasizedata.h"
#include "base/xps/printschema/scalingdata.h"
#include "support/table.h"
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

/// What `step` gives, or how it failed: by its HRESULT or in words.
template <typename Step>
std::string OutcomeOf(Step&& step)
{
    try
    {
        return step();
    }
    catch (const exception::HresultError& error)
    {
        return FormatString("%08x", error.GetHresult());
    }
    catch (const std::exception& error)
    {
        const std::string message = error.what();
        const std::size_t start = message.find(" : ") + 3;
        return message.substr(start, message.find('\n') - start);
    }
}

std::string Describe(MediaSize size)
{
    return FormatString("%dx%d", size.widthMicrometres, size.heightMicrometres);
}
std::string Describe(const MediaSizeData& data)
{
    return " " + Describe(data.GetSize());
}
std::string Describe(const PageOrientationData&)
{
    return "";
}
std::string Describe(const InputBinData& data)
{
    return " " + std::to_string(data.GetFeedDirection());
}
std::string Describe(const ScalingData& data)
{
    const PageScale& scale = data.GetScale();
    return FormatString(" %d,%d %d%%x%d%%",
                        scale.offsetWidthMicrometres,
                        scale.offsetHeightMicrometres,
                        scale.widthPercent,
                        scale.heightPercent);
}
std::string Describe(const PrintableMediaSizeData& data)
{
    return " " + Describe(data.GetLimits().minimum) + "-" + Describe(data.GetLimits().maximum);
}

/// Reads into an accessor. Answers how that failed, if it did, and then what the accessor holds.
template <typename Accessor>
std::string ReadInto(Accessor& accessor, const tests::Document& ticket)
{
    const std::string failure = OutcomeOf([&] {
        accessor.Read(tests::HandlerOf(ticket));
        return std::string();
    });
    return failure + (failure.empty() ? "" : " ") +
           FormatString("%d %d", accessor.GetFeatureId(), accessor.GetOptionId()) + Describe(accessor);
}

/// Media size, orientation, input bin, scaling and limits.
std::string Read(Accessors& accessors, const tests::Document& ticket)
{
    return ReadInto(accessors.mediaSize, ticket) + " | " + ReadInto(accessors.orientation, ticket) + " | " +
           ReadInto(accessors.inputBin, ticket) + " | " + ReadInto(accessors.scaling, ticket) + " | " +
           ReadInto(accessors.printable, ticket);
}

TEST(Accessors, ReadTheirFeatureAndLeaveTheUnknownAlone)
{
    SetPrivatePrefix(L"");
    for (const auto& row : support::LoadTable("accessors.txt"))
    {
        Accessors accessors;
        accessors.inputBin.SetFeedDirection(4);
        accessors.scaling.SetScale({1, 2, 3, 4});
        accessors.printable.SetLimits({{1, 2}, {3, 4}});
        const std::size_t end = row[3].find(' ');
        const std::wstring content = row[3].empty()
                                         ? L""
                                         : tests::Integers(utility::FromUtf8(row[3].substr(0, end)),
                                                           L"",
                                                           utility::FromUtf8(row[3].substr(end)));
        const tests::Document ticket =
            tests::MakeTicket(tests::Feature(utility::FromUtf8(row[1]), utility::FromUtf8(row[2]), content));
        const std::string actual = row[0] == "scaling"  ? ReadInto(accessors.scaling, ticket)
                                   : row[0] == "limits" ? ReadInto(accessors.printable, ticket)
                                   : row[0] == "bin"    ? ReadInto(accessors.inputBin, ticket)
                                   : row[0] == "media"  ? ReadInto(accessors.mediaSize, ticket)
                                                        : ReadInto(accessors.orientation, ticket);
        EXPECT_EQ(actual, row[4]) << row[1] << "=" << row[2] << " " << row[3];
    }
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
              "0 94 215900x279400 | 0 2 | 1 2 0 | 0 1 -3175,6350 94%x94% | 2 0 76200x127000-215900x355600");
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
              "0 95 279400x215900 | 0 3 | 1 6 1 | 0 0 -1,2 30%x40% | 2 0 1000x2000-3000x4000");
    SetPrivatePrefix(L"");
}

TEST(Ticket, ThatIsBadEndsInItsOwnOutcome)
{
    SetPrivatePrefix(L"");
    for (const auto& row : support::LoadTable("tickets/outcomes.txt"))
    {
        EXPECT_EQ(ReadTicket(utility::FromUtf8(row[0])), row[1]) << row[0];
    }
    // Where the parser knows no ban on document types, the entity is replaced.
    const std::string outcome = ReadTicket(L"doctype.xml");
    EXPECT_TRUE(outcome == "80004005" || outcome.starts_with("0 6 297000x420000")) << outcome;
}
} // namespace
} // namespace base::xps::printschema
