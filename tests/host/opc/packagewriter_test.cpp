#include "host/opc/packagewriter.h"

#include <functional>

#include <gtest/gtest.h>

#include "host/xps/xpsvocabulary.h"
#include "tests/host/testpackages.h"

namespace host::opc
{
namespace
{
class PackageWriterTest : public testing::Test
{
protected:
    /// Applies `change` to a test package and opens the result.
    Package Write(const std::string& package, const std::function<void(PackageWriter&)>& change)
    {
        const Package source(TestPackage(package));
        PackageWriter writer(source, folder / "out.xps");
        change(writer);
        writer.Commit();
        return Package(folder / "out.xps");
    }

    OutputFolder folder;
    const PartName page = Part("Documents/1/Pages/1.fpage");
};

TEST_F(PackageWriterTest, AddsPartsWithTheirTypesAndRelationships)
{
    const PartName document = Part("Documents/1/FixedDocument.fdoc");
    const PartName ticket = Part("Documents/1/Metadata/a&b.XML");
    const PartName other = Part("Documents/1/other.xml");
    const std::string_view type = xps::kVocabularies[0].printTicket;
    const Package package = Write("plain", [&](PackageWriter& writer) {
        writer.AddPart(ticket, xps::kPrintTicketContentType, writer.NewContent("<t/>"));
        writer.AddPart(other, "text/xml", writer.NewContent("<o/>"));
        writer.AddPart(Part("no-extension"), "text/plain", writer.NewContent(""));
        writer.EditRelationships(page).Add(type, ticket);
        writer.EditRelationships(document).Add(type, other);
    });
    EXPECT_EQ(package.Read(ticket), "<t/>");
    const std::pair<PartName, std::string_view> types[] = {
        {ticket, xps::kPrintTicketContentType},
        {Part("any.xml"), xps::kPrintTicketContentType},
        {other, "text/xml"},
        {Part("no-extension"), "text/plain"},
        {Part("a.png"), "image/png"},
        {document.RelationshipsPart(), "application/vnd.openxmlformats-package.relationships+xml"}};
    for (const auto& [part, contentType] : types)
    {
        EXPECT_EQ(package.ContentTypeOf(part), contentType) << part.Text();
    }
    const Relationships ofPage = package.RelationshipsOf(page);
    EXPECT_EQ(ofPage.FindTarget(type), ticket);
    EXPECT_EQ(ofPage.FindTarget("http://schemas.microsoft.com/xps/2005/06/required-resource"),
              Part("Resources/logo.png"));
    EXPECT_NE(ofPage.All()[0].id, ofPage.All()[1].id);
    EXPECT_EQ(package.RelationshipsOf(document).FindTarget(type), other);
    EXPECT_EQ(ZipArchive(package.Path()).Items().back().name, "Documents/1/_rels/FixedDocument.fdoc.rels");
}

TEST_F(PackageWriterTest, RemovesPartsWithAllThatSpeaksOfThem)
{
    const PartName job = Part("Metadata/job.xml");
    const PartName gone = Part("gone.txt");
    const PartName second = Part("Documents/1/Pages/2.fpage");
    const Package package = Write("tickets", [&](PackageWriter& writer) {
        writer.RemovePart(Part("METADATA/job.xml"));
        writer.RemovePart(Part("Documents/1/Pages/Metadata/page.xml"));
        writer.AddPart(gone, "text/plain", writer.NewContent("<a/>"));
        writer.EditRelationships(page).Add("urn:gone", gone);
        writer.RemovePart(gone);
        writer.EditRelationships(second).Add("urn:a", page);
        writer.RemovePart(second);
        EXPECT_EQ(FaultOf([&] { writer.ReplacePart(second, writer.NewContent()); }),
                  "/Documents/1/Pages/2.fpage: is missing from the package");
        EXPECT_EQ(FaultOf([&] { writer.RemovePart(gone); }), "/gone.txt: is missing from the package");
        writer.AddPart(second, "text/other", writer.NewContent("new"));
        EXPECT_EQ(FaultOf([&] { writer.AddPart(second, "text/xml", writer.NewContent()); }),
                  "/Documents/1/Pages/2.fpage: is in the package already");
    });
    for (const PartName& removed : {job, gone, Part("FixedDocumentSequence.fdseq").RelationshipsPart()})
    {
        EXPECT_FALSE(package.Has(removed)) << removed.Text();
    }
    EXPECT_EQ(package.ContentTypeOf(job), "");
    const Relationships ofPage = package.RelationshipsOf(page);
    ASSERT_EQ(ofPage.All().size(), 1U);
    EXPECT_EQ(ofPage.All()[0].mode, TargetMode::External);
    EXPECT_EQ(ofPage.All()[0].target, "http://example.com/a%20page");
    EXPECT_EQ(package.Read(second), "new");
    EXPECT_EQ(package.ContentTypeOf(second), "text/other");
    EXPECT_TRUE(package.RelationshipsOf(second).All().empty()) << "those of the part that was removed";
}
} // namespace
} // namespace host::opc
