#include "host/xps/xpsdocument.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "tests/host/testpackages.h"

namespace host::xps
{
namespace
{
/// The walk through a package, one part a line with its ticket.
std::string Walk(const std::string& name)
{
    const opc::Package package(TestPackage(name));
    XpsDocument document(package);
    std::string text;
    while (const auto part = document.Next())
    {
        text += std::string(static_cast<std::size_t>(part->kind), ' ') + part->name.Text();
        text += part->printTicket.has_value() ? " " + part->printTicket->Text() : "";
        text += "\n";
    }
    return text;
}

TEST(XpsDocument, IsTheSameWalkHoweverThePackageIsStored)
{
    for (const char* name : {"tickets",
                             "openxps",
                             "pieces",
                             "pieces-reversed",
                             "utf16",
                             "zip64",
                             "descriptors",
                             "zip64-descriptors",
                             "alternate-content"})
    {
        EXPECT_EQ(Walk(name),
                  "/FixedDocumentSequence.fdseq /Metadata/job.xml\n"
                  " /Documents/1/FixedDocument.fdoc\n"
                  "  /Documents/1/Pages/1.fpage /Documents/1/Pages/Metadata/page.xml\n"
                  "  /Documents/1/Pages/2.fpage\n"
                  " /Documents/2/FixedDocument.fdoc /Documents/2/Metadata/document.xml\n"
                  "  /Documents/2/Pages/1.fpage\n")
            << name;
    }
}

TEST(XpsDocument, FindsPartsUnderNamesInAnyCaseAndSpelling)
{
    EXPECT_EQ(Walk("odd-names"),
              "/FixedDocumentSequence.fdseq /Metadata/job.xml\n"
              " /Documents/1/FixedDocument.fdoc\n"
              "  /Documents/1/PAGES/a%20-%20b.fpage /documents/1/Pages/metadata/Page.XML\n"
              "  /Documents/1/Pages/2.fpage\n"
              " /Documents/2/FixedDocument.fdoc /Documents/2/Metadata/document.xml\n"
              "  /Documents/2/PAGES/a%20-%20b.fpage\n");
    const opc::Package package(TestPackage("odd-names"));
    EXPECT_EQ(package.ContentTypeOf(Part("metadata/job.XML")), "application/vnd.ms-printing.printticket+xml");
    EXPECT_EQ(package.ContentTypeOf(Part("x.FPage")), "application/vnd.ms-package.xps-fixedpage+xml");
    EXPECT_EQ(package.ContentTypeOf(Part("x.xml")), "");
}

TEST(XpsDocument, ReadsPiecesInTheOrderOfTheirNumbers)
{
    const opc::Package whole(TestPackage("tickets"));
    for (const char* name : {"pieces", "pieces-reversed"})
    {
        const opc::Package package(TestPackage(name));
        EXPECT_EQ(package.Parts().at(Part("Documents/1/Pages/1.fpage")).items.size(), 12U);
        for (const auto& [part, stored] : whole.Parts())
        {
            EXPECT_EQ(package.Read(part), whole.Read(part)) << name << part.Text();
        }
    }
}

std::string FaultOfPackage(const std::string& name)
{
    return FaultOf([&] {
        const opc::Package package(TestPackage(name));
        XpsDocument document(package);
        while (const auto part = document.Next())
        {
            package.Read(part->name);
        }
    });
}

TEST(XpsDocument, NamesThePartAndTheReasonOfEachFault)
{
    EXPECT_EQ(FaultOfPackage("is-not-there"), "there is no such file");
    // The table says of each broken package how the message begins.
    const auto table = nlohmann::json::parse(ReadData("packages/packages.json"));
    for (const auto& package : table)
    {
        const std::string expected = package.value("fault", "");
        const std::string name = package["name"];
        EXPECT_EQ(expected.empty() ? "" : FaultOfPackage(name).substr(0, expected.size()), expected) << name;
    }
}
} // namespace
} // namespace host::xps
