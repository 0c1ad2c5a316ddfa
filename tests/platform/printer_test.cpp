// The module's ticket processing over the platform's own print ticket provider and spooler. Needs a printer
// named lp0; tests/scripts/platform_test.sh brings one.
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "base/utility/driverinfo.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/printablemediasizedata.h"
#include "base/xps/printschema/tickets/defaulttickets.h"
#include "base/xps/printschema/tickets/imageableareareader.h"
#include "base/xps/printschema/tickets/printticketprovider.h"
#include "support/pipeline.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using support::CountFeatures;
using support::Document;
using support::Feature;
using support::OptionOf;
using support::Ticket;
using utility::Bstr;
using utility::MakeCom;

constexpr const wchar_t* kPrinter = L"lp0";

class PrinterTest : public testing::Test
{
protected:
    HRESULT Open(const wchar_t* printer)
    {
        const auto ticket = MakeCom<support::MemoryReadStream>(
            Ticket(Feature("PageMediaSize", "ISOA4") + Feature("PageOutputColor", "Monochrome")));
        return provider.Open(ticket.Get(), Bstr(printer).Get(), support::UserToken());
    }

    void TearDown() override
    {
        EXPECT_EQ(provider.Close(), S_OK);
        EXPECT_FALSE(support::IsThreadImpersonating());
        EXPECT_EQ(support::Pipeline::CountObjects(), 0);
    }

    support::PipelineRecord record;
    PrintTicketProvider provider;
};

TEST_F(PrinterTest, IsServedByThePlatformsOwnLibrary)
{
    wchar_t path[MAX_PATH] = L"";
    wchar_t system[MAX_PATH] = L"";
    GetModuleFileNameW(GetModuleHandleW(L"prntvpt.dll"), path, MAX_PATH);
    GetSystemDirectoryW(system, MAX_PATH);
    EXPECT_EQ(_wcsicmp(path, (std::wstring(system) + L"\\prntvpt.dll").c_str()), 0);
}

TEST_F(PrinterTest, MergesATicketForThePageAndKeepsTheDriversLimits)
{
    ASSERT_EQ(Open(kPrinter), S_OK);
    const Document defaultTicket = xml::XmlUtility::LoadDocumentFromString(DefaultPrintTicketOf(7));
    const auto sequence = MakeCom<support::SequencePart>(record, "sequence");
    const auto document =
        MakeCom<support::DocumentPart>(record, "document", Ticket(Feature("DocumentCollate", "Collated")));
    const auto page =
        MakeCom<support::PagePart>(record, "page", "", Ticket(Feature("PageOrientation", "Landscape")));
    ASSERT_EQ(provider.ApplyJobTicket(sequence.Get(), defaultTicket.Get()), S_OK);
    ASSERT_EQ(provider.ApplyDocumentTicket(document.Get(), defaultTicket.Get()), S_OK);
    ASSERT_EQ(provider.ApplyPageTicket(page.Get(), defaultTicket.Get()), S_OK);

    Document ticket;
    ASSERT_EQ(provider.GetLevelTicket(kPTDocumentScope, ticket.Receive()), S_OK);
    EXPECT_EQ(OptionOf(ticket, "psk:DocumentCollate"), "psk:Collated");
    ticket = {};
    ASSERT_EQ(provider.GetLevelTicket(kPTPageScope, ticket.Receive()), S_OK);
    EXPECT_EQ(OptionOf(ticket, "psk:PageMediaSize"), "psk:ISOA4");
    EXPECT_EQ(OptionOf(ticket, "psk:PageOrientation"), "psk:Landscape");
    EXPECT_EQ(OptionOf(ticket, "psk:PageOutputColor"), "psk:Monochrome");
    EXPECT_EQ(CountFeatures(ticket,
                            "http://schemas.quellmark.example/printing/2005/08/printticket",
                            "PagePrintableMediaSize"),
              1);
    PrintableMediaSizeData printable;
    printable.Read(PrintSchemaDocumentHandler::ForPrintTicket(ticket));
    EXPECT_EQ(printable.GetLimits(), (MediaSizeLimits{{76200, 127000}, {215900, 355600}}));
}

// Wine 8 knows no imageable area.
TEST_F(PrinterTest, GivesAnAreaWithinTheSheetIfAny)
{
    ASSERT_EQ(Open(kPrinter), S_OK);
    const MediaSizeEntry& letter = MediaSizeTable::Shared().Lookup(MediaSizeTable::kNorthAmericaLetter);
    const std::optional<ImageableArea> read =
        ImageableAreaReader(provider).Read(letter, PageOrientationData());
    if (!read)
    {
        return;
    }
    const ImageableArea area = *read;
    EXPECT_GE(area.leftMicrometres, 0);
    EXPECT_GE(area.topMicrometres, 0);
    EXPECT_GT(area.widthMicrometres, 0);
    EXPECT_LE(area.leftMicrometres + area.widthMicrometres, letter.size.widthMicrometres);
    EXPECT_GT(area.heightMicrometres, 0);
    EXPECT_LE(area.topMicrometres + area.heightMicrometres, letter.size.heightMicrometres);
}

TEST_F(PrinterTest, HasToBeThere)
{
    EXPECT_TRUE(FAILED(Open(L"no such printer")));
    EXPECT_THROW(const utility::DriverInfo driver(nullptr), std::runtime_error);
}

TEST(DriverInfo, IsWhatTheSpoolerKnows)
{
    HANDLE opened = nullptr;
    ASSERT_TRUE(OpenPrinterW(Bstr(kPrinter).Get(), &opened, nullptr));
    const std::unique_ptr<void, decltype(&ClosePrinter)> printer(opened, ClosePrinter);
    const utility::DriverInfo driver(printer.get());
    EXPECT_EQ(driver.GetInfo().cVersion, 3U);
    EXPECT_NE(std::wstring(driver.GetInfo().pName), L"");
    EXPECT_NE(std::wstring(driver.GetInfo().pDriverPath).find(L"\\drivers\\"), std::wstring::npos);
}
} // namespace
} // namespace base::xps::printschema
