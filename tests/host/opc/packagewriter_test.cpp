#include "host/opc/packagewriter.h"

#include <functional>

#include <gtest/gtest.h>

#include "host/xps/xpsdocument.h"
#include "host/xps/xpsvocabulary.h"
#include "tests/host/testpackages.h"

namespace host::opc
{
namespace
{
using Names = std::vector<std::string>;

/// An item as it lies in the archive.
struct StoredItem
{
    std::string name;
    std::time_t modified;
    /// Size, method, checksum and the compressed bytes.
    std::string content;

    friend bool operator==(const StoredItem&, const StoredItem&) = default;
    friend void PrintTo(const StoredItem& item, std::ostream* out) { *out << item.name; }
};

std::vector<StoredItem> ReadStored(const std::filesystem::path& path)
{
    const ZipArchive archive(path);
    std::vector<StoredItem> stored;
    for (const ZipItem& item : archive.Items())
    {
        std::string bytes(item.storedSize, '\0');
        zip_file_t* const file = zip_fopen_index(archive.Handle(), stored.size(), ZIP_FL_COMPRESSED);
        EXPECT_EQ(zip_fread(file, bytes.data(), bytes.size()), static_cast<zip_int64_t>(bytes.size()));
        zip_fclose(file);
        const std::string facts = std::to_string(item.size) + " " + std::to_string(item.method) + " " +
                                  std::to_string(item.crc) + " ";
        stored.push_back({item.name, item.modified, facts + bytes});
    }
    return stored;
}

std::vector<StoredItem> Without(std::vector<StoredItem> items, const std::string& start)
{
    std::erase_if(items, [&](const StoredItem& item) { return item.name.starts_with(start); });
    return items;
}

class PackageWriterTest : public testing::Test
{
protected:
    /// Applies `change` to a test package and writes the result.
    void Write(const std::string& package, const std::function<void(PackageWriter&)>& change)
    {
        const Package source(TestPackage(package));
        PackageWriter writer(source, target);
        change(writer);
        writer.Commit();
    }

    OutputFolder folder;
    const std::filesystem::path target = folder / "out.xps";
    const PartName page = Part("Documents/1/Pages/1.fpage");
};

TEST_F(PackageWriterTest, TakesUntouchedItemsOverByteForByteInTheirOrder)
{
    for (const char* name : {"sample",
                             "pieces-reversed",
                             "odd-names",
                             "zip64",
                             "descriptors",
                             "zip64-descriptors",
                             "unread-oddities",
                             "wrong-crc"})
    {
        Write(name, [](PackageWriter&) {});
        EXPECT_EQ(ReadStored(target), ReadStored(TestPackage(name))) << name;
        EXPECT_EQ(folder.Files(), Names{"out.xps"});
    }
}

TEST_F(PackageWriterTest, PutsAReplacedPartWhereItsFirstItemStood)
{
    for (const char* name : {"pieces", "pieces-reversed"})
    {
        const std::string markup = std::string(200'000, 'x') + name;
        Write(name, [&](PackageWriter& writer) {
            writer.ReplacePart(Part("documents/1/pages/1.FPAGE"), writer.NewContent(markup));
        });
        const std::vector<StoredItem> before = ReadStored(TestPackage(name));
        const std::vector<StoredItem> after = ReadStored(target);
        const std::string item = page.Text().substr(1);
        const auto isPiece = [&](const StoredItem& each) { return each.name.starts_with(item + "/["); };
        const auto place =
            static_cast<std::size_t>(std::find_if(before.begin(), before.end(), isPiece) - before.begin());
        EXPECT_EQ(after.at(place).name, item);
        EXPECT_EQ(after.at(place).modified, before.at(place).modified);
        EXPECT_EQ(Without(after, item), Without(before, item));
        EXPECT_EQ(Package(target).Read(page), markup);
    }
}

TEST_F(PackageWriterTest, AddsPartsWithTheirTypesAndRelationships)
{
    const PartName document = Part("Documents/1/FixedDocument.fdoc");
    const PartName ticket = Part("Documents/1/Metadata/a&b.XML");
    const PartName other = Part("Documents/1/other.xml");
    const std::string_view type = xps::kVocabularies[0].printTicket;
    Write("plain", [&](PackageWriter& writer) {
        writer.AddPart(ticket, xps::kPrintTicketContentType, writer.NewContent("<t/>"));
        writer.AddPart(other, "text/xml", writer.NewContent("<o/>"));
        writer.AddPart(Part("no-extension"), "text/plain", writer.NewContent(""));
        writer.EditRelationships(page).Add(type, ticket);
        writer.EditRelationships(document).Add(type, other);
    });
    const Package package(target);
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

    // New items follow in the order in which they were added, with a time of the source's.
    const std::vector<StoredItem> before = ReadStored(TestPackage("plain"));
    const std::vector<StoredItem> after = ReadStored(target);
    ASSERT_EQ(after.size(), before.size() + 4);
    const StoredItem* const added = &after[before.size()];
    EXPECT_EQ(added[0].name, "Documents/1/Metadata/a&b.XML");
    EXPECT_EQ(added[0].modified, before[0].modified);
    EXPECT_EQ(added[2].name, "no-extension");
    EXPECT_EQ(added[3].name, "Documents/1/_rels/FixedDocument.fdoc.rels");
}

TEST_F(PackageWriterTest, RemovesPartsWithAllThatSpeaksOfThem)
{
    const PartName job = Part("Metadata/job.xml");
    const PartName gone = Part("gone.txt");
    const PartName second = Part("Documents/1/Pages/2.fpage");
    Write("tickets", [&](PackageWriter& writer) {
        writer.RemovePart(Part("METADATA/job.xml"));
        writer.RemovePart(Part("Documents/1/Pages/Metadata/page.xml"));
        writer.AddPart(gone, "text/plain", writer.NewContent("<a/>"));
        writer.EditRelationships(page).Add("urn:gone", gone);
        writer.RemovePart(gone);
        writer.EditRelationships(second).Add("urn:a", page);
        writer.RemovePart(second);
        writer.AddPart(second, "text/other", writer.NewContent("new"));
    });
    const Package package(target);
    for (const PartName& removed : {job, gone, Part("FixedDocumentSequence.fdseq").RelationshipsPart()})
    {
        EXPECT_FALSE(package.Has(removed)) << removed.Text();
    }
    EXPECT_EQ(package.ContentTypeOf(job), "");
    const Relationships ofPage = package.RelationshipsOf(page);
    ASSERT_EQ(ofPage.All().size(), 1U);
    EXPECT_EQ(ofPage.All()[0].mode, TargetMode::External);
    EXPECT_EQ(ofPage.All()[0].target, "http://example.com/a%20page");
    xps::XpsDocument document(package);
    while (const auto part = document.Next())
    {
        EXPECT_EQ(part->printTicket.has_value(), part->name == Part("Documents/2/FixedDocument.fdoc"));
    }
    EXPECT_EQ(package.Read(second), "new");
    EXPECT_EQ(package.ContentTypeOf(second), "text/other");
    EXPECT_TRUE(package.RelationshipsOf(second).All().empty()) << "those of the part that was removed";
}

TEST_F(PackageWriterTest, RefusesContradictions)
{
    std::filesystem::copy_file(TestPackage("plain"), folder / "in.xps");
    const Package source(folder / "in.xps");
    PackageWriter writer(source, target);
    const PartName none = Part("none.xml");
    EXPECT_EQ(FaultOf([&] { writer.ReplacePart(none, writer.NewContent()); }),
              "/none.xml: is missing from the package");
    EXPECT_EQ(FaultOf([&] { writer.RemovePart(none); }), "/none.xml: is missing from the package");
    EXPECT_EQ(FaultOf([&] { writer.AddPart(page, "text/xml", writer.NewContent()); }),
              "/Documents/1/Pages/1.fpage: is in the package already");
    writer.RemovePart(page);
    EXPECT_EQ(FaultOf([&] { writer.ReplacePart(page, writer.NewContent()); }),
              "/Documents/1/Pages/1.fpage: is missing from the package");
    for (const char* name : {"in.xps", "IN.XPS", ".\\in.xps"})
    {
        EXPECT_EQ(FaultOf([&] { PackageWriter(source, folder / name); }),
                  "the output would replace the input")
            << name;
    }
}

TEST_F(PackageWriterTest, LeavesNothingBehindWithoutACommitOrWhenItFails)
{
    WriteFile(target, "old");
    const Package source(TestPackage("plain"));
    for (const bool isCommitted : {false, true})
    {
        {
            PackageWriter writer(source, target);
            writer.ReplacePart(page, writer.NewContent(std::string(100'000, 'x')));
            ASSERT_EQ(folder.Files().size(), 2U) << "contents are expected in a file of their own";
            // A target that nobody may replace.
            const std::ifstream held(target);
            const std::string fault = isCommitted ? FaultOf([&] { writer.Commit(); }) : "";
            EXPECT_EQ(fault.starts_with("cannot be written: "), isCommitted) << fault;
        }
        EXPECT_EQ(folder.Files(), Names{"out.xps"});
        EXPECT_EQ(ReadFile(target), "old");
    }
    EXPECT_EQ(FaultOf([&] { PackageWriter(source, folder / "no-folder/out.xps"); }), "cannot be created");
}

TEST_F(PackageWriterTest, NamesTheItemThatCannotBeCopied)
{
    EXPECT_EQ(FaultOf([&] { Write("claims-more-stored", [](PackageWriter&) {}); }),
              "Resources/logo.png: cannot be read from the archive");
    EXPECT_EQ(folder.Files(), Names());
}

TEST_F(PackageWriterTest, WritesTheSameBytesForTheSameChangesAndReplacesAnOldFile)
{
    const auto write = [&] {
        Write("tickets", [&](PackageWriter& writer) {
            writer.ReplacePart(page, writer.NewContent("new"));
            writer.AddPart(Part("added"), "text/plain", writer.NewContent("added"));
        });
        return ReadFile(target);
    };
    const std::string first = write();
    EXPECT_FALSE(first.empty());
    EXPECT_TRUE(write() == first);
}
} // namespace
} // namespace host::opc
