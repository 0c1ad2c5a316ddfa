#include "base/xps/printschema/printticketfunctionoption.h"

#include <utility>

#include <gtest/gtest.h>

#include "base/xml/xmlutility.h"
#include "base/xps/printschema/inputbindata.h"
#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/printablemediasizedata.h"
#include "base/xps/printschema/scalingdata.h"
#include "support/failures.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using tests::Document;
using tests::Feature;
using tests::HandlerOf;
using tests::HresultOf;
using tests::MakeTicket;
using tests::MessageOf;
using tests::Names;

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
        EXPECT_EQ(scopeOf(PrintableMediaSizeData(), id), scope);
        EXPECT_EQ(scopeOf(ScalingData(), id), id == 0 ? Scope::Page : Scope::None);
        EXPECT_EQ(scopeOf(MediaSizeData(), id), id == 0 ? Scope::Page : Scope::None);
        if (scope != Scope::None)
        {
            EXPECT_EQ(InputBinData().GetFeatureIdOfScope(scope), id);
            EXPECT_EQ(ScalingData().GetFeatureIdOfScope(scope), 0);
        }
    }
    EXPECT_EQ(InputBinData().GetFeatureQname(Scope::Document).localName, L"DocumentInputBin");
    const std::string unsupported = "this scope is not supported in this feature.";
    for (const Scope scope : {Scope::None, static_cast<Scope>(4)})
    {
        EXPECT_EQ(
            MessageOf<exception::NotSupportedException>([&] { InputBinData().GetFeatureIdOfScope(scope); }),
            unsupported);
        EXPECT_EQ(
            MessageOf<exception::NotSupportedException>([&] { ScalingData().GetFeatureIdOfScope(scope); }),
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
    const Document document = MakeTicket(L"");
    EXPECT_EQ(MessageOf<exception::InvalidOptionIdError>([&] { data.Write(HandlerOf(document)); }), noOption);
    EXPECT_EQ(Names(document, L"//psf:Feature"), L"");
}

TEST(PrintTicketFunctionOption, ReadsTheFirstOfItsNames)
{
    InputBinData bin;
    const Document both =
        MakeTicket(Feature(L"psk:PageInputBin", L"psk:Tray2") + Feature(L"psk:JobInputBin", L"psk:Tray1"));
    bin.Read(HandlerOf(both));
    EXPECT_EQ(bin.GetFeatureId(), 0);
    EXPECT_EQ(bin.GetOptionId(), 5);
    EXPECT_TRUE(bin.Exists(HandlerOf(both)));
    EXPECT_FALSE(bin.Exists(HandlerOf(MakeTicket(Feature(L"psk:JobInputBin", L"ns0000:Tray1")))));
    EXPECT_TRUE(bin.Exists(HandlerOf(MakeTicket(Feature(L"psk:JobInputBin", L"psk:Tray99")))));
}

TEST(PrintTicketFunctionOption, WritesUnderItsScopeAndRemovesEveryName)
{
    InputBinData bin;
    bin.SetOptionId(6);
    bin.SetFeatureId(1);
    const Document document = MakeTicket(Feature(L"psk:Kept", L"psk:O"));
    bin.Write(HandlerOf(document));
    bin.Write(HandlerOf(document), Scope::Page);
    bin.Write(HandlerOf(document), Scope::Page);
    EXPECT_EQ(Names(document, L"/psf:PrintTicket/psf:Feature"),
              L"psk:Kept psk:DocumentInputBin psk:PageInputBin psk:PageInputBin");
    EXPECT_EQ(Names(document, L"//psf:Option"), L"psk:O psk:Tray2 psk:Tray2 psk:Tray2");
    bin.Remove(HandlerOf(document));
    EXPECT_EQ(Names(document, L"//psf:Feature"), L"psk:Kept");
}

TEST(PrintTicketFunctionOption, FailsToWriteIntoCapabilities)
{
    const Document document = xml::XmlUtility::LoadDocumentFromString(
        L"<psf:PrintCapabilities xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/"
        L"printschemaframework' xmlns:psk='http://schemas.microsoft.com/windows/2003/08/printing/"
        L"printschemakeywords'/>");
    std::string source;
    EXPECT_EQ(
        HresultOf(
            [&] { PageOrientationData().Write(PrintSchemaDocumentHandler::ForPrintCapabilities(document)); },
            &source),
        kNotFound);
    EXPECT_EQ(source, "base\\xps\\printschema\\printticketfunctionoption");
}
} // namespace
} // namespace base::xps::printschema
