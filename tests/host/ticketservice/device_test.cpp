#include "ticketservice/device.h"

#include <string>

#include <gtest/gtest.h>

#include "offlineservice.h"
#include "ticketservice/documentreader.h"
#include "ticketservice/validate.h"

namespace host::ticketservice
{
namespace
{
/// Replaces the first `from` of a text, which must be there.
std::string Replace(std::string text, const std::string& from, const std::string& to)
{
    const std::size_t position = text.find(from);
    EXPECT_NE(position, std::string::npos) << from;
    return position == std::string::npos ? text : text.replace(position, from.size(), to);
}

TEST(Device, IsRefusedWithItsReasonWhenTheDescriptionCannotServe)
{
    const struct
    {
        const char* from;
        const char* to;
        const char* reason;
    } cases[] = {
        {"</psf:PrintCapabilities>", "", "line "},
        {"version=\"1\"", "version=\"2\"", "the version is not 1"},
        {"name=\"psk:PageMediaSize\"", "name=\"v:PageMediaSize\"", "the description names no PageMediaSize"},
        {">210000<", ">wide<", "ISOA4: the medium has no width and height"},
        {">210000<", ">4000<", "ISOA4: the margins leave nothing to print on"},
        {">1000<", ">2147483647<", "ISOA4: the margins leave nothing to print on"},
        {">1000<", ">-1<", "Left: a margin is missing or negative"},
        {"d:Bottom", "d:Base", "Bottom: a margin is missing or negative"},
        {">2000<", ">2 mm<", "Top: the value is not an integer"},
        {">psk:Landscape<", ">psk:Sideways<", "PageOrientation: DefaultOption is not the QName of one of"},
        {"<psf:Option name=\"v:Fold\"/>\n    <psf:Option name=\"v:Punch\"/>",
         "",
         "PageFinish: the feature has no"},
        {"<psf:ParameterDef name=\"psk:PageMediaSizeMediaSizeWidth\">",
         "<psf:ParameterDef name=\"psk:Other\">",
         "PageMediaSizeMediaSizeWidth: an option refers to this parameter"},
        {">90000<", ">310000<", "PageMediaSizeMediaSizeWidth: MinValue is above MaxValue"},
        {">90000<", ">few<", "PageMediaSizeMediaSizeWidth: MinValue is not a number"},
        {"psf:DefaultValue", "psf:Default", "PageMediaSizeMediaSizeWidth: the parameter has no DefaultValue"},
        {">100000<",
         ">80000<",
         "PageMediaSizeMediaSizeWidth: DefaultValue is not a number within the limits"},
        {">100000<", ">100000.5<", "PageMediaSizeMediaSizeWidth: DefaultValue is not a number within"},
        {"psf:DataType", "psf:Type", "PageMediaSizeMediaSizeWidth: the parameter has no DataType"},
        {"psf:MaxValue", "psf:Most", "CustomMediaSize: the medium has no width and height"},
    };
    const std::string usable = ReadData("devices/uneven.xml");
    ASSERT_EQ(Describe(usable).hr, S_OK);
    for (const auto& [from, to, reason] : cases)
    {
        const Answer answer = Describe(Replace(usable, from, to));
        EXPECT_EQ(answer.hr, static_cast<HRESULT>(E_PRINTCAPABILITIES_FORMAT)) << reason;
        EXPECT_NE(answer.message.find(reason), std::string::npos) << answer.message << ", not " << reason;
    }
    EXPECT_EQ(Describe("").hr, static_cast<HRESULT>(E_PRINTCAPABILITIES_FORMAT));
    EXPECT_EQ(Describe(ReadData("merge/base.xml")).message,
              "line 7: the root is not the Print Schema's PrintCapabilities");
    // What was in force before a refusal stays in force.
    EXPECT_EQ(QueriedDocument(GetCapabilities(nullptr).document).Count("//*[@name='v:PageFinish']"), 1);
    EXPECT_EQ(OfflineService::Get().setDescription(nullptr, 0, nullptr), S_OK);
}

TEST(Device, HoldsForProvidersThatAreOpenedLater)
{
    const OfflineService& service = OfflineService::Get();
    const std::string media = ReadData("merge/notoffered.xml");
    const OpenProvider earlier;
    ASSERT_EQ(Describe(ReadData("devices/uneven.xml")).hr, S_OK);
    const auto ticket = base::utility::MakeCom<ShortStream>(media);
    const auto result = base::utility::MakeCom<ShortStream>();
    EXPECT_EQ(service.merge(earlier.Get(), ticket.Get(), nullptr, kPTPageScope, result.Get(), nullptr),
              S_PT_CONFLICT_RESOLVED);
    EXPECT_EQ(QueriedDocument(result->content).Count("//psf:Option[@name='psk:NorthAmericaLetter']"), 1);
    EXPECT_EQ(QueriedDocument(Merge(media, nullptr, kPTPageScope).document)
                  .Count("//psf:Option[@name='psk:ISOA4']"),
              1);
    EXPECT_EQ(service.setDescription(nullptr, 0, nullptr), S_OK);
}

TEST(Device, TakesManyOptionsWhereItsFeatureDoes)
{
    const Device device(ReadDocument(ReadData("devices/uneven.xml"), Kind::PrintCapabilities));
    const auto option = [](const char* local) {
        return Element{.kind = Kind::Option, .name = {"urn:vendor:one", local}};
    };
    const auto ticketOf = [](std::vector<Element> options) {
        Element feature{.kind = Kind::Feature, .name = {"urn:vendor:one", "PageFinish"}};
        feature.children = std::move(options);
        return Element{.kind = Kind::PrintTicket, .children = {std::move(feature)}};
    };
    const auto optionNames = [](const Element& ticket) {
        std::string names;
        for (const Element& each : ticket.children.front().children)
        {
            names += each.name.local + " ";
        }
        return names;
    };
    Element both = ticketOf({option("Punch"), option("Fold")});
    EXPECT_FALSE(ResolveConflicts(both, device));
    EXPECT_EQ(optionNames(both), "Punch Fold ");
    Element one = ticketOf({option("Glue"), option("Punch")});
    EXPECT_TRUE(ResolveConflicts(one, device));
    EXPECT_EQ(optionNames(one), "Punch ");
    Element none = ticketOf({option("Glue")});
    EXPECT_TRUE(ResolveConflicts(none, device));
    EXPECT_EQ(optionNames(none), "Fold ");
    Element unasked = ticketOf({});
    EXPECT_FALSE(ResolveConflicts(unasked, device));
    EXPECT_EQ(optionNames(unasked), "");
}
} // namespace
} // namespace host::ticketservice
