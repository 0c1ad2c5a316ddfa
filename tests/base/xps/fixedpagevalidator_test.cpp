#include "base/xps/fixedpagevalidator.h"

#include <cstdlib>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/logging/errors.h"
#include "base/utility/safecoinit.h"
#include "base/utility/variant.h"
#include "base/xml/xmlutility.h"
#include "support/pipelinetest.h"
#include "support/thrown.h"

namespace base::xps
{
namespace
{
using exception::ThrowIfFailed;
using printschema::MediaSize;
using printschema::MediaSizeData;
using printschema::MediaSizeLimits;
using printschema::MediaSizeTable;
using printschema::PageOrientationData;
using printschema::PageScale;
using printschema::PrintSchemaDocumentHandler;
using printschema::ScalingData;
using support::Feature;
using support::MediaFeature;
using support::MessageOf;
using support::PagePart;
using support::Ticket;
using utility::Bstr;
using utility::ComPtr;
using utility::MakeCom;
using Names = std::vector<std::string>;

constexpr const char* kPage = R"(<FixedPage xmlns="http://schemas.microsoft.com/xps/2005/06" xml:lang="en" )"
                              R"(Width="200" Height="100"><Path Data="M 0,0 L 9,9"/></FixedPage>)";
constexpr MediaSize kA3{297000, 420000};
constexpr MediaSize kA4{210000, 297000};
constexpr MediaSizeLimits kUsualLimits{{76200, 127000}, {215900, 355600}};
constexpr MediaSizeLimits kWideLimits{{50000, 50000}, {500000, 500000}};

enum Orientation : std::int32_t
{
    Landscape,
    Portrait,
    ReverseLandscape,
    ReversePortrait
};

ComPtr<IXMLDOMDocument2> Load(const std::string& markup)
{
    return FixedPageValidator::LoadTicket(MakeCom<support::MemoryReadStream>(markup).Get());
}

/// A job with one ticket for all levels, given as text. Its printer tells nothing of itself.
class GivenTickets final : public printschema::PrintTicketProvider
{
public:
    HRESULT GetLevelTicket(EPrintTicketScope level, IXMLDOMDocument2** ticket) override
    {
        levels.push_back(level);
        *ticket = Load(text).Detach();
        return S_OK;
    }
    HRESULT GetCapabilities(IXMLDOMDocument2*, IXMLDOMDocument2**) override { return E_NOTIMPL; }

    std::string text = Ticket(MediaFeature("ISOA4", 210000, 297000));
    /// That were asked for.
    std::vector<EPrintTicketScope> levels;
};

class FixedPageValidatorTest : public support::PipelineTest
{
protected:
    void SetSheet(MediaSize size) { m_mediaSize.SetSize(size); }

    /// Makes a page with this ticket, as far as there is one, agree with the accessors.
    ComPtr<PagePart> Process(const std::string& ticket = {})
    {
        auto page = MakeCom<PagePart>(pipeline->record, "page", kPage, ticket);
        MakeValidator(page.Get()).Process();
        return page;
    }

    FixedPageValidator MakeValidator(IFixedPage* page)
    {
        return MakeValidator(pipeline->consumer.Get(), page);
    }
    FixedPageValidator MakeValidator(IXpsDocumentConsumer* consumer, IFixedPage* page)
    {
        printschema::PrintableMediaSizeData printable;
        printable.SetLimits(m_limits);
        return FixedPageValidator(m_tickets,
                                  consumer,
                                  page,
                                  printschema::InputBinData(),
                                  m_mediaSize,
                                  m_orientation,
                                  m_scaling,
                                  printable,
                                  m_areas);
    }

    /// The text that was written into a new ticket part or a page.
    std::string Written(std::size_t index) const { return pipeline->record.writeStreams.at(index)->bytes; }

    const utility::SafeCoInit m_com;
    GivenTickets m_tickets;
    printschema::ImageableAreaReader m_areas{m_tickets};
    MediaSizeData m_mediaSize;
    PageOrientationData m_orientation;
    ScalingData m_scaling;
    MediaSizeLimits m_limits = kUsualLimits;
};

struct PageCase
{
    const char* name;
    Orientation orientation;
    MediaSize sheet;
    MediaSizeLimits limits;
    bool isTurned;
    // Of the new ticket; a sheet of 0 x 0 when there is none.
    MediaSize newSheet;
    Orientation newOrientation;
    std::int32_t newPercent;
};

void PrintTo(const PageCase& given, std::ostream* output)
{
    *output << given.name;
}

class PageDecision : public FixedPageValidatorTest, public ::testing::WithParamInterface<PageCase>
{
};

TEST_P(PageDecision, DependsOnOrientationSheetAndLimits)
{
    const PageCase& given = GetParam();
    SetSheet(given.sheet);
    m_orientation.SetOptionId(given.orientation);
    m_limits = given.limits;
    const auto page = Process(Ticket({}));

    const bool isChanged = given.newSheet != MediaSize{};
    EXPECT_EQ(pipeline->record.Count("GetWriteStream page"), given.isTurned);
    EXPECT_EQ(pipeline->record.Count("SetPrintTicket page"), isChanged);
    ASSERT_EQ(pipeline->record.writeStreams.size(), std::size_t{isChanged} + given.isTurned);
    // The filter's own accessors are left as they were.
    EXPECT_EQ(m_mediaSize.GetSize(), given.sheet);
    EXPECT_EQ(m_orientation.GetOptionId(), given.orientation);
    if (isChanged)
    {
        const auto handler = PrintSchemaDocumentHandler::ForPrintTicket(Load(Written(0)));
        MediaSizeData sheet;
        sheet.SetSize({1, 1});
        sheet.Read(handler);
        EXPECT_EQ(sheet.GetSize().widthMicrometres, given.newSheet.widthMicrometres);
        EXPECT_EQ(sheet.GetSize().heightMicrometres, given.newSheet.heightMicrometres);
        PageOrientationData orientation;
        orientation.Read(handler);
        EXPECT_EQ(orientation.GetOptionId(), given.newOrientation);
        ScalingData scaling;
        scaling.Read(handler);
        EXPECT_EQ(scaling.GetOptionId(),
                  given.newPercent == 0 ? ScalingData::kFitMediaSizeToMediaSize : ScalingData::kCustom);
        EXPECT_EQ(scaling.GetScale(), (PageScale{0, 0, given.newPercent, given.newPercent}));
    }
}

constexpr MediaSize Rotated(MediaSize size)
{
    return {size.heightMicrometres, size.widthMicrometres};
}

INSTANTIATE_TEST_SUITE_P(
    Pages,
    PageDecision,
    ::testing::Values(
        PageCase{"PortraitUpright", Portrait, kA4, kUsualLimits, false, {}, Portrait, 0},
        PageCase{"PortraitWide", Portrait, Rotated(kA4), kUsualLimits, true, kA4, Portrait, 0},
        PageCase{"LandscapeUpright", Landscape, kA4, kUsualLimits, true, kA4, Portrait, 0},
        PageCase{"LandscapeWide", Landscape, Rotated(kA4), kUsualLimits, false, {}, Portrait, 0},
        PageCase{"ReversePortraitUpright", ReversePortrait, kA4, kUsualLimits, false, {}, Portrait, 0},
        PageCase{"ReversePortraitWide", ReversePortrait, Rotated(kA4), kWideLimits, false, {}, Portrait, 0},
        PageCase{"ReverseLandscapeUpright", ReverseLandscape, kA4, kWideLimits, false, {}, Portrait, 0},
        PageCase{
            "ReverseLandscapeWide", ReverseLandscape, Rotated(kA4), kUsualLimits, false, {}, Portrait, 0},
        PageCase{"PortraitSquare", Portrait, {200000, 200000}, kUsualLimits, false, {}, Portrait, 0},
        PageCase{"LandscapeSquare", Landscape, {200000, 200000}, kUsualLimits, false, {}, Portrait, 0},
        // 210 / 297, the smaller of the two ratios.
        PageCase{"TooLarge", Portrait, kA3, kUsualLimits, false, kA4, Portrait, 70},
        // 297 / 74.
        PageCase{"TooSmall", Portrait, {52000, 74000}, kUsualLimits, false, kA4, Portrait, 401},
        PageCase{"TooLargeAndTurned", Portrait, Rotated(kA3), kUsualLimits, true, kA4, Portrait, 70},
        PageCase{"TooLargeAndTurnedFromLandscape", Landscape, kA3, kUsualLimits, true, kA4, Portrait, 70},
        // Laid out as 297 x 210 mm, which is too wide, and 210 / 297 of it fits.
        PageCase{"TooWideAsLaidOut", ReverseLandscape, kA4, kUsualLimits, false, kA4, ReversePortrait, 70}),
    [](const auto& given) { return std::string(given.param.name); });

TEST_F(FixedPageValidatorTest, TakesASizeThatEqualsALimit)
{
    const auto isChanged = [&](const MediaSizeLimits& limits) {
        Renew();
        m_limits = limits;
        Process(Ticket({}));
        return !pipeline->record.writeStreams.empty();
    };
    EXPECT_FALSE(isChanged({kA4, kA4}));
    EXPECT_TRUE(isChanged({kA4, {kA4.widthMicrometres, kA4.heightMicrometres - 1}}));
    EXPECT_TRUE(isChanged({kA4, {kA4.widthMicrometres - 1, kA4.heightMicrometres}}));
    EXPECT_TRUE(isChanged({{kA4.widthMicrometres, kA4.heightMicrometres + 1}, {500000, 500000}}));
    EXPECT_TRUE(isChanged({{kA4.widthMicrometres + 1, kA4.heightMicrometres}, {500000, 500000}}));
}

TEST_F(FixedPageValidatorTest, LooksForItsTargetAboveThePage)
{
    const auto page = MakeCom<PagePart>(pipeline->record, "page", kPage);
    MakeValidator(page.Get());
    EXPECT_EQ(m_tickets.levels, std::vector<EPrintTicketScope>{kPTDocumentScope});
    m_tickets.levels.clear();
    m_tickets.text = Ticket(MediaFeature("ISOA3", 297000, 420000));
    MakeValidator(page.Get());
    EXPECT_EQ(m_tickets.levels, (std::vector<EPrintTicketScope>{kPTDocumentScope, kPTJobScope}));
}

TEST_F(FixedPageValidatorTest, LeavesASheetOfNoKnownOrientationUnturned)
{
    SetSheet(Rotated(kA4));
    m_limits = kWideLimits;
    m_orientation.SetFeatureId(1);
    Process();
    EXPECT_TRUE(pipeline->record.Names().empty());
}

TEST_F(FixedPageValidatorTest, KeepsAnyOtherScaling)
{
    SetSheet(kA3);
    for (const std::int32_t option : {ScalingData::kCustom, std::int32_t{6}})
    {
        Renew();
        m_scaling.SetOptionId(option);
        m_scaling.SetScale({1, 2, 30, 40});
        Process();
        const auto handler = PrintSchemaDocumentHandler::ForPrintTicket(Load(Written(0)));
        ScalingData scaling;
        scaling.Read(handler);
        EXPECT_EQ(scaling.GetOptionId(), option);
        EXPECT_EQ(scaling.GetScale(), option == 0 ? (PageScale{1, 2, 30, 40}) : PageScale{});
        MediaSizeData sheet;
        sheet.SetSize({1, 1});
        sheet.Read(handler);
        EXPECT_EQ(sheet.GetSize(), kA4);
    }
}

TEST_F(FixedPageValidatorTest, KeepsTheSizeOfACustomTarget)
{
    m_tickets.text = Ticket(MediaFeature("CustomMediaSize", 180000, 260000));
    SetSheet(kA3);
    Process();
    MediaSizeData sheet;
    sheet.Read(PrintSchemaDocumentHandler::ForPrintTicket(Load(Written(0))));
    EXPECT_EQ(sheet.GetOptionId(), MediaSizeTable::kCustomMediaSize);
    EXPECT_EQ(sheet.GetSize(), (MediaSize{180000, 260000}));
}

/// How many nodes of a ticket an XPath selects.
long CountNodes(const std::string& ticket, const wchar_t* path)
{
    const auto document = Load(ticket);
    ThrowIfFailed(document->setProperty(
        Bstr(L"SelectionNamespaces").Get(),
        utility::Variant(
            Bstr(L"xmlns:f='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'"))
            .Get()));
    ComPtr<IXMLDOMNodeList> nodes;
    ThrowIfFailed(document->selectNodes(Bstr(path).Get(), nodes.Receive()));
    long count = 0;
    ThrowIfFailed(nodes->get_length(&count));
    return count;
}

TEST_F(FixedPageValidatorTest, ReplacesTheTicketBeforeTheMarkup)
{
    SetSheet(Rotated(kA3));
    const auto page = Process(Ticket(
        MediaFeature("ISOA3Rotated", 420000, 297000) + Feature("PageMediaType", "Plain") +
        Feature("PageOrientation", "Portrait") +
        Feature("PageScaling",
                "CustomSquare",
                R"(<psf:ScoredProperty name="psk:Scale"><psf:ParameterRef name="psk:PageScalingScale"/>)"
                "</psf:ScoredProperty>") +
        R"(<psf:ParameterInit name="psk:PageScalingScale"><psf:Value xsi:type="xsd:integer">50</psf:Value>)"
        "</psf:ParameterInit>"));
    EXPECT_EQ(pipeline->record.Names(),
              (Names{"GetPrintTicket page",
                     "GetStream ticket",
                     "GetUri ticket",
                     "DeleteResource /Metadata/page_PT.xml",
                     "GetNewEmptyPart",
                     "Close new ticket",
                     "SetPrintTicket page",
                     "GetStream page",
                     "GetWriteStream page",
                     "Close page"}));
    ASSERT_TRUE(page->ticket);
    EXPECT_EQ(static_cast<support::TicketPart*>(page->ticket.Get())->name,
              pipeline->consumer->newPartNames.at(0));

    const std::string ticket = Written(0);
    EXPECT_EQ(CountNodes(ticket, L"/f:PrintTicket/f:Feature"), 4);
    EXPECT_EQ(CountNodes(ticket, L"//f:Feature[@name='psk:PageMediaType']/f:Option[@name='psk:Plain']"), 1);
    EXPECT_EQ(CountNodes(ticket, L"//f:Feature[@name='psk:PageMediaSize']/f:Option[@name='psk:ISOA4']"), 1);
    EXPECT_EQ(CountNodes(ticket, L"//f:Feature[@name='psk:PageScaling']/f:Option[@name='psk:Custom']"), 1);
    EXPECT_EQ(CountNodes(ticket, L"/f:PrintTicket/f:ParameterInit"), 4);
    EXPECT_EQ(CountNodes(ticket, L"//f:ParameterInit[@name='psk:PageScalingScale']"), 0);
    EXPECT_EQ(Written(1),
              R"(<?xml version="1.0" encoding="utf-8"?><FixedPage Height="200.00" Width="100.00")"
              R"( xml:lang="en" xmlns="http://schemas.microsoft.com/xps/2005/06">)"
              R"(<Canvas RenderTransform="0.00,-1.00,1.00,0.00,0.00,200.00"><Path Data="M 0,0 L 9,9"></Path>)"
              "</Canvas></FixedPage>");
}

TEST_F(FixedPageValidatorTest, GivesAPageWithoutATicketANewOne)
{
    SetSheet(kA3);
    const auto page = Process();
    EXPECT_EQ(pipeline->record.Names(),
              (Names{"GetPrintTicket page", "GetNewEmptyPart", "Close new ticket", "SetPrintTicket page"}));
    EXPECT_EQ(CountNodes(Written(0), L"/f:PrintTicket[@version='1']/f:Feature"), 3);
}

TEST_F(FixedPageValidatorTest, NamesTheNewTicketAfterTheOldOneAndACount)
{
    // The new names stand here without their count.
    const std::pair<const char*, const char*> cases[] = {
        {"/Documents/1/Metadata/Page1_PT.xml", "/Documents/1/Metadata\\pagevalidator__Page1_PT.xml"},
        {"\\Metadata\\a.xml", "\\Metadata\\pagevalidator__a.xml"},
        {"/Metadata\\a.xml", "/Metadata\\pagevalidator__a.xml"},
        {"\\Metadata/a.xml", "\\Metadata\\pagevalidator__a.xml"},
        {"/a.xml", "\\pagevalidator__a.xml"},
        {"a.xml", "a.xml\\pagevalidator__a.xml"},
        {"/Metadata/", "/Metadata\\pagevalidator__"},
        {nullptr, ".xml\\pagevalidator__.xml"},
    };
    SetSheet(kA3);
    int previous = -1;
    for (const auto& [oldName, expected] : cases)
    {
        const auto page = MakeCom<PagePart>(pipeline->record, "page", kPage);
        if (oldName != nullptr)
        {
            page->ticket = ComPtr<IPartPrintTicket>(
                MakeCom<support::TicketPart>(pipeline->record, oldName, Ticket({})).Get());
        }
        MakeValidator(page.Get()).Process();

        std::string name = pipeline->consumer->newPartNames.back();
        const std::size_t digits = name.find("pagevalidator_") + std::string("pagevalidator_").size();
        const int count = std::atoi(name.c_str() + digits);
        name.erase(digits, name.find('_', digits) - digits);
        EXPECT_EQ(name, expected);
        EXPECT_TRUE(previous == -1 || count == previous + 1) << count;
        previous = count;
    }
}

TEST_F(FixedPageValidatorTest, RefusesNullArguments)
{
    const auto page = MakeCom<PagePart>(pipeline->record, "page", kPage);
    const std::pair<std::string, const char*> messages[] = {
        {MessageOf<std::invalid_argument>([&] { MakeValidator(nullptr, nullptr); }),
         "pXpsDocuConsumer is null."},
        {MessageOf<std::invalid_argument>([&] { MakeValidator(nullptr); }), "pPage is null."},
        {MessageOf<std::invalid_argument>([] { FixedPageValidator::LoadTicket(nullptr); }),
         "pReader is null."},
        {MessageOf<std::invalid_argument>([] { FixedPageValidator::SaveTicket(nullptr, nullptr); }),
         "pDOMDocument is null."},
        {MessageOf<std::invalid_argument>(
             [] { FixedPageValidator::SaveTicket(Load(Ticket({})).Get(), nullptr); }),
         "pWriter is null."},
    };
    for (const auto& [message, text] : messages)
    {
        EXPECT_TRUE(message.starts_with("base\\xps\\fixedpagevalidator(")) << message;
        EXPECT_NE(message.find(text), std::string::npos) << message;
    }
}

TEST_F(FixedPageValidatorTest, LoadsWellFormedTicketsOnly)
{
    for (const char* markup : {"", "<a>", "no ticket", "<!DOCTYPE a [<!ENTITY b 'c'>]><a>&b;"})
    {
        EXPECT_EQ(support::ResultOf([&] { Load(markup); }), E_FAIL) << markup;
    }
}
} // namespace
} // namespace base::xps
