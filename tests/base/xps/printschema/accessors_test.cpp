#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "base/logging/errors.h"
#include "base/logging/log.h"
#include "base/utility/variant.h"
#include "base/xps/printschema/inputbindata.h"
#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/printablemediasizedata.h"
#include "base/xps/printschema/scalingdata.h"
#include "base/xps/printschema/vocabulary/namespaceprefixes.h"
#include "support/table.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using logging::FormatString;
using support::Document;
using support::HandlerOf;

/// The result of `step`, or its failure: the HRESULT or the message.
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

struct Accessors
{
    MediaSizeData media;
    PageOrientationData orientation;
    InputBinData bin;
    ScalingData scaling;
    PrintableMediaSizeData limits;
    const std::vector<std::pair<std::string, PrintTicketFunctionOption*>> all{{"media", &media},
                                                                              {"orientation", &orientation},
                                                                              {"bin", &bin},
                                                                              {"scaling", &scaling},
                                                                              {"limits", &limits}};

    /// Reads with one or all accessors. Returns the failure, if any, and the values after reading.
    std::string Read(const std::string& which, const Document& ticket)
    {
        std::string outcome;
        for (const auto& [name, accessor] : all)
        {
            if (which == name || which == "all")
            {
                outcome += (outcome.empty() ? "" : " | ") + ReadInto(*accessor, ticket);
                outcome += Held(name);
            }
        }
        return outcome;
    }

private:
    static std::string ReadInto(PrintTicketFunctionOption& accessor, const Document& ticket)
    {
        const std::string failure = OutcomeOf([&] {
            accessor.Read(HandlerOf(ticket));
            return std::string();
        });
        return failure + (failure.empty() ? "" : " ") +
               FormatString("%d %d", accessor.GetFeatureId(), accessor.GetOptionId());
    }
    /// The values besides the ids.
    std::string Held(const std::string& name) const
    {
        const auto& [x, y, width, height] = scaling.GetScale();
        const auto& [minimum, maximum] = limits.GetLimits();
        return name == "media"     ? Describe(media.GetSize())
               : name == "bin"     ? FormatString(" %d", bin.GetFeedDirection())
               : name == "scaling" ? FormatString(" %d,%d %d%%x%d%%", x, y, width, height)
               : name == "limits"  ? Describe(minimum) + "-" + Describe(maximum).substr(1)
                                   : "";
    }
    static std::string Describe(MediaSize size)
    {
        return FormatString(" %dx%d", size.widthMicrometres, size.heightMicrometres);
    }
};

TEST(Accessors, ReadTheirFeatureAndLeaveTheUnknownAlone)
{
    SetPrivatePrefix(L"");
    for (const auto& row : support::LoadTable("accessors.txt"))
    {
        Accessors accessors;
        accessors.bin.SetFeedDirection(4);
        accessors.scaling.SetScale({1, 2, 3, 4});
        accessors.limits.SetLimits({{1, 2}, {3, 4}});
        const std::size_t end = std::min(row[3].find(' '), row[3].size());
        const Document ticket = support::MakeTicket(support::Feature(
            row[1], row[2], support::Integers(row[3].substr(0, end), "", row[3].substr(end))));
        EXPECT_EQ(accessors.Read(row[0], ticket), row[4]) << row[1] << "=" << row[2] << " " << row[3];
    }
}

// ticket_queries checks the file that this test writes, without MSXML.
TEST(Ticket, OfAVendorIsReadChangedWrittenAndReadAgain)
{
    SetPrivatePrefix(L"vnd");
    const Document ticket = support::LoadFile("tickets/vendor.xml");
    Accessors accessors;
    EXPECT_EQ(accessors.Read("all", ticket),
              "0 94 215900x279400 | 0 2 | 1 2 0 | 0 1 -3175,6350 94%x94% | 2 0 76200x127000-215900x355600");
    accessors.media.Rotate();
    accessors.orientation.RotateOption();
    accessors.bin.SetOptionId(6);
    accessors.bin.SetFeedDirection(L"ShortEdgeFirst");
    accessors.scaling.SetOptionId(ScalingData::kCustom);
    accessors.scaling.SetScale({-1, 2, 30, 40});
    accessors.limits.SetLimits({{1000, 2000}, {3000, 4000}});
    for (const auto& [name, accessor] : accessors.all)
    {
        accessor->Remove(HandlerOf(ticket));
        accessor->Write(HandlerOf(ticket));
    }
    const std::filesystem::path written = TEST_OUTPUT L"/vendor.xml";
    std::filesystem::create_directories(written.parent_path());
    ASSERT_EQ(ticket->save(utility::Variant(utility::Bstr(written.wstring())).Get()), S_OK);
    EXPECT_EQ(Accessors().Read("all", ticket),
              "0 95 279400x215900 | 0 3 | 1 6 1 | 0 0 -1,2 30%x40% | 2 0 1000x2000-3000x4000");
    SetPrivatePrefix(L"");
}

TEST(Ticket, ThatIsBadEndsInItsOwnOutcomeAndLosesNoReference)
{
    SetPrivatePrefix(L"");
    for (const auto& row : support::LoadTable("tickets/outcomes.txt"))
    {
        const std::string outcome = OutcomeOf([&] {
            const Document ticket = support::LoadFile("tickets/" + row[0]);
            HandlerOf(ticket);
            const ULONG before = ticket->AddRef();
            std::string read = Accessors().Read("all", ticket);
            EXPECT_EQ(ticket->Release(), before - 1);
            return read;
        });
        EXPECT_EQ(outcome, row[1]) << row[0];
    }
}
} // namespace
} // namespace base::xps::printschema
