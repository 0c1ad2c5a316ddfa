#include "base/xps/printschema/schemabase.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "base/xps/printschema/keywordlists.h"
#include "base/xps/printschema/printschema.h"
#include "support/failures.h"

namespace base::xps::printschema
{
namespace
{
using tests::MessageOf;
using enum NamespaceId;

class EmptyList final : public SchemaBase
{
};

constexpr wchar_t kPrivateFit[] = L"FitApplicationImageableSizeToImageableSize";

TEST(SchemaBase, FindsANameOnlyUnderItsOwnNamespaceAndCase)
{
    const auto& options = SharedList<PageScalingOptionSchema>();
    EXPECT_EQ(options.IndexOf(Keywords, L"None"), 6);
    EXPECT_EQ(options.IndexOf(Keywords, kPrivateFit), -1);
    EXPECT_EQ(options.IndexOf(Private, std::wstring(kPrivateFit)), 7);
    EXPECT_EQ(options.IndexOf(Qname{Private, kPrivateFit}), 7);
    EXPECT_EQ(options.IndexOf(Private, L"None"), -1);
    EXPECT_EQ(options.IndexOf(Keywords, L"none"), -1);
    EXPECT_EQ(options.IndexOf(Keywords, L"Non"), -1);
    EXPECT_EQ(options.GetNamespaces(), (std::set{Keywords, Private}));
    EXPECT_EQ(options.GetQname(7), (Qname{Private, kPrivateFit}));
}

TEST(SchemaBase, RefusesNullNamesAndIndexesBeyondTheEnd)
{
    const auto& list = SharedList<FeedDirectionSchema>();
    const wchar_t* const none = nullptr;
    const std::string source = "base\\xps\\printschema\\schemabase(";
    EXPECT_EQ(list.GetQname(1).localName, L"ShortEdgeFirst");
    EXPECT_EQ(MessageOf<std::invalid_argument>([&] { list.GetQname(2); }),
              source + "...) : The index you specified is out of range.\n");
    EXPECT_EQ(MessageOf<std::invalid_argument>([&] { list.IndexOf(Keywords, none); }),
              source + "...) : pName is null.\n");
    EXPECT_EQ(MessageOf<std::invalid_argument>([&] { SchemaBase::FindQname({}, Keywords, none); }),
              source + "...) : pTarget is null.\n");
    const EmptyList empty;
    EXPECT_TRUE(empty.GetQnames().empty());
    EXPECT_EQ(MessageOf<std::logic_error>([&] { empty.GetNamespaces(); }),
              source + "...) : namespaces should be initialized in constructor through AddQname().\n");
}

TEST(KeywordLists, HoldTheirNamesInOrder)
{
    const std::pair<const SchemaBase&, const wchar_t*> lists[] = {
        {SharedList<PageMediaSizeFeatureSchema>(), L"0:PageMediaSize"},
        {SharedList<InputBinFeatureSchema>(), L"0:JobInputBin DocumentInputBin PageInputBin"},
        {SharedList<InputBinOptionSchema>(),
         L"0:AutoSelect Manual Cassette Tractor AutoSheetFeeder Tray1 Tray2 Tray3 Tray4 Tray5"},
        {SharedList<FeedDirectionSchema>(), L"0:LongEdgeFirst ShortEdgeFirst"},
        {SharedList<PageOrientationFeatureSchema>(), L"0:PageOrientation"},
        {SharedList<PageOrientationOptionSchema>(), L"0:Landscape Portrait ReverseLandscape ReversePortrait"},
        {SharedList<PageScalingFeatureSchema>(), L"0:PageScaling"},
        {SharedList<PrintableMediaSizeFeatureSchema>(),
         L"2:JobPrintableMediaSize DocumentPrintableMediaSize PagePrintableMediaSize"},
        {SharedList<PrintableMediaSizeOptionSchema>(), L"2:PrintableMediaSize"},
    };
    for (const auto& [list, expected] : lists)
    {
        std::wstring names = std::to_wstring(static_cast<int>(*list.GetNamespaces().begin()));
        for (const Qname& name : list.GetQnames())
        {
            names += (&name == list.GetQnames().data() ? L":" : L" ") + name.localName;
        }
        EXPECT_EQ(names, expected);
        EXPECT_EQ(list.GetNamespaces().size(), 1U);
    }
}

TEST(Scope, ConvertsToTheProvidersNumbering)
{
    EXPECT_EQ(static_cast<int>(ToEPrintTicketScope(Scope::Job)), 2);
    EXPECT_EQ(static_cast<int>(ToEPrintTicketScope(Scope::Document)), 1);
    EXPECT_EQ(static_cast<int>(ToEPrintTicketScope(Scope::Page)), 0);
    for (const Scope scope : {Scope::None, static_cast<Scope>(4)})
    {
        EXPECT_EQ(
            MessageOf<std::logic_error>([&] { ToEPrintTicketScope(scope); }),
            "base\\xps\\printschema\\printschema(...) : Scope::None cannot convert to EPrintTicketScope.\n");
    }
}
} // namespace
} // namespace base::xps::printschema
