#include "host/xps/xpsdocument.h"

#include <gtest/gtest.h>

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
        const char* const indents[] = {"", " ", "  "};
        text += indents[static_cast<int>(part->kind)] + part->name.Text();
        text += part->printTicket.has_value() ? " " + part->printTicket->Text() : "";
        text += "\n";
    }
    return text;
}

constexpr const char* kTicketsWalk = "/FixedDocumentSequence.fdseq /Metadata/job.xml\n"
                                     " /Documents/1/FixedDocument.fdoc\n"
                                     "  /Documents/1/Pages/1.fpage /Documents/1/Pages/Metadata/page.xml\n"
                                     "  /Documents/1/Pages/2.fpage\n"
                                     " /Documents/2/FixedDocument.fdoc /Documents/2/Metadata/document.xml\n"
                                     "  /Documents/2/Pages/1.fpage\n";

class XpsDocumentShape : public testing::TestWithParam<const char*>
{
};

TEST_P(XpsDocumentShape, IsTheSameWalkHoweverThePackageIsStored)
{
    EXPECT_EQ(Walk(GetParam()), kTicketsWalk);
}

INSTANTIATE_TEST_SUITE_P(Packages,
                         XpsDocumentShape,
                         testing::Values("tickets",
                                         "openxps",
                                         "pieces",
                                         "pieces-reversed",
                                         "utf16",
                                         "zip64",
                                         "descriptors",
                                         "zip64-descriptors",
                                         "alternate-content"));

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

struct BrokenPackage
{
    const char* name;
    const char* fault;
};

class XpsDocumentFault : public testing::TestWithParam<BrokenPackage>
{
};

TEST_P(XpsDocumentFault, NamesThePartAndTheReason)
{
    const std::string fault = FaultOf([] {
        const opc::Package package(TestPackage(GetParam().name));
        XpsDocument document(package);
        while (const auto part = document.Next())
        {
            package.Read(part->name);
        }
    });
    EXPECT_EQ(fault.substr(0, std::string(GetParam().fault).size()), GetParam().fault) << fault;
}

INSTANTIATE_TEST_SUITE_P(
    Packages,
    XpsDocumentFault,
    testing::Values(
        BrokenPackage{"is-not-there", "there is no such file"},
        BrokenPackage{"not-a-zip", "is not a ZIP archive"},
        BrokenPackage{"empty", "is not a ZIP archive"},
        BrokenPackage{"truncated", "is not a ZIP archive"},
        BrokenPackage{"no-content-types", "/[Content_Types].xml: is missing from the package"},
        BrokenPackage{"bad-content-types", "/[Content_Types].xml: is not well-formed: line 1: "},
        BrokenPackage{"no-root-relationships", "/_rels/.rels: names no fixed document sequence"},
        BrokenPackage{"external-sequence", "/_rels/.rels: names no fixed document sequence"},
        BrokenPackage{
            "no-sequence",
            "/FixedDocumentSequence.fdseq: is missing from the package, and /_rels/.rels refers to it"},
        BrokenPackage{"no-document",
                      "/Documents/1/FixedDocument.fdoc: is missing from the package, and "
                      "/FixedDocumentSequence.fdseq refers to it"},
        BrokenPackage{"no-page",
                      "/Documents/1/Pages/1.fpage: is missing from the package, and "
                      "/Documents/1/FixedDocument.fdoc refers to it"},
        BrokenPackage{"no-ticket",
                      "/Documents/2/Metadata/document.xml: is missing from the package, and "
                      "/Documents/2/FixedDocument.fdoc refers to it"},
        BrokenPackage{"bad-document", "/Documents/1/FixedDocument.fdoc: is not well-formed: line 2: "},
        BrokenPackage{"blank-document", "/Documents/1/FixedDocument.fdoc: is not well-formed: "},
        BrokenPackage{"wrong-root", "/Documents/1/FixedDocument.fdoc: is not a FixedDocument"},
        BrokenPackage{"foreign-root", "/Documents/1/FixedDocument.fdoc: is not a FixedDocument"},
        BrokenPackage{"no-source", "/Documents/1/FixedDocument.fdoc: has a PageContent without Source"},
        BrokenPackage{"document-type", "/FixedDocumentSequence.fdseq: declares a document type"},
        BrokenPackage{"latin-1", "/Documents/1/FixedDocument.fdoc: is encoded in iso-8859-1, neither"},
        BrokenPackage{"bad-relationships", "/Documents/1/Pages/_rels/1.fpage.rels: is not well-formed: "},
        BrokenPackage{"cycle", "/fixeddocumentsequence.FDSEQ: stands in the document twice"},
        BrokenPackage{"page-twice", "/Documents/1/pages/1.FPAGE: stands in the document twice"},
        BrokenPackage{
            "climbing-reference",
            "/Documents/1/FixedDocument.fdoc: refers to \"../../../Pages/1.fpage\", which leads out of "
            "the package"},
        BrokenPackage{
            "foreign-reference",
            "/Documents/1/FixedDocument.fdoc: refers to \"file:///c:/1.fpage\", which lies outside the "
            "package"},
        BrokenPackage{"climbing-item", "Documents/..\\..\\..\\evil.dll: leads out of the package"},
        BrokenPackage{"part-twice", "documents/1/pages/1.FPAGE: is in the package twice"},
        BrokenPackage{"part-and-piece", "Documents/1/Pages/1.fpage: is in the package twice"},
        BrokenPackage{"no-piece", "Documents/1/Pages/1.fpage: lacks one of its pieces"},
        BrokenPackage{"no-last-piece", "Documents/1/Pages/1.fpage: lacks one of its pieces"},
        BrokenPackage{"early-last-piece", "Documents/1/Pages/1.fpage: has two last pieces"},
        BrokenPackage{"method-6",
                      "Documents/1/Pages/1.fpage: is compressed with method 6, which is not supported"},
        BrokenPackage{"encrypted", "Documents/1/Pages/1.fpage: is encrypted"},
        BrokenPackage{"wrong-crc", "Documents/1/Pages/1.fpage: cannot be decompressed: CRC error"},
        BrokenPackage{"claims-less", "Documents/1/Pages/1.fpage: is longer than its directory entry says"},
        BrokenPackage{"claims-more", "Documents/1/Pages/1.fpage: is shorter than its directory entry says"}),
    [](const auto& row) {
        std::string name = row.param.name;
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    });
} // namespace
} // namespace host::xps
