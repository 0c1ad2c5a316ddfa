#include "base/xps/printschema/tickets/imageableareareader.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "base/xps/printschema/mediasizedata.h"
#include "support/failures.h"
#include "support/printstreams.h"
#include "support/table.h"
#include "support/ticketplatform.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using support::Feature;
using support::MakeTicket;

const MediaSizeEntry& kA4 = MediaSizeTable::Shared().Lookup(MediaSizeTable::kIsoA4);
const MediaSizeEntry& kLetter = MediaSizeTable::Shared().Lookup(MediaSizeTable::kNorthAmericaLetter);

/// A provider with the capabilities of the test.
class CannedProvider final : public PrintTicketProvider
{
public:
    HRESULT GetLevelTicket(EPrintTicketScope level, IXMLDOMDocument2** ticket) override
    {
        EXPECT_EQ(level, kPTPageScope);
        *ticket = SUCCEEDED(levelResult) ? support::Document(pageTicket).Detach() : nullptr;
        return levelResult;
    }
    HRESULT GetCapabilities(IXMLDOMDocument2* ticket, IXMLDOMDocument2** result) override
    {
        ++asked;
        question = support::Join(support::Document(ticket), "//f:Option/@name | //f:Value");
        *result = SUCCEEDED(answer) ? support::LoadDocument(capabilities).Detach() : nullptr;
        return answer;
    }

    support::Document pageTicket = MakeTicket(support::MediaFeature("ISOA5"));
    HRESULT levelResult = S_OK;
    HRESULT answer = S_OK;
    std::string capabilities = support::LoadTable("capabilities.txt").at(0).at(0);
    int asked = 0;
    /// The sheet and the orientation of the last request.
    std::string question;
};

std::string Describe(const std::optional<ImageableArea>& read)
{
    if (!read)
    {
        return "none";
    }
    const ImageableArea& area = *read;
    return std::to_string(area.leftMicrometres) + " " + std::to_string(area.topMicrometres) + " " +
           std::to_string(area.widthMicrometres) + " " + std::to_string(area.heightMicrometres);
}

PageOrientationData Orientation(std::int32_t option)
{
    PageOrientationData orientation;
    orientation.SetOptionId(option);
    return orientation;
}

const PageOrientationData kPortrait;

TEST(ImageableAreaReader, TakesWhatThePrinterSaysOfThisSheetOnly)
{
    for (const auto& row : support::LoadTable("capabilities.txt"))
    {
        CannedProvider provider;
        provider.capabilities = row[0];
        EXPECT_EQ(Describe(ImageableAreaReader(provider).Read(kA4, kPortrait)), row[1]) << row[0];
    }
}

TEST(ImageableAreaReader, ReadsInTheFrameOfTheOrientationWhateverSheetsAreOffered)
{
    const auto nameOf = [](const auto& name) {
        return std::string(name.localName.begin(), name.localName.end());
    };
    for (const auto& row : support::LoadTable("imageableareas.txt"))
    {
        support::TicketPlatform::SetDevice("devices/" + row[0] + ".xml");
        PrintTicketProvider provider;
        const auto ticket = utility::MakeCom<support::MemoryReadStream>(support::Ticket(""));
        ASSERT_EQ(provider.Open(ticket.Get(), utility::Bstr(L"printer").Get(), support::UserToken()), S_OK);
        ImageableAreaReader reader(provider);
        int found = 0;
        for (const auto& entry : MediaSizeTable::Shared().GetEntries())
        {
            for (int option = 0; option < 4; ++option)
            {
                const PageOrientationData orientation = Orientation(option);
                if (nameOf(entry.second.name) + " " + nameOf(orientation.GetOptionQname()) == row[1])
                {
                    EXPECT_EQ(Describe(reader.Read(entry.second, orientation)), row[2]) << row[0] << row[1];
                    ++found;
                }
            }
        }
        EXPECT_EQ(found, 1) << row[1];
    }
    support::TicketPlatform::Reset();
}

TEST(ImageableAreaReader, AsksOnceForTheSameTicketAndLeavesThePagesAlone)
{
    CannedProvider provider;
    ImageableAreaReader reader(provider);
    const auto askedFor = [&](const MediaSizeEntry& media,
                              const PageOrientationData& orientation = kPortrait) {
        reader.Read(media, orientation);
        return provider.asked;
    };
    EXPECT_EQ(askedFor(kA4), 1);
    EXPECT_EQ(askedFor(kLetter), 2);
    EXPECT_EQ(provider.question, "psk:NorthAmericaLetter 279400 215900 psk:Portrait");
    EXPECT_EQ(support::OptionOf(provider.pageTicket, "psk:PageMediaSize"), "psk:ISOA5");
    EXPECT_EQ(askedFor(kA4), 2);
    // Another page with an equal ticket, then one with its own ticket.
    provider.pageTicket = MakeTicket(support::MediaFeature("ISOA5"));
    EXPECT_EQ(askedFor(kLetter), 2);
    provider.pageTicket = MakeTicket(Feature("PageResolution", "High"));
    EXPECT_EQ(askedFor(kLetter), 3);
    // Another orientation is another request.
    EXPECT_EQ(askedFor(kLetter, Orientation(PageOrientationData::kReversePortrait)), 4);
    EXPECT_EQ(provider.question, "psk:High psk:NorthAmericaLetter 279400 215900 psk:ReversePortrait");
    EXPECT_EQ(askedFor(kLetter, Orientation(PageOrientationData::kReversePortrait)), 4);
    // The number of tickets and sheets does not empty the cache.
    MediaSizeEntry sheet = kA4;
    for (int round = 0; round < 2; ++round)
    {
        for (sheet.size.widthMicrometres = 1; sheet.size.widthMicrometres <= 200;
             ++sheet.size.widthMicrometres)
        {
            reader.Read(sheet, kPortrait);
        }
    }
    EXPECT_EQ(askedFor(kLetter), 4 + 200);
}

TEST(ImageableAreaReader, DoesNotHoldOnToLargeTickets)
{
    CannedProvider provider;
    ImageableAreaReader reader(provider);
    MediaSizeEntry sheet = kA4;
    const auto askedFor = [&](int width, std::size_t length) {
        provider.pageTicket = support::MakeTicket(support::Feature("F", std::string(length, 'a')));
        sheet.size.widthMicrometres = width;
        reader.Read(sheet, kPortrait);
        return provider.asked;
    };
    EXPECT_EQ(askedFor(1, 100'000), 1);
    EXPECT_EQ(askedFor(1, 100'000), 1);
    // Too large for the cache.
    EXPECT_EQ(askedFor(1, 300'000), 2);
    EXPECT_EQ(askedFor(1, 300'000), 3);
    // Enough to empty the cache.
    for (int width = 2; width <= 21; ++width)
    {
        askedFor(width, 100'000);
    }
    EXPECT_EQ(askedFor(1, 100'000), 3 + 20 + 1);
}

TEST(ImageableAreaReader, FailsWithoutMemoryOrPageTicket)
{
    CannedProvider provider;
    ImageableAreaReader reader(provider);
    const auto result = [&] { return support::HresultOf([&] { reader.Read(kA4, kPortrait); }); };
    provider.answer = E_OUTOFMEMORY;
    EXPECT_EQ(result(), E_OUTOFMEMORY);
    // A failure is not cached.
    provider.answer = S_OK;
    EXPECT_EQ(result(), S_OK);
    provider.levelResult = E_PENDING;
    EXPECT_EQ(result(), E_PENDING);
}

} // namespace
} // namespace base::xps::printschema
