#include "host/ticketservice/operations.h"

#include <regex>
#include <string>

#include <gtest/gtest.h>

#include "support/tickettext.h"
#include "tests/host/ticketservice/offlineservice.h"

namespace host::ticketservice
{
namespace
{
/// The numbers of the property that capabilities end in: the page's size, then origin and extent of the
/// imageable area.
std::string ImageableSize(const std::string& capabilities)
{
    const std::size_t property = capabilities.find("<psf:Property name=\"psk:PageImageableSize\">");
    const std::string texts =
        std::regex_replace(capabilities.substr(property), std::regex("(<[^>]*>)+"), " ");
    return texts.substr(1, texts.size() - 2);
}

/// A ticket of media size and orientation, as "ISOA4 Portrait" or, with a size as a driver's filter would
/// write it, "ISOA4 210000 297000 Portrait".
std::string Ticket(const std::string& wanted)
{
    std::smatch part;
    EXPECT_TRUE(std::regex_match(wanted, part, std::regex("(\\w+)(?: (\\d+) (\\d+))? (\\w+)"))) << wanted;
    const int width = part[2].matched ? std::stoi(part[2]) : 0;
    const int height = part[3].matched ? std::stoi(part[3]) : 0;
    return support::Ticket(support::MediaFeature(part[1], width, height) +
                           support::Feature("PageOrientation", part[4]));
}

void ExpectSizes(const std::string& table)
{
    for (const auto& row : ReadTable(table))
    {
        const std::string ticket = Ticket(row.at(0));
        const Answer answer = GetCapabilities(&ticket);
        EXPECT_EQ(answer.hr, S_OK);
        EXPECT_EQ(ImageableSize(answer.document), row.at(1)) << row.at(0);
    }
}

TEST(Capabilities, TellTheImageableSizeOfMediaAndOrientation)
{
    ExpectSizes("devices/builtin.sizes.txt");
    const UnevenDevice device;
    ExpectSizes("devices/uneven.sizes.txt");
    // This device's default orientation is landscape, its default medium the first.
    const std::string capabilities = GetCapabilities(nullptr).document;
    EXPECT_EQ(ImageableSize(capabilities), "297000 210000 4000 1000 291000 206000");
    EXPECT_EQ(capabilities.find("psk:Stale"), std::string::npos) << "the description's own size goes";
}

TEST(Capabilities, WithoutTicketAreTheWholeDescriptionForItsDefaults)
{
    const Answer builtIn = GetCapabilities(nullptr);
    EXPECT_EQ(builtIn.hr, S_OK);
    EXPECT_TRUE(builtIn.document.ends_with(ReadJoined("devices/builtin.imageablesize.xml")))
        << builtIn.document;
    EXPECT_NE(builtIn.document.find("<psf:ParameterDef name=\"psk:PageScalingScale\">"), std::string::npos);
}
} // namespace
} // namespace host::ticketservice
