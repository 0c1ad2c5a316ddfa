#include "ticketservice/merge.h"

#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "offlineservice.h"
#include "ticketservice/scope.h"

namespace host::ticketservice
{
namespace
{
struct Fact
{
    std::string xpath;
    int count;
};

/// That a feature of the root level selects an option, with names as in "psk:PageOrientation".
Fact Selects(const std::string& feature, const std::string& option)
{
    return {"/psf:PrintTicket/psf:Feature[@name='" + feature + "'][count(psf:Option)=1]/psf:Option[@name='" +
                option + "']",
            1};
}

Fact HoldsNo(const std::string& name)
{
    return {"//*[@name='" + name + "']", 0};
}

Fact Sets(const std::string& parameter, const std::string& text)
{
    return {"/psf:PrintTicket/psf:ParameterInit[@name='" + parameter + "'][count(*)=1]/psf:Value[.='" + text +
                "']",
            1};
}

struct MergeCase
{
    const char* name;
    const char* delta;
    EPrintTicketScope scope;
    HRESULT expected;
    std::vector<Fact> facts;
};

class Merges : public testing::TestWithParam<MergeCase>
{
};

TEST_P(Merges, GiveTheExpectedTicket)
{
    const auto& [name, deltaName, scope, expected, facts] = GetParam();
    const std::string base = ReadData("merge/base.xml");
    const std::string delta =
        deltaName == nullptr ? "" : ReadData("merge/" + std::string(deltaName) + ".xml");
    const Answer answer = Merge(base, deltaName == nullptr ? nullptr : &delta, scope);
    EXPECT_EQ(answer.hr, expected);
    EXPECT_EQ(answer.message, "");
    const QueriedDocument merged(answer.document);
    EXPECT_EQ(merged.Count("/psf:PrintTicket[@version='1']"), 1);
    for (const Fact& fact : facts)
    {
        EXPECT_EQ(merged.Count(fact.xpath), fact.count) << fact.xpath << " in " << answer.document;
    }
}

const std::string kLetterWidth = "//psf:Option[@name='psk:NorthAmericaLetter']/psf:ScoredProperty[@name="
                                 "'psk:MediaSizeWidth']/psf:Value[@xsi:type='xsd:integer'][.='215900']";

const MergeCase kMergeCases[] = {
    {"WithoutDeltaKeepsEverything",
     nullptr,
     kPTJobScope,
     S_PT_NO_CONFLICT,
     {{"/psf:PrintTicket/psf:Feature", 9},
      {"/psf:PrintTicket/psf:ParameterInit", 6},
      Selects("ns0000:PagePrintableMediaSize", "ns0000:PrintableMediaSize"),
      {"//psf:Property[@name='ns0000:Threshold']/psf:Value[@xsi:type='xsd:integer'][.='52428800']", 1},
      {"//psf:Feature/psf:Feature[@name='psk:ScaleOffsetAlignment']/psf:Option[@name='psk:Center']", 1},
      {"/*/psf:Property[@name='ns0000:Origin']/psf:Value[.='ns0000:Workstation']", 1},
      Sets("ns0000:StampText", " R&D <draft> ")}},
    {"AtJobScopeTakesAllLevels",
     "levels",
     kPTJobScope,
     S_PT_NO_CONFLICT,
     {Selects("psk:JobDuplexAllDocumentsContiguously", "psk:TwoSidedLongEdge"),
      Sets("psk:JobCopiesAllDocuments", "5"),
      Selects("psk:DocumentCollate", "psk:Uncollated"),
      Selects("psk:PageOrientation", "psk:Landscape"),
      Selects("psk:PageOutputColor", "psk:Grayscale"),
      Selects("ns0000:JobCompress", "ns0000:Type4"),
      HoldsNo("ns0000:Threshold"),
      Sets("ns0000:SealText", "secret"),
      Selects("ns0000:Tray", "ns0000:Lower"),
      Selects("psk:PageMediaSize", "psk:ISOA4"),
      {"/psf:PrintTicket/psf:Feature", 12}}},
    {"AtDocumentScopeLeavesOutTheJob",
     "levels",
     kPTDocumentScope,
     S_PT_NO_CONFLICT,
     {{"//*[contains(@name, ':Job')]", 0},
      HoldsNo("ns0000:SealText"),
      Selects("psk:DocumentCollate", "psk:Uncollated"),
      Selects("psk:PageOrientation", "psk:Landscape"),
      Selects("ns0000:PagePrintableMediaSize", "ns0000:PrintableMediaSize"),
      Selects("ns0000:Tray", "ns0000:Lower")}},
    {"AtPageScopeLeavesOutJobAndDocument",
     "levels",
     kPTPageScope,
     S_PT_NO_CONFLICT,
     {{"//*[contains(@name, ':Job')]", 0},
      HoldsNo("ns0000:SealText"),
      HoldsNo("psk:DocumentCollate"),
      Selects("ns0000:Documentation", "ns0000:Long"),
      Selects("psk:PageOrientation", "psk:Landscape"),
      Sets("psk:PageScalingScale", "80"),
      Selects("ns0000:PagePrintableMediaSize", "ns0000:PrintableMediaSize"),
      Selects("ns0000:Tray", "ns0000:Lower"),
      {"/*/psf:Property[@name='ns0000:Origin']", 1}}},
    // The page's stamp still refers to the scaling's horizontal offset, and nothing ever did to
    // PageUnreferred.
    {"TakesOrphanedParametersAlong",
     "scalingnone",
     kPTPageScope,
     S_PT_NO_CONFLICT,
     {Selects("psk:PageScaling", "psk:None"),
      HoldsNo("psk:ScaleOffsetAlignment"),
      HoldsNo("psk:PageScalingScale"),
      HoldsNo("psk:PageScalingOffsetHeight"),
      Sets("psk:PageScalingOffsetWidth", "-500"),
      Sets("ns0000:PageUnreferred", "7")}},
    {"ReplacesAParameterByItself",
     "scalevalue",
     kPTPageScope,
     S_PT_NO_CONFLICT,
     {Selects("psk:PageScaling", "psk:CustomSquare"),
      Sets("psk:PageScalingScale", "50"),
      Sets("psk:PageScalingOffsetHeight", "0")}},
    {"TakesAnyPrefixes",
     "otherprefixes",
     kPTJobScope,
     S_PT_NO_CONFLICT,
     {Selects("psk:PageOrientation", "psk:Landscape"),
      Selects("ns0000:JobCompress", "ns0000:Type3"),
      Selects("ns0001:JobCompress", "ns0001:Type9"),
      Selects("ns0002:PageFold", "ns0002:Zigzag"),
      {"/*/psf:Property[@name='ns0000:Origin']/psf:Value[@xsi:type='xsd:QName'][.='ns0001:Server']", 1},
      {"/*[namespace::psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework']", 1},
      {"/*[namespace::psk='http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords']", 1},
      {"/*[namespace::ns0000='urn:vendor:one'][namespace::ns0001='urn:vendor:two']", 1},
      {"/*[namespace::ns0002='urn:vendor:three']", 1}}},
    {"ReplacesOptionsThatAreNotOffered",
     "notoffered",
     kPTJobScope,
     S_PT_CONFLICT_RESOLVED,
     {Selects("psk:PageMediaSize", "psk:NorthAmericaLetter"),
      {kLetterWidth, 1},
      Selects("psk:DocumentCollate", "psk:Collated"),
      Selects("psk:PageOrientation", "psk:Landscape"),
      {"//psf:Feature/psf:Feature[@name='psk:ScaleOffsetAlignment']/psf:Option[@name='psk:TopLeft']", 1},
      {"//psf:Option/@constrained", 0}}},
    {"AcceptsACustomSizeWithinTheLimits",
     "customwithin",
     kPTPageScope,
     S_PT_NO_CONFLICT,
     {Selects("psk:PageMediaSize", "psk:CustomMediaSize"), Sets("psk:PageMediaSizeMediaSizeWidth", "76200")}},
    {"ReplacesACustomSizeThatIsTooNarrow",
     "customnarrow",
     kPTPageScope,
     S_PT_CONFLICT_RESOLVED,
     {Selects("psk:PageMediaSize", "psk:NorthAmericaLetter"), HoldsNo("psk:PageMediaSizeMediaSizeWidth")}},
    {"ReplacesACustomSizeThatIsTooLong",
     "customlong",
     kPTPageScope,
     S_PT_CONFLICT_RESOLVED,
     {Selects("psk:PageMediaSize", "psk:NorthAmericaLetter"), HoldsNo("psk:PageMediaSizeMediaSizeWidth")}},
    {"BringsParametersWithinTheirLimits",
     "beyondlimits",
     kPTPageScope,
     S_PT_CONFLICT_RESOLVED,
     {Selects("psk:PageScaling", "psk:Custom"),
      Sets("psk:PageScalingOffsetWidth", "-482600"),
      Sets("psk:PageScalingOffsetHeight", "0"),
      Sets("psk:PageScalingScaleWidth", "1000"),
      Sets("psk:PageScalingScaleHeight", "100"),
      HoldsNo("psk:PageScalingScale")}},
    {"KeepsTheFirstOfDuplicatesAndNothingThatIsNotPrintSchema",
     "duplicates",
     kPTJobScope,
     S_PT_NO_CONFLICT,
     {Selects("psk:PageOrientation", "psk:Landscape"),
      Sets("psk:JobCopiesAllDocuments", "3"),
      Selects("psk:DocumentCollate", "psk:Uncollated"),
      {"//psf:Property[@name='ns0000:Ink']/psf:Value[.='red']", 1},
      {"//psf:Property[@name='ns0000:Ink']", 1},
      {"//*[namespace-uri()!='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework']",
       0},
      HoldsNo("ns0000:StampText"),
      HoldsNo("psk:Stray")}},
};

INSTANTIATE_TEST_SUITE_P(Tables, Merges, testing::ValuesIn(kMergeCases), [](const auto& merge) {
    return std::string(merge.param.name);
});

TEST(Merge, OfItsOwnResultChangesNothing)
{
    for (const char* const name : {"levels", "otherprefixes", "notoffered", "beyondlimits", "duplicates"})
    {
        const std::string delta = ReadData("merge/" + std::string(name) + ".xml");
        const Answer first = Merge(ReadData("merge/base.xml"), &delta, kPTJobScope);
        const Answer second = Merge(first.document, nullptr, kPTJobScope);
        EXPECT_EQ(second.hr, S_PT_NO_CONFLICT) << name;
        EXPECT_EQ(second.document, first.document) << name;
    }
}

// The file is what mergedticket_test.sh looks at with an XML library of another origin.
TEST(Merge, LeavesATicketForASecondReader)
{
    const std::string delta = ReadData("merge/otherprefixes.xml");
    std::ofstream(MERGED_TICKET_PATH, std::ios::binary)
        << Merge(ReadData("merge/base.xml"), &delta, kPTJobScope).document;
}

TEST(Scope, IsTakenFromTheNameInAnyNamespace)
{
    const struct
    {
        const char* local;
        Scope narrowest;
    } cases[] = {{"JobInputBin", Scope::Job},
                 {"Job", Scope::Job},
                 {"DocumentInputBin", Scope::Document},
                 {"PageInputBin", Scope::Page},
                 {"InputBin", Scope::Page},
                 {"Jobless", Scope::Page},
                 {"Documentation", Scope::Page},
                 {"PageJobLabel", Scope::Page},
                 {"jobInputBin", Scope::Page}};
    for (const auto& [local, narrowest] : cases)
    {
        for (const Scope scope : {Scope::Page, Scope::Document, Scope::Job})
        {
            EXPECT_EQ(IsWithin(scope, Keyword(local)), narrowest <= scope) << local;
            EXPECT_EQ(IsWithin(scope, {"urn:vendor:one", local}), narrowest <= scope) << local;
        }
    }
}
} // namespace
} // namespace host::ticketservice
