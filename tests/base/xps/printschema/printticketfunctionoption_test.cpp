#include "base/xps/printschema/printticketfunctionoption.h"

#include <stdexcept>
#include <utility>

#include <gtest/gtest.h>

#include "base/logging/errors.h"
#include "base/xps/printschema/inputbindata.h"
#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/printablemediasizedata.h"
#include "base/xps/printschema/scalingdata.h"
#include "support/thrown.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using support::Feature;
using support::HandlerOf;
using support::Join;
using support::MakeTicket;
using support::MessageOf;

TEST(PrintTicketFunctionOption, MapsIdsAndScopes)
{
    const auto scopeOf = [](auto accessor, std::int32_t featureId) {
        accessor.SetFeatureId(featureId);
        return accessor.GetScope();
    };
    const std::pair<std::int32_t, Scope> ids[] = {
        {-1, Scope::None}, {0, Scope::Job}, {1, Scope::Document}, {2, Scope::Page}, {3, Scope::None}};
    for (const auto& [id, scope] : ids)
    {
        EXPECT_EQ(scopeOf(InputBinData(), id), scope);
        EXPECT_EQ(scopeOf(MediaSizeData(), id), id == 0 ? Scope::Page : Scope::None);
        if (scope != Scope::None)
        {
            EXPECT_EQ(InputBinData().GetFeatureIdOfScope(scope), id);
            EXPECT_EQ(ScalingData().GetFeatureIdOfScope(scope), 0);
        }
    }
    using exception::NotSupportedException;
    const std::string unsupported = "this scope is not supported in this feature.";
    for (const Scope scope : {Scope::None, static_cast<Scope>(4)})
    {
        EXPECT_EQ(MessageOf<NotSupportedException>([&] { InputBinData().GetFeatureIdOfScope(scope); }),
                  unsupported);
        EXPECT_EQ(MessageOf<NotSupportedException>([&] { ScalingData().GetFeatureIdOfScope(scope); }),
                  unsupported);
    }
}

TEST(PrintTicketFunctionOption, RefusesIdsThatAreNotSet)
{
    const std::string source = "base\\xps\\printschema\\printticketfunctionoption(...) : ";
    PageOrientationData data;
    data.SetFeatureId(-1);
    EXPECT_EQ(MessageOf<exception::InvalidFeatureIdError>([&] { data.GetFeatureQname(); }),
              source + "feature id has not set yet.\n");
    const std::string noOption = source + "option id has not set yet or invalid feature id has set.\n";
    EXPECT_EQ(MessageOf<exception::InvalidOptionIdError>([&] { data.GetOptionId(); }), noOption);
    data.SetFeatureId(0);
    data.SetOptionId(-1);
    EXPECT_EQ(MessageOf<exception::InvalidOptionIdError>([&] { data.RotateOption(); }), noOption);
    data.SetOptionId(4);
    EXPECT_EQ(MessageOf<std::logic_error>([&] { data.RotateOption(); }), "Unexpected Option Id.");
}

TEST(PrintTicketFunctionOption, ReadsTheFirstOfItsNames)
{
    InputBinData bin;
    const auto both =
        HandlerOf(MakeTicket(Feature("PageInputBin", "Tray2") + Feature("JobInputBin", "Tray1")));
    bin.Read(both);
    EXPECT_EQ(bin.GetFeatureId(), 0);
    EXPECT_EQ(bin.GetOptionId(), 5);
    EXPECT_TRUE(bin.Exists(both));
    EXPECT_FALSE(bin.Exists(HandlerOf(MakeTicket(Feature("JobInputBin", "ns0000:Tray1")))));
    EXPECT_TRUE(bin.Exists(HandlerOf(MakeTicket(Feature("JobInputBin", "Tray99")))));
}

TEST(PrintTicketFunctionOption, WritesUnderItsScopeAndRemovesEveryName)
{
    const support::Document document = MakeTicket(Feature("Kept", "O"));
    const auto handler = HandlerOf(document);
    InputBinData bin;
    bin.SetOptionId(6);
    bin.SetFeatureId(1);
    bin.Write(handler);
    bin.SetFeedDirection(L"Sideways");
    bin.Write(handler, Scope::Page);
    bin.Write(handler, Scope::Page);
    EXPECT_EQ(Join(document, "//@name"),
              "psk:Kept psk:O psk:DocumentInputBin psk:Tray2 psk:FeedDirection psk:PageInputBin psk:Tray2 "
              "psk:PageInputBin psk:Tray2");
    bin.Remove(handler);
    EXPECT_EQ(Join(document, "//f:Feature/@name"), "psk:Kept");
}

TEST(PrintTicketFunctionOption, NamesItsOwnSourceWhenAnElementCannotBeCreated)
{
    const auto messageOf = [](const PrintTicketFunctionOption& accessor) {
        const auto handler = HandlerOf(support::LoadFile("tickets/nokeywords.xml"));
        return MessageOf<exception::HresultError>(
            [&] { accessor.WriteParameters(handler, nullptr, Scope::Page); });
    };
    const std::string folder = "base\\xps\\printschema\\";
    const std::string text = "(...) : " + exception::GetErrorText(E_UNEXPECTED) + "\n";
    EXPECT_EQ(messageOf(MediaSizeData()), folder + "mediasizedata" + text);
    EXPECT_EQ(messageOf(PrintableMediaSizeData()), folder + "printticketfunctionoption" + text);
}
} // namespace
} // namespace base::xps::printschema
