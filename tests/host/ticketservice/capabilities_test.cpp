#include "ticketservice/capabilities.h"

#include <string>

#include <gtest/gtest.h>

#include "offlineservice.h"

namespace host::ticketservice
{
namespace
{
/// PageImageableSize as one line: the page's size, then origin and extent of the imageable area.
std::string ImageableSize(const std::string& capabilities)
{
    const QueriedDocument document(capabilities);
    const std::string size = "/psf:PrintCapabilities/psf:Property[@name='psk:PageImageableSize']";
    const auto read = [&](const std::string& path) {
        std::string xpath = size;
        for (const std::string& name : {path.substr(0, path.find('/')), path.substr(path.find('/') + 1)})
        {
            xpath += name.empty() ? "" : "/psf:Property[@name='psk:" + name + "']";
        }
        return document.Text(xpath + "/psf:Value[@xsi:type='xsd:integer']");
    };
    return read("/ImageableSizeWidth") + "x" + read("/ImageableSizeHeight") + " " +
           read("ImageableArea/OriginWidth") + "," + read("ImageableArea/OriginHeight") + " " +
           read("ImageableArea/ExtentWidth") + "x" + read("ImageableArea/ExtentHeight");
}

/// A ticket of media size and orientation; a size of its own is written as a driver's filter would, in the
/// option.
std::string Ticket(const std::string& media, int width, int height, const std::string& orientation)
{
    const auto edge = [](const std::string& name, int length) {
        return length == 0
                   ? ""
                   : "<psf:ScoredProperty name='psk:" + name + "'><psf:Value xsi:type='xsd:integer'>" +
                         std::to_string(length) + "</psf:Value></psf:ScoredProperty>";
    };
    const auto feature = [](const std::string& name, const std::string& option, const std::string& content) {
        return option.empty() ? ""
                              : "<psf:Feature name='psk:" + name + "'><psf:Option name='psk:" + option +
                                    "'>" + content + "</psf:Option></psf:Feature>";
    };
    return "<psf:PrintTicket version='1' xmlns:psf='" + std::string(kFrameworkNamespace) + "' xmlns:psk='" +
           std::string(kKeywordsNamespace) + "' xmlns:xsi='" + std::string(kSchemaInstanceNamespace) +
           "' xmlns:xsd='" + std::string(kSchemaNamespace) + "'>" +
           feature("PageMediaSize", media, edge("MediaSizeWidth", width) + edge("MediaSizeHeight", height)) +
           feature("PageOrientation", orientation, "") + "</psf:PrintTicket>";
}

struct CapabilitiesCase
{
    const char* description;
    const char* media;
    int width;
    int height;
    const char* orientation;
    const char* expected;
};

const char* const kLetter = "215900x279400 4230,4230 207440x270940";

const CapabilitiesCase kCapabilitiesCases[] = {
    {nullptr, "", 0, 0, "", kLetter},
    {nullptr, "NorthAmericaLetter", 0, 0, "Portrait", kLetter},
    {nullptr, "NorthAmericaLetter", 0, 0, "Landscape", "279400x215900 4230,4230 270940x207440"},
    {nullptr, "ISOA3Rotated", 0, 0, "Portrait", "420000x297000 4230,4230 411540x288540"},
    {nullptr, "ISOA3", 0, 0, "ReverseLandscape", "420000x297000 4230,4230 411540x288540"},
    // The name decides, not a size beside it.
    {nullptr, "NorthAmericaLegal", 100000, 100000, "Portrait", "215900x355600 4230,4230 207440x347140"},
    {nullptr, "CustomMediaSize", 431800, 279400, "Portrait", "431800x279400 4230,4230 423340x270940"},
    // A name that is not offered counts by its size, as long as a custom medium takes that.
    {nullptr, "ISOC4", 229000, 324000, "Portrait", "229000x324000 4230,4230 220540x315540"},
    {nullptr, "ISOA0", 841000, 1189000, "Portrait", kLetter},
    {nullptr, "ISOA0", 0, 0, "Portrait", kLetter},
    {nullptr, "CustomMediaSize", 10, 10, "Portrait", kLetter},
    {nullptr, "CustomMediaSize", 0, 0, "Portrait", kLetter},
    {nullptr, "NorthAmericaLetter", 0, 0, "Sideways", kLetter},
    // Left 1000, top 2000, right 3000, bottom 4000 of the upright sheet.
    {"uneven", "ISOA4", 0, 0, "Portrait", "210000x297000 1000,2000 206000x291000"},
    {"uneven", "ISOA4", 0, 0, "Landscape", "297000x210000 4000,1000 291000x206000"},
    {"uneven", "ISOA4", 0, 0, "ReversePortrait", "210000x297000 3000,4000 206000x291000"},
    {"uneven", "ISOA4", 0, 0, "ReverseLandscape", "297000x210000 2000,3000 291000x206000"},
    {"uneven", "ISOA5", 0, 0, "Portrait", "148000x210000 0,0 148000x200000"},
    {"uneven", "CustomMediaSize", 90000, 400000, "Portrait", "90000x400000 1000,2000 86000x394000"},
    // This device's default orientation is landscape, its default medium the first.
    {"uneven", "", 0, 0, "", "297000x210000 4000,1000 291000x206000"},
};

TEST(Capabilities, TellTheImageableSizeOfMediaAndOrientation)
{
    const OfflineService& service = OfflineService::Get();
    for (const auto& [description, media, width, height, orientation, expected] : kCapabilitiesCases)
    {
        if (description != nullptr)
        {
            ASSERT_EQ(Describe(ReadData("devices/" + std::string(description) + ".xml")).hr, S_OK);
        }
        const std::string ticket = Ticket(media, width, height, orientation);
        const Answer answer = GetCapabilities(&ticket);
        EXPECT_EQ(answer.hr, S_OK);
        EXPECT_EQ(ImageableSize(answer.document), expected) << media << " " << orientation;
        EXPECT_EQ(service.setDescription(nullptr, 0, nullptr), S_OK);
    }
}

TEST(Capabilities, WithoutTicketAreTheWholeDescriptionForItsDefaults)
{
    const Answer builtIn = GetCapabilities(nullptr);
    EXPECT_EQ(builtIn.hr, S_OK);
    EXPECT_EQ(ImageableSize(builtIn.document), kLetter);
    const QueriedDocument document(builtIn.document);
    for (const char* const option : {"NorthAmericaLetter",
                                     "NorthAmericaLegal",
                                     "NorthAmericaTabloid",
                                     "NorthAmerica11x17",
                                     "ISOA3",
                                     "ISOA4",
                                     "ISOA5",
                                     "NorthAmericaNumber10Envelope",
                                     "CustomMediaSize",
                                     "PSCustomMediaSize"})
    {
        const std::string xpath =
            "/psf:PrintCapabilities/psf:Feature[@name='psk:PageMediaSize']/psf:Option[@name='"
            "psk:" +
            std::string(option) + "'][@constrained='psk:None']";
        EXPECT_EQ(document.Count(xpath), 1) << option;
    }
    EXPECT_EQ(document.Count("//psf:Feature[@name='psk:JobInputBin']/psf:Option"), 3);
    EXPECT_EQ(document.Count("//psf:Feature[@name='psk:PageOrientation']/psf:Option"), 4);
    EXPECT_EQ(
        document.Count("//psf:ParameterDef[@name='psk:PageScalingScale']/psf:Property[@name='psf:MaxValue']"),
        1);
}

TEST(Capabilities, ReplaceAStaleImageableSizeOfTheDescription)
{
    ASSERT_EQ(Describe(ReadData("devices/uneven.xml")).hr, S_OK);
    const QueriedDocument document(GetCapabilities(nullptr).document);
    EXPECT_EQ(document.Count("//*[@name='psk:PageImageableSize']"), 1);
    EXPECT_EQ(document.Count("//*[@name='psk:Stale']"), 0);
    EXPECT_EQ(OfflineService::Get().setDescription(nullptr, 0, nullptr), S_OK);
}
} // namespace
} // namespace host::ticketservice
