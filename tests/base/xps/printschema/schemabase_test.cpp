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
    const auto expect = [](const SchemaBase& list, NamespaceId namespaceId, const wchar_t* expected) {
        std::wstring names;
        for (const Qname& name : list.GetQnames())
        {
            names += (names.empty() ? L"" : L" ") + name.localName;
        }
        EXPECT_EQ(names, expected);
        EXPECT_EQ(list.GetNamespaces(), std::set{namespaceId});
    };
    expect(SharedList<PageMediaSizeFeatureSchema>(), Keywords, L"PageMediaSize");
    expect(SharedList<InputBinFeatureSchema>(), Keywords, L"JobInputBin DocumentInputBin PageInputBin");
    expect(SharedList<InputBinOptionSchema>(),
           Keywords,
           L"AutoSelect Manual Cassette Tractor AutoSheetFeeder Tray1 Tray2 Tray3 Tray4 Tray5");
    expect(SharedList<FeedDirectionSchema>(), Keywords, L"LongEdgeFirst ShortEdgeFirst");
    expect(SharedList<PageOrientationFeatureSchema>(), Keywords, L"PageOrientation");
    expect(SharedList<PageOrientationOptionSchema>(),
           Keywords,
           L"Landscape Portrait ReverseLandscape ReversePortrait");
    expect(SharedList<PageScalingFeatureSchema>(), Keywords, L"PageScaling");
    expect(SharedList<PrintableMediaSizeFeatureSchema>(),
           Private,
           L"JobPrintableMediaSize DocumentPrintableMediaSize PagePrintableMediaSize");
    expect(SharedList<PrintableMediaSizeOptionSchema>(), Private, L"PrintableMediaSize");
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
