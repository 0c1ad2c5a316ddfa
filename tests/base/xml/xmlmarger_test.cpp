#include "base/xml/xmlmarger.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "base/utility/utf8.h"
#include "base/utility/variant.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/printticketstructurecomparator.h"
#include "support/thrown.h"
#include "support/ticketfacts.h"

namespace base::xml
{
namespace
{
using support::DomDocument;
using support::FeatureText;
using support::IntegerText;
using support::LoadDataFile;
using support::LoadDocument;
using support::TicketFacts;
using support::TicketText;
using utility::Bstr;

const std::string kDriver = "http://schemas.quellmark.example/printing/2005/08/printticket";

void Merge(IXMLDOMDocument2* base, IXMLDOMDocument2* target)
{
    const xps::printschema::PrintTicketStructureComparator comparator;
    XmlMarger(comparator).Merge(base, target);
}

std::string TextOf(const DomDocument& document)
{
    Bstr text;
    EXPECT_EQ(document->get_xml(text.Receive()), S_OK);
    return utility::ToUtf8(std::wstring(text.View()));
}

struct MergeCase
{
    const char* name;
    std::string base;
    std::string target;
    const char* xpath;
    const char* expected;
};

void PrintTo(const MergeCase& merge, std::ostream* out)
{
    *out << merge.name;
}

class XmlMargerRuleTest : public testing::TestWithParam<MergeCase>
{
};

TEST_P(XmlMargerRuleTest, Holds)
{
    const auto& [name, baseContent, targetContent, xpath, expected] = GetParam();
    const DomDocument base = LoadDocument(TicketText(baseContent));
    const DomDocument target = LoadDocument(TicketText(targetContent));
    const std::string before = TextOf(target);
    Merge(base.Get(), target.Get());
    EXPECT_EQ(TicketFacts(base.Get()).Join(xpath), expected) << TextOf(base);
    EXPECT_EQ(TextOf(target), before);
    // What is complete stays as it is.
    const std::string once = TextOf(base);
    Merge(base.Get(), target.Get());
    EXPECT_EQ(TextOf(base), once);
}

constexpr const char* kOptions = "//f:Option/@name";
constexpr const char* kNames = "//@name";
const std::string kEmptyFeature = "<psf:Feature name='psk:A'/>";

INSTANTIATE_TEST_SUITE_P(
    Tickets,
    XmlMargerRuleTest,
    testing::Values(MergeCase{"KeepsTheSelectedOption",
                              FeatureText("psk:A", "psk:One"),
                              FeatureText("psk:A", "psk:Two", IntegerText("Property", "psk:P", 1)),
                              kNames,
                              "psk:A psk:One"},
                    MergeCase{"CompletesTheSelectedOption",
                              FeatureText("psk:A", "psk:One", IntegerText("Property", "psk:P", 1)),
                              FeatureText("psk:A", "psk:One", IntegerText("Property", "psk:Q", 2)),
                              kNames,
                              "psk:A psk:One psk:P psk:Q"},
                    MergeCase{"SelectsAnOptionWhereThereIsNone",
                              kEmptyFeature,
                              FeatureText("psk:A", "psk:One"),
                              kOptions,
                              "psk:One"},
                    MergeCase{"SelectsOneOfSeveral",
                              kEmptyFeature,
                              "<psf:Feature name='psk:A'><psf:Option name='psk:One'/><psf:Option "
                              "name='psk:Two'/></psf:Feature>",
                              kOptions,
                              "psk:One"},
                    MergeCase{"CompletesFeaturesWithinFeatures",
                              "<psf:Feature name='psk:A'><psf:Option name='psk:One'/></psf:Feature>",
                              "<psf:Feature name='psk:A'><psf:Option name='psk:Two'/>" +
                                  FeatureText("psk:B", "psk:Three") + "</psf:Feature>",
                              kNames,
                              "psk:A psk:One psk:B psk:Three"},
                    MergeCase{"AddsNothingBelowWhatCarriesAValue",
                              IntegerText("Property", "psk:P", 1),
                              "<psf:Property name='psk:P'>" + IntegerText("Property", "psk:Q", 2) +
                                  "<psf:Value>3</psf:Value></psf:Property>",
                              "//f:Property/@name | //f:Value",
                              "psk:P 1"},
                    MergeCase{"AppendsInTheTargetsOrderBehindTheBase",
                              FeatureText("psk:A", "psk:One") + "<!-- end -->",
                              FeatureText("psk:B", "psk:Two") + FeatureText("psk:A", "psk:Three") + "text" +
                                  FeatureText("psk:C", "psk:Four"),
                              "/*/*/@name",
                              "psk:A psk:B psk:C"},
                    MergeCase{"MatchesEachBaseChildOnce",
                              FeatureText("psk:A", "psk:One") + kEmptyFeature,
                              FeatureText("psk:A", "psk:One") + FeatureText("psk:A", "psk:Two"),
                              kOptions,
                              "psk:One psk:Two"},
                    MergeCase{"TellsOneNameUnderTwoPrefixesApart",
                              FeatureText("psk:A", "psk:One"),
                              FeatureText("ns0000:A", "ns0000:One"),
                              kNames,
                              "psk:A psk:One ns0000:A ns0000:One"},
                    MergeCase{"TellsOneElementUnderTwoPrefixesApart",
                              "<x:Feature xmlns:x='http://schemas.microsoft.com/windows/2003/08/printing/"
                              "printschemaframework' name='psk:A'/>",
                              FeatureText("psk:A", "psk:One"),
                              "//f:Feature/@name",
                              "psk:A psk:A"}),
    [](const testing::TestParamInfo<MergeCase>& merge) { return merge.param.name; });

/// Saves a merged document where a library of its own kind looks at it too.
TicketFacts MergeFiles(const std::string& baseName)
{
    const DomDocument base = LoadDataFile("marger/" + baseName + ".xml");
    Merge(base.Get(), LoadDataFile("marger/driver.xml").Get());
    const std::string path = MERGED_TREES_PATH "/" + baseName + ".merged.xml";
    EXPECT_EQ(base->save(utility::Variant(Bstr(path.c_str())).Get()), S_OK);
    return TicketFacts(base.Get());
}

TEST(XmlMargerTest, BringsDeclarationsThatTheBaseLacks)
{
    const TicketFacts facts = MergeFiles("public");
    EXPECT_EQ(facts.Join("//@name"),
              "psk:PageScaling psk:None psk:PageOrientation psk:Landscape ns0000:JobCompress ns0000:Type2 "
              "ns0000:Threshold");
    EXPECT_EQ(facts.CountFeatures(kDriver, "JobCompress"), 1);
    EXPECT_EQ(facts.Count("//f:Value[namespace::xsd='http://www.w3.org/2001/XMLSchema']"), 1);
}

TEST(XmlMargerTest, KeepsTheMeaningOfAPrefixOnBothSides)
{
    const TicketFacts facts = MergeFiles("othervendor");
    EXPECT_EQ(facts.CountFeatures("urn:other:vendor", "PageFold"), 1);
    EXPECT_EQ(facts.CountFeatures("urn:other:vendor", "JobCompress"), 0);
    EXPECT_EQ(facts.CountFeatures(kDriver, "JobCompress"), 1);
}

TEST(XmlMargerTest, FindsEveryDeclarationWhateverElseTheRootBears)
{
    const std::string rest =
        "xmlns:f='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'";
    for (const std::string& root : {rest + " xmlns:v='urn:v'",
                                    rest + " version='1' xmlns:v='urn:v'",
                                    "xmlns='urn:d' " + rest + " xmlns:v='urn:v'",
                                    rest + " xmlns='urn:d' version='1' xmlns:v='urn:v'",
                                    rest + " xmlns:v='urn:v' xmlns='urn:d'"})
    {
        const DomDocument bare = LoadDocument("<f:PrintTicket " + rest + "/>");
        const DomDocument full =
            LoadDocument("<f:PrintTicket " + root + "><f:Feature name='v:A'/></f:PrintTicket>");
        Merge(bare.Get(), full.Get());
        EXPECT_EQ(TicketFacts(bare.Get()).CountFeatures("urn:v", "A"), 1) << root;

        // The other way round a declaration is there already.
        const DomDocument other = LoadDocument("<f:PrintTicket " + rest +
                                               " xmlns:v='urn:w'><f:Feature name='v:A'/>"
                                               "<f:Feature name='v:B' xmlns:v='urn:x'/></f:PrintTicket>");
        Merge(full.Get(), other.Get());
        EXPECT_EQ(TicketFacts(full.Get()).CountFeatures("urn:v", "A"), 1) << root;
        EXPECT_EQ(TicketFacts(full.Get()).CountFeatures("urn:x", "B"), 1) << root;
    }
}

TEST(XmlMargerTest, RefusesNullAndLetsEmptyDocumentsBe)
{
    const DomDocument some = LoadDocument(TicketText(kEmptyFeature));
    const std::string before = TextOf(some);
    EXPECT_NE(support::MessageOf<std::invalid_argument>([&] {
                  Merge(nullptr, some.Get());
              }).find(" : pBase is null.\n"),
              std::string::npos);
    EXPECT_NE(support::MessageOf<std::invalid_argument>([&] {
                  Merge(some.Get(), nullptr);
              }).find(" : pTarget is null.\n"),
              std::string::npos);
    Merge(some.Get(), XmlUtility::CreateDocument().Get());
    Merge(XmlUtility::CreateDocument().Get(), some.Get());
    EXPECT_EQ(TextOf(some), before);
}
} // namespace
} // namespace base::xml
