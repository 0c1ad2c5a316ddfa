#include "base/xps/fixedpagevalidator.h"

#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "base/utility/safecoinit.h"
#include "support/failures.h"
#include "support/pipelinetest.h"
#include "support/table.h"
#include "support/thrown.h"
#include "support/tickets.h"

namespace base::xps
{
namespace
{
using printschema::MediaSize;
using printschema::MediaSizeLimits;
using printschema::ScalingData;
using support::Feature;
using support::MediaFeature;
using support::MessageOf;
using support::PagePart;
using support::Ticket;
using utility::ComPtr;
using utility::MakeCom;

constexpr const char* kPage = R"(<FixedPage xmlns="http://schemas.microsoft.com/xps/2005/06" xml:lang="en" )"
                              R"(Width="200" Height="100"><Path Data="M 0,0 L 9,9"/></FixedPage>)";
constexpr MediaSize kA3{297000, 420000};

ComPtr<IXMLDOMDocument2> Load(const std::string& markup)
{
    return FixedPageValidator::LoadTicket(MakeCom<support::MemoryReadStream>(markup).Get());
}

/// A job with one ticket for all levels, given as text. Its printer has no capabilities until the provider is
/// opened.
class GivenTickets final : public printschema::PrintTicketProvider
{
public:
    HRESULT GetLevelTicket(EPrintTicketScope level, IXMLDOMDocument2** ticket) override
    {
        levels += std::to_string(level);
        *ticket = Load(text).Detach();
        return S_OK;
    }

    std::string text = Ticket(MediaFeature("ISOA4", 210000, 297000));
    /// The levels whose tickets were read.
    std::string levels;
};

class FixedPageValidatorTest : public support::PipelineTest
{
protected:
    /// Runs the validator on a page with this ticket; without one if it is empty.
    ComPtr<PagePart> Process(const std::string& ticket = {})
    {
        auto page = MakeCom<PagePart>(pipeline->record, "page", kPage, ticket);
        MakeValidator(pipeline->consumer.Get(), page.Get()).Process();
        return page;
    }

    FixedPageValidator MakeValidator(IXpsDocumentConsumer* consumer, IFixedPage* page)
    {
        printschema::PrintableMediaSizeData printable;
        printable.SetLimits(limits);
        return FixedPageValidator(tickets,
                                  consumer,
                                  page,
                                  printschema::InputBinData(),
                                  mediaSize,
                                  orientation,
                                  scaling,
                                  printable,
                                  *areas);
    }

    /// The text written into a new ticket part or a page.
    std::string Written(std::size_t index) const { return pipeline->record.writeStreams.at(index)->bytes; }

    /// The options and numbers of the new ticket in document order; empty without a new ticket.
    std::string NewTicket() const
    {
        return pipeline->consumer->newPartNames.empty()
                   ? ""
                   : support::Join(Load(Written(0)), "//f:Option/@name | //f:Value");
    }

    const utility::SafeCoInit com;
    GivenTickets tickets;
    std::optional<printschema::ImageableAreaReader> areas{tickets};
    printschema::MediaSizeData mediaSize;
    printschema::PageOrientationData orientation;
    ScalingData scaling;
    MediaSizeLimits limits{{76200, 127000}, {215900, 355600}};
};

TEST_F(FixedPageValidatorTest, DecidesByOrientationSheetAndLimits)
{
    for (const auto& row : support::LoadTable("pages.txt"))
    {
        SCOPED_TRACE(row[0]);
        Renew();
        MediaSize sheet;
        std::istringstream(row[2]) >> sheet.widthMicrometres >> sheet.heightMicrometres;
        std::istringstream(row[3]) >> limits.minimum.widthMicrometres >> limits.minimum.heightMicrometres >>
            limits.maximum.widthMicrometres >> limits.maximum.heightMicrometres;
        mediaSize.SetSize(sheet);
        orientation.SetOptionId(std::stoi(row[1]));
        Process(Ticket({}));
        EXPECT_EQ(pipeline->record.Count("GetWriteStream page"), row[4] == "turned" ? 1 : 0);
        EXPECT_EQ(NewTicket(), row[5]);
        // The caller's accessors are not changed.
        EXPECT_EQ(mediaSize.GetSize(), sheet);
        EXPECT_EQ(orientation.GetOptionId(), std::stoi(row[1]));
    }
}

TEST_F(FixedPageValidatorTest, FitsImageableAreasAsTheNewTicketHasThem)
{
    for (const auto& row : support::LoadTable("fits.txt"))
    {
        SCOPED_TRACE(row[0] + " " + row[1] + " " + row[2]);
        Renew();
        support::TicketPlatform::SetDevice("devices/" + row[0] + ".xml");
        const auto received = MakeCom<support::MemoryReadStream>(tickets.text);
        ASSERT_EQ(tickets.Open(received.Get(), utility::Bstr(L"printer").Get(), support::UserToken()), S_OK);
        areas.emplace(tickets);
        MediaSize sheet;
        std::istringstream(row[1]) >> sheet.widthMicrometres >> sheet.heightMicrometres;
        mediaSize.SetSize(sheet);
        orientation.SetOptionId(std::stoi(row[2]));
        Process(Ticket({}));
        EXPECT_EQ(NewTicket(), row[3]);
        EXPECT_EQ(tickets.Close(), S_OK);
    }
}

TEST_F(FixedPageValidatorTest, LeavesThePageATicketThatItCannotRewrite)
{
    mediaSize.SetSize(kA3);
    EXPECT_EQ(support::HresultOf([&] { Process("<other/>"); }), E_FAIL);
    EXPECT_EQ(CallsFrom("GetPrintTicket page"), "GetPrintTicket page, GetStream ticket, GetUri ticket");
}

TEST_F(FixedPageValidatorTest, DeclaresThePrivateNamespaceOfTheTicketThatHolds)
{
    constexpr std::int32_t kImageableOntoImageable = 7;
    const std::string mine = "urn:mine";
    tickets.text.replace(tickets.text.find("http://schemas.quellmark.example/printing/2005/08/printticket"),
                         std::string("http://schemas.quellmark.example/printing/2005/08/printticket").size(),
                         mine);
    mediaSize.SetSize(kA3);
    scaling.SetOptionId(kImageableOntoImageable);
    Process();
    EXPECT_EQ(NewTicket(),
              "psk:ISOA4 297000 210000 psk:Portrait ns0000:FitApplicationImageableSizeToImageableSize");
    EXPECT_NE(Written(0).find("xmlns:ns0000=\"" + mine + "\""), std::string::npos) << Written(0);
}

TEST_F(FixedPageValidatorTest, LeavesASheetOfNoKnownOrientationUnturned)
{
    mediaSize.SetSize({297000, 210000});
    limits = {{50000, 50000}, {500000, 500000}};
    orientation.SetFeatureId(1);
    Process();
    EXPECT_TRUE(pipeline->record.Names().empty());
}

TEST_F(FixedPageValidatorTest, LooksForItsTargetAboveThePage)
{
    Process();
    EXPECT_EQ(tickets.levels, "1");
    tickets.text = Ticket(MediaFeature("ISOA3", 297000, 420000));
    Process();
    EXPECT_EQ(tickets.levels, "112");
}

TEST_F(FixedPageValidatorTest, KeepsAnyOtherScalingAndTheSizeOfACustomTarget)
{
    const std::pair<std::int32_t, const char*> cases[] = {
        {ScalingData::kCustom, "psk:CustomMediaSize 260000 180000 psk:Portrait 1 2 30 40 psk:Custom"},
        {6, "psk:CustomMediaSize 260000 180000 psk:Portrait psk:None"},
    };
    for (const auto& [option, expected] : cases)
    {
        Renew();
        tickets.text = Ticket(MediaFeature("CustomMediaSize", 180000, 260000));
        mediaSize.SetSize(kA3);
        scaling.SetOptionId(option);
        scaling.SetScale({1, 2, 30, 40});
        Process();
        EXPECT_EQ(NewTicket(), expected);
    }
}

TEST_F(FixedPageValidatorTest, ReplacesTheTicketBeforeTheMarkupThroughStreamsThatGiveAndTakeLittleAtATime)
{
    pipeline->record.longestTransfer = 7;
    mediaSize.SetSize({420000, 297000});
    const auto page = Process(Ticket(
        MediaFeature("ISOA3Rotated", 420000, 297000) + Feature("PageMediaType", "Plain") +
        Feature("PageOrientation", "Portrait") +
        Feature("PageScaling",
                "CustomSquare",
                R"(<psf:ScoredProperty name="psk:Scale"><psf:ParameterRef name="psk:PageScalingScale"/>)"
                "</psf:ScoredProperty>") +
        R"(<psf:ParameterInit name="psk:PageScalingScale"><psf:Value xsi:type="xsd:integer">50</psf:Value>)"
        "</psf:ParameterInit>"));
    EXPECT_EQ(CallsFrom("GetPrintTicket page"),
              "GetPrintTicket page, GetStream ticket, GetUri ticket, DeleteResource /Metadata/page_PT.xml, "
              "GetNewEmptyPart, Close new ticket, SetPrintTicket page, "
              "GetStream page, GetWriteStream page, Close page");
    ASSERT_TRUE(page->ticket);
    EXPECT_EQ(static_cast<support::TicketPart*>(page->ticket.Get())->name,
              pipeline->consumer->newPartNames.at(0));

    // The parameter of the replaced feature is removed with it.
    EXPECT_EQ(NewTicket(), "psk:Plain psk:ISOA4 297000 210000 psk:Portrait 0 0 70 70 psk:Custom");
    EXPECT_EQ(Written(1),
              R"(<?xml version="1.0" encoding="utf-8"?><FixedPage Height="200.00" Width="100.00")"
              R"( xml:lang="en" xmlns="http://schemas.microsoft.com/xps/2005/06">)"
              R"(<Canvas RenderTransform="0.00,-1.00,1.00,0.00,0.00,200.00"><Path Data="M 0,0 L 9,9"></Path>)"
              "</Canvas></FixedPage>");
}

TEST_F(FixedPageValidatorTest, WritesNothingOfAPageThatIsMalformedAtItsEnd)
{
    mediaSize.SetSize({420000, 297000});
    const auto page = MakeCom<PagePart>(pipeline->record, "page", kPage + std::string("</Canvas>"));
    EXPECT_EQ(support::HresultOf([&] { MakeValidator(pipeline->consumer.Get(), page.Get()).Process(); }),
              E_FAIL);
    EXPECT_EQ(pipeline->record.Count("GetWriteStream page"), 0);
}

TEST_F(FixedPageValidatorTest, GivesAPageWithoutATicketANewOne)
{
    mediaSize.SetSize(kA3);
    const auto page = Process();
    EXPECT_EQ(CallsFrom("GetPrintTicket page"),
              "GetPrintTicket page, GetNewEmptyPart, Close new ticket, SetPrintTicket page");
    EXPECT_EQ(support::Count(Load(Written(0)), "/f:PrintTicket[@version='1']/f:Feature"), 3);
    page->ticket = {};
    page->withoutTicket = S_OK;
    MakeValidator(pipeline->consumer.Get(), page.Get()).Process();
    EXPECT_EQ(pipeline->record.Count("SetPrintTicket page"), 2);
}

TEST_F(FixedPageValidatorTest, NamesTheNewTicketAfterTheOldOneAndACount)
{
    mediaSize.SetSize(kA3);
    int previous = 0;
    for (const auto& row : support::LoadTable("newticketnames.txt"))
    {
        const std::string& oldName = row.at(0);
        const std::string& expected = row.at(1);
        const auto page = MakeCom<PagePart>(pipeline->record, "page", kPage);
        const auto old = MakeCom<support::TicketPart>(pipeline->record, oldName, Ticket({}));
        page->ticket = ComPtr<IPartPrintTicket>(oldName.empty() ? nullptr : old.Get());
        MakeValidator(pipeline->consumer.Get(), page.Get()).Process();

        const std::string& name = pipeline->consumer->newPartNames.back();
        const std::size_t digits = expected.find("__") + 1;
        const std::size_t end = name.find('_', digits);
        const int count = std::stoi(name.substr(digits));
        EXPECT_EQ(name.substr(0, digits) + name.substr(end), expected);
        EXPECT_TRUE(previous == 0 || count == previous + 1) << count;
        previous = count;
    }
}

TEST_F(FixedPageValidatorTest, RefusesNullArgumentsAndMalformedTickets)
{
    const auto message = [](auto&& act) { return MessageOf<std::invalid_argument>(act); };
    const std::string source = "base\\xps\\fixedpagevalidator(...) : ";
    EXPECT_EQ(message([&] { MakeValidator(nullptr, nullptr); }), source + "pXpsDocuConsumer is null.\n");
    EXPECT_EQ(message([&] { MakeValidator(pipeline->consumer.Get(), nullptr); }),
              source + "pPage is null.\n");
    EXPECT_EQ(message([] { FixedPageValidator::LoadTicket(nullptr); }), source + "pReader is null.\n");
    EXPECT_EQ(message([] { FixedPageValidator::SaveTicket(nullptr, nullptr); }),
              source + "pDOMDocument is null.\n");
    const auto ticket = Load(Ticket({}));
    EXPECT_EQ(message([&] { FixedPageValidator::SaveTicket(ticket.Get(), nullptr); }),
              source + "pWriter is null.\n");
    EXPECT_EQ(support::HresultOf([] { Load("<a>"); }), E_FAIL);
}
} // namespace
} // namespace base::xps
