#include "base/xps/printschema/imageableareareader.h"

#include <string>

#include <gtest/gtest.h>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/xps/printschema/mediasizedata.h"
#include "support/printstreams.h"
#include "support/ticketfacts.h"
#include "support/ticketplatform.h"

namespace base::xps::printschema
{
namespace
{
using support::DomDocument;
using support::FeatureText;
using support::IntegerText;
using support::LoadDocument;
using support::TicketFacts;
using support::TicketPlatform;
using support::TicketText;
using utility::MakeCom;

const MediaSizeEntry& kA4 = MediaSizeTable::Shared().Lookup(MediaSizeTable::kIsoA4);
const MediaSizeEntry& kLetter = MediaSizeTable::Shared().Lookup(MediaSizeTable::kNorthAmericaLetter);

/// A provider whose capabilities are the test's.
class CannedProvider final : public PrintTicketProvider
{
public:
    HRESULT GetLevelTicket(EPrintTicketScope level, IXMLDOMDocument2** ticket) override
    {
        EXPECT_EQ(level, kPTPageScope);
        *ticket = SUCCEEDED(levelResult) ? DomDocument(pageTicket).Detach() : nullptr;
        return levelResult;
    }

    HRESULT GetCapabilities(IXMLDOMDocument2* ticket, IXMLDOMDocument2** result) override
    {
        ++asked;
        const TicketFacts facts(ticket);
        mediaSize = facts.OptionOf("psk:PageMediaSize") + " " +
                    facts.Join("//f:ScoredProperty[@name='psk:MediaSizeWidth']/f:Value") + " x " +
                    facts.Join("//f:ScoredProperty[@name='psk:MediaSizeHeight']/f:Value");
        if (FAILED(answer))
        {
            return answer;
        }
        *result = LoadDocument(capabilities).Detach();
        return S_OK;
    }

    DomDocument pageTicket = LoadDocument(TicketText(FeatureText("psk:PageMediaSize", "psk:ISOA5")));
    HRESULT levelResult = S_OK;
    HRESULT answer = S_OK;
    std::string capabilities;
    int asked = 0;
    /// What the last question was about.
    std::string mediaSize;
};

/// Capabilities with this content in the ImageableArea of the PageImageableSize.
std::string Capabilities(const std::string& area)
{
    std::string text =
        TicketText("<psf:Property name=\"psk:PageImageableSize\">" +
                   IntegerText("Property", "psk:ImageableSizeWidth", 1) +
                   "<psf:Property name=\"psk:ImageableArea\">" + area + "</psf:Property></psf:Property>");
    for (std::size_t at = 0; (at = text.find("PrintTicket ", at)) != std::string::npos;)
    {
        text.replace(at, 11, "PrintCapabilities");
    }
    return text.replace(text.rfind("PrintTicket"), 11, "PrintCapabilities");
}

std::string WholeArea()
{
    return IntegerText("Property", "psk:OriginWidth", 1000) +
           IntegerText("Property", "psk:OriginHeight", 2000) +
           IntegerText("Property", "psk:ExtentWidth", 3000) +
           IntegerText("Property", "psk:ExtentHeight", 4000);
}

TEST(ImageableAreaReader, ReadsTheAreaOfTheSheetThatItIsAskedFor)
{
    CannedProvider provider;
    provider.capabilities = Capabilities(WholeArea());
    EXPECT_EQ(ImageableAreaReader(provider).Read(kLetter), (ImageableArea{1000, 2000, 3000, 4000}));
    EXPECT_EQ(provider.mediaSize, "psk:NorthAmericaLetter 215900 x 279400");
    // The page's own ticket is left alone.
    EXPECT_EQ(TicketFacts(provider.pageTicket.Get()).OptionOf("psk:PageMediaSize"), "psk:ISOA5");
}

TEST(ImageableAreaReader, AsksOnceForTheSameTicket)
{
    CannedProvider provider;
    provider.capabilities = Capabilities(WholeArea());
    ImageableAreaReader reader(provider);
    const auto askedFor = [&](const MediaSizeEntry& media) {
        reader.Read(media);
        return provider.asked;
    };
    EXPECT_EQ(askedFor(kA4), 1);
    EXPECT_EQ(askedFor(kLetter), 2);
    EXPECT_EQ(askedFor(kA4), 2);
    // Another page with an equal ticket, then one with a ticket of its own.
    provider.pageTicket = LoadDocument(TicketText(FeatureText("psk:PageMediaSize", "psk:ISOA5")));
    EXPECT_EQ(askedFor(kLetter), 2);
    provider.pageTicket = LoadDocument(TicketText(FeatureText("psk:PageOrientation", "psk:Landscape")));
    EXPECT_EQ(askedFor(kLetter), 3);
    // What is remembered does not grow with the job: so many sheets of a job's own push the first out.
    MediaSizeEntry sheet = kA4;
    for (sheet.size.widthMicrometres = 1; sheet.size.widthMicrometres <= 64; ++sheet.size.widthMicrometres)
    {
        reader.Read(sheet);
    }
    EXPECT_EQ(askedFor(kLetter), 3 + 64 + 1);
}

TEST(ImageableAreaReader, TakesTheWholeSheetFromAPrinterThatDoesNotTell)
{
    const ImageableArea wholeA4{0, 0, 210000, 297000};
    const std::string noKeywords =
        "<psf:PrintCapabilities "
        "xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'/>";
    for (const std::string& capabilities :
         {Capabilities(""),
          Capabilities(WholeArea().substr(0, WholeArea().rfind("<psf:Property"))),
          TicketText(""),
          noKeywords,
          std::string("<other/>")})
    {
        CannedProvider provider;
        provider.capabilities = capabilities;
        EXPECT_EQ(ImageableAreaReader(provider).Read(kA4), wholeA4) << capabilities;
        provider.answer = HRESULT_FROM_WIN32(ERROR_PRINTER_NOT_FOUND);
        EXPECT_EQ(ImageableAreaReader(provider).Read(kA4), wholeA4);
    }
}

TEST(ImageableAreaReader, FailsWithoutMemoryOrPageTicket)
{
    CannedProvider provider;
    provider.capabilities = Capabilities(WholeArea());
    provider.answer = E_OUTOFMEMORY;
    ImageableAreaReader reader(provider);
    const auto resultOf = [&] {
        try
        {
            reader.Read(kA4);
        }
        catch (const exception::HresultError& error)
        {
            return error.GetHresult();
        }
        return S_OK;
    };
    EXPECT_EQ(resultOf(), E_OUTOFMEMORY);
    // A failure is no answer to be remembered.
    provider.answer = S_OK;
    EXPECT_EQ(resultOf(), S_OK);
    provider.levelResult = E_PENDING;
    EXPECT_EQ(resultOf(), E_PENDING);
}

TEST(ImageableAreaReader, ReadsWhatTheServiceSaysUnderThePagesTicket)
{
    TicketPlatform::Reset();
    PrintTicketProvider provider;
    ASSERT_EQ(provider.Open(MakeCom<support::MemoryReadStream>(TicketText("")).Get(),
                            utility::Bstr(L"printer").Get(),
                            support::UserToken()),
              S_OK);
    ImageableAreaReader reader(provider);
    // The built-in device keeps a sixth of an inch clear on every edge.
    EXPECT_EQ(reader.Read(kLetter), (ImageableArea{4230, 4230, 207440, 270940}));
    const std::size_t calls = TicketPlatform::Calls().size();
    reader.Read(kLetter);
    EXPECT_EQ(TicketPlatform::Calls().size(), calls);
}
} // namespace
} // namespace base::xps::printschema
