#include "base/xps/printschema/schemabase.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "base/xps/printschema/keywordlists.h"
#include "base/xps/printschema/printschema.h"
#include "support/thrown.h"

namespace base::xps::printschema
{
namespace
{
using support::MessageOf;
using enum NamespaceId;

class EmptyList final : public SchemaBase
{
};

TEST(SchemaBase, FindsANameOnlyUnderItsOwnNamespaceAndCase)
{
    const auto& options = SharedList<PageScalingOptionSchema>();
    const Qname fit{Private, L"FitApplicationImageableSizeToImageableSize"};
    EXPECT_EQ(options.IndexOf(fit), 7);
    EXPECT_EQ(options.GetQname(7), fit);
    EXPECT_EQ(options.IndexOf(Keywords, fit.localName), -1);
    EXPECT_EQ(options.IndexOf(Keywords, L"None"), 6);
    for (const wchar_t* other : {L"none", L"Non"})
    {
        EXPECT_EQ(options.IndexOf(Keywords, other), -1);
    }
    EXPECT_EQ(options.GetNamespaces(), (std::set{Keywords, Private}));
}

TEST(SchemaBase, RefusesNullNamesAndIndexesBeyondTheEnd)
{
    const auto& list = SharedList<FeedDirectionSchema>();
    const wchar_t* const none = nullptr;
    const std::string source = "base\\xps\\printschema\\schemabase(...) : ";
    EXPECT_EQ(MessageOf<std::invalid_argument>([&] { list.GetQname(2); }),
              source + "The index you specified is out of range.\n");
    EXPECT_EQ(MessageOf<std::invalid_argument>([&] { list.IndexOf(Keywords, none); }),
              source + "pName is null.\n");
    EXPECT_EQ(MessageOf<std::invalid_argument>([&] { SchemaBase::FindQname({}, Keywords, none); }),
              source + "pTarget is null.\n");
    EXPECT_EQ(MessageOf<std::logic_error>([&] { EmptyList().GetNamespaces(); }),
              source + "namespaces should be initialized in constructor through AddQname().\n");
}

TEST(KeywordLists, HoldTheirNamesInOrder)
{
    const std::pair<const SchemaBase&, const wchar_t*> lists[] = {
        {SharedList<PageMediaSizeFeatureSchema>(), L"0:PageMediaSize"},
        {SharedList<InputBinFeatureSchema>(), L"0:JobInputBin 0:DocumentInputBin 0:PageInputBin"},
        {SharedList<InputBinOptionSchema>(),
         L"0:AutoSelect 0:Manual 0:Cassette 0:Tractor 0:AutoSheetFeeder 0:Tray1 0:Tray2 0:Tray3 0:Tray4 "
         L"0:Tray5"},
        {SharedList<FeedDirectionSchema>(), L"0:LongEdgeFirst 0:ShortEdgeFirst"},
        {SharedList<PageOrientationFeatureSchema>(), L"0:PageOrientation"},
        {SharedList<PageOrientationOptionSchema>(),
         L"0:Landscape 0:Portrait 0:ReverseLandscape 0:ReversePortrait"},
        {SharedList<PageScalingFeatureSchema>(), L"0:PageScaling"},
        {SharedList<PrintableMediaSizeFeatureSchema>(),
         L"2:JobPrintableMediaSize 2:DocumentPrintableMediaSize 2:PagePrintableMediaSize"},
        {SharedList<PrintableMediaSizeOptionSchema>(), L"2:PrintableMediaSize"},
    };
    for (const auto& [list, expected] : lists)
    {
        std::wstring names;
        for (const auto& [namespaceId, localName] : list.GetQnames())
        {
            names += (names.empty() ? L"" : L" ") + std::to_wstring(static_cast<int>(namespaceId)) + L":" +
                     localName;
        }
        EXPECT_EQ(names, expected);
    }
}

TEST(Scope, ConvertsToTheProvidersNumbering)
{
    EXPECT_EQ(ToEPrintTicketScope(Scope::Job), kPTJobScope);
    EXPECT_EQ(ToEPrintTicketScope(Scope::Document), kPTDocumentScope);
    EXPECT_EQ(ToEPrintTicketScope(Scope::Page), kPTPageScope);
    for (const Scope scope : {Scope::None, static_cast<Scope>(4)})
    {
        EXPECT_EQ(
            MessageOf<std::logic_error>([&] { ToEPrintTicketScope(scope); }),
            "base\\xps\\printschema\\printschema(...) : Scope::None cannot convert to EPrintTicketScope.\n");
    }
}
} // namespace
} // namespace base::xps::printschema
