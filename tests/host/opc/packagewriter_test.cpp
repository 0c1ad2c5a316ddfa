#include "host/opc/packagewriter.h"

#include <ostream>

#include <gtest/gtest.h>

#include "host/xps/xpsdocument.h"
#include "host/xps/xpsvocabulary.h"
#include "tests/host/testpackages.h"

namespace host::opc
{
namespace
{
/// An item as it lies in the archive.
struct StoredItem
{
    std::string name;
    std::uint64_t size;
    std::uint32_t crc;
    std::uint16_t method;
    std::time_t modified;
    std::string storedBytes;

    friend bool operator==(const StoredItem&, const StoredItem&) = default;
    friend std::ostream& operator<<(std::ostream& out, const StoredItem& item)
    {
        return out << item.name << " method " << item.method << " size " << item.size << " stored "
                   << item.storedBytes.size() << " crc " << item.crc << " time " << item.modified;
    }
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
        stored.push_back({item.name, item.size, item.crc, item.method, item.modified, bytes});
    }
    return stored;
}

std::vector<StoredItem> Without(std::vector<StoredItem> items, const std::vector<std::string>& names)
{
    std::erase_if(items, [&](const StoredItem& item) {
        return std::find(names.begin(), names.end(), item.name) != names.end();
    });
    return items;
}

/// Applies `change` to a test package and writes the result.
template <typename Action>
std::filesystem::path Write(const OutputFolder& folder, const std::string& package, Action&& change)
{
    const std::filesystem::path target = folder / "out.xps";
    const Package source(TestPackage(package));
    PackageWriter writer(source, target);
    change(writer);
    writer.Commit();
    return target;
}

class PackageWriterCopy : public testing::TestWithParam<const char*>
{
};

TEST_P(PackageWriterCopy, TakesUntouchedItemsOverByteForByteInTheirOrder)
{
    const OutputFolder folder;
    const auto target = Write(folder, GetParam(), [](PackageWriter&) {});
    EXPECT_EQ(ReadStored(target), ReadStored(TestPackage(GetParam())));
    EXPECT_EQ(folder.Files(), std::vector<std::string>{"out.xps"});
}

INSTANTIATE_TEST_SUITE_P(Packages,
                         PackageWriterCopy,
                         testing::Values("sample",
                                         "pieces-reversed",
                                         "odd-names",
                                         "zip64",
                                         "descriptors",
                                         "zip64-descriptors",
                                         "unread-oddities",
                                         "wrong-crc"));

TEST(PackageWriter, PutsAReplacedPartWhereItsFirstItemStood)
{
    for (const char* name : {"pieces", "pieces-reversed"})
    {
        const OutputFolder folder;
        const std::string markup = std::string(200'000, 'x') + name;
        const auto target = Write(folder, name, [&](PackageWriter& writer) {
            PartContent content = writer.NewContent();
            content.Append(markup);
            writer.ReplacePart(Part("documents/1/pages/1.FPAGE"), std::move(content));
        });
        std::vector<StoredItem> expected = ReadStored(TestPackage(name));
        const std::string page = "Documents/1/Pages/1.fpage";
        const auto isPiece = [&](const StoredItem& item) { return item.name.starts_with(page + "/["); };
        const auto first = std::find_if(expected.begin(), expected.end(), isPiece);
        const std::ptrdiff_t place = first - expected.begin();
        expected.erase(std::remove_if(first + 1, expected.end(), isPiece), expected.end());

        std::vector<StoredItem> written = ReadStored(target);
        ASSERT_EQ(written.size(), expected.size());
        const StoredItem& replaced = written[static_cast<std::size_t>(place)];
        EXPECT_EQ(replaced.name, page);
        EXPECT_EQ(replaced.modified, expected[static_cast<std::size_t>(place)].modified);
        written.erase(written.begin() + place);
        expected.erase(expected.begin() + place);
        EXPECT_EQ(written, expected);
        EXPECT_EQ(Package(target).Read(Part(page)), markup);
    }
}

TEST(PackageWriter, AddsPartsWithTheirTypesAndRelationships)
{
    const OutputFolder folder;
    const PartName page = Part("Documents/1/Pages/1.fpage");
    const PartName document = Part("Documents/1/FixedDocument.fdoc");
    const PartName ticket = Part("Documents/1/Metadata/a&b.XML");
    const PartName other = Part("Documents/1/other.xml");
    const std::string_view type = xps::kVocabularies[0].printTicket;
    const auto target = Write(folder, "plain", [&](PackageWriter& writer) {
        writer.AddPart(ticket, xps::kPrintTicketContentType, writer.NewContent("<t/>"));
        writer.AddPart(other, "text/xml", writer.NewContent("<o/>"));
        writer.AddPart(Part("no-extension"), "text/plain", writer.NewContent(""));
        writer.EditRelationships(page).Add(type, ticket);
        writer.EditRelationships(document).Add(type, other);
    });
    const Package package(target);
    EXPECT_EQ(package.Read(ticket), "<t/>");
    EXPECT_EQ(package.ContentTypeOf(ticket), xps::kPrintTicketContentType);
    EXPECT_EQ(package.ContentTypeOf(Part("any.xml")), xps::kPrintTicketContentType);
    EXPECT_EQ(package.ContentTypeOf(other), "text/xml");
    EXPECT_EQ(package.ContentTypeOf(Part("no-extension")), "text/plain");
    EXPECT_EQ(package.ContentTypeOf(Part("a.png")), "image/png");
    EXPECT_EQ(package.ContentTypeOf(document.RelationshipsPart()),
              "application/vnd.openxmlformats-package.relationships+xml");

    const Relationships ofPage = package.RelationshipsOf(page);
    EXPECT_EQ(ofPage.FindTarget(type), ticket);
    EXPECT_EQ(ofPage.FindTarget("http://schemas.microsoft.com/xps/2005/06/required-resource"),
              Part("Resources/logo.png"));
    EXPECT_NE(ofPage.All()[0].id, ofPage.All()[1].id);
    EXPECT_EQ(package.RelationshipsOf(document).FindTarget(type), other);

    // New items follow in the order in which they were added; only what speaks of them was changed.
    const std::vector<StoredItem> before = ReadStored(TestPackage("plain"));
    const std::vector<StoredItem> after = ReadStored(target);
    ASSERT_EQ(after.size(), before.size() + 4);
    EXPECT_EQ(after[before.size()].name, "Documents/1/Metadata/a&b.XML");
    EXPECT_EQ(after[before.size()].modified, before[0].modified);
    EXPECT_EQ(after[before.size() + 2].name, "no-extension");
    EXPECT_EQ(after[before.size() + 3].name, "Documents/1/_rels/FixedDocument.fdoc.rels");
    const std::vector<std::string> changed = {"[Content_Types].xml", "Documents/1/Pages/_rels/1.fpage.rels"};
    EXPECT_EQ(Without({after.begin(), after.begin() + static_cast<std::ptrdiff_t>(before.size())}, changed),
              Without(before, changed));
}

TEST(PackageWriter, RemovesPartsWithAllThatSpeaksOfThem)
{
    const OutputFolder folder;
    const PartName sequence = Part("FixedDocumentSequence.fdseq");
    const PartName page = Part("Documents/1/Pages/1.fpage");
    const auto target = Write(folder, "tickets", [&](PackageWriter& writer) {
        writer.RemovePart(Part("METADATA/job.xml"));
        writer.RemovePart(Part("Documents/1/Pages/Metadata/page.xml"));
        writer.AddPart(Part("gone.txt"), "text/plain", writer.NewContent("<a/>"));
        writer.EditRelationships(page).Add("urn:gone", Part("gone.txt"));
        writer.RemovePart(Part("gone.txt"));
    });
    const Package package(target);
    EXPECT_FALSE(package.Has(Part("Metadata/job.xml")));
    EXPECT_FALSE(package.Has(Part("gone.txt")));
    EXPECT_FALSE(package.Has(sequence.RelationshipsPart()));
    EXPECT_EQ(package.ContentTypeOf(Part("Metadata/job.xml")), "");
    const Relationships ofPage = package.RelationshipsOf(page);
    ASSERT_EQ(ofPage.All().size(), 1U);
    EXPECT_EQ(ofPage.All()[0].mode, TargetMode::External);
    EXPECT_EQ(ofPage.All()[0].target, "http://example.com/a%20page");
    xps::XpsDocument document(package);
    while (const auto part = document.Next())
    {
        EXPECT_EQ(part->printTicket.has_value(), part->name == Part("Documents/2/FixedDocument.fdoc"));
    }
}

TEST(PackageWriter, RemovesAPartsOwnRelationshipsWithIt)
{
    const OutputFolder folder;
    const PartName page = Part("Documents/1/Pages/1.fpage");
    const auto target = Write(folder, "plain", [&](PackageWriter& writer) {
        writer.EditRelationships(page).Add("urn:a", Part("Resources/logo.png"));
        writer.RemovePart(page);
        writer.AddPart(page, "text/other", writer.NewContent("new"));
    });
    const Package package(target);
    EXPECT_EQ(package.Read(page), "new");
    EXPECT_EQ(package.ContentTypeOf(page), "text/other");
    EXPECT_TRUE(package.RelationshipsOf(page).All().empty());
}

TEST(PackageWriter, RefusesContradictions)
{
    const OutputFolder folder;
    const Package source(TestPackage("plain"));
    PackageWriter writer(source, folder / "out.xps");
    const PartName page = Part("Documents/1/Pages/1.fpage");
    const PartName none = Part("none.xml");
    EXPECT_EQ(FaultOf([&] { writer.ReplacePart(none, writer.NewContent()); }),
              "/none.xml: is missing from the package");
    EXPECT_EQ(FaultOf([&] { writer.RemovePart(none); }), "/none.xml: is missing from the package");
    EXPECT_EQ(FaultOf([&] { writer.AddPart(page, "text/xml", writer.NewContent()); }),
              "/Documents/1/Pages/1.fpage: is in the package already");
    writer.RemovePart(page);
    EXPECT_EQ(FaultOf([&] { writer.ReplacePart(page, writer.NewContent()); }),
              "/Documents/1/Pages/1.fpage: is missing from the package");
}

TEST(PackageWriter, NeverTakesItsInputForItsOutput)
{
    const OutputFolder folder;
    std::filesystem::copy_file(TestPackage("plain"), folder / "in.xps");
    const Package source(folder / "in.xps");
    for (const char* name : {"in.xps", "IN.XPS", ".\\in.xps"})
    {
        EXPECT_EQ(FaultOf([&] { PackageWriter(source, folder / name); }),
                  "the output would replace the input")
            << name;
    }
}

TEST(PackageWriter, LeavesNothingBehindWithoutACommit)
{
    const OutputFolder folder;
    WriteFile(folder / "out.xps", "old");
    {
        const Package source(TestPackage("plain"));
        PackageWriter writer(source, folder / "out.xps");
        writer.ReplacePart(Part("Documents/1/Pages/1.fpage"), writer.NewContent(std::string(100'000, 'x')));
        ASSERT_EQ(folder.Files().size(), 2U) << "contents are expected in a file of their own";
    }
    EXPECT_EQ(folder.Files(), std::vector<std::string>{"out.xps"});
    EXPECT_EQ(ReadFile(folder / "out.xps"), "old");
}

TEST(PackageWriter, LeavesNothingBehindWhenTheCommitFails)
{
    const OutputFolder folder;
    WriteFile(folder / "out.xps", "old");
    const Package source(TestPackage("plain"));
    {
        PackageWriter writer(source, folder / "out.xps");
        writer.ReplacePart(Part("Documents/1/Pages/1.fpage"), writer.NewContent("new"));
        // A target that nobody may replace.
        const std::ifstream held(folder / "out.xps");
        const std::string fault = FaultOf([&] { writer.Commit(); });
        EXPECT_TRUE(fault.starts_with("the output cannot be written: ")) << fault;
    }
    EXPECT_EQ(folder.Files(), std::vector<std::string>{"out.xps"});
    EXPECT_EQ(ReadFile(folder / "out.xps"), "old");
    PackageWriter nowhere(source, folder / "no-folder/out.xps");
    EXPECT_EQ(FaultOf([&] { nowhere.NewContent(); }), "no temporary file can be created beside the output");
}

TEST(PackageWriter, NamesTheItemThatCannotBeCopied)
{
    const OutputFolder folder;
    EXPECT_EQ(FaultOf([&] { Write(folder, "claims-more-stored", [](PackageWriter&) {}); }),
              "Resources/logo.png: cannot be read from the archive");
    EXPECT_EQ(folder.Files(), std::vector<std::string>());
}

TEST(PackageWriter, WritesTheSameBytesForTheSameChangesAndReplacesAnOldFile)
{
    const OutputFolder folder;
    std::string outputs[2];
    for (std::string& output : outputs)
    {
        output = ReadFile(Write(folder, "tickets", [](PackageWriter& writer) {
            writer.ReplacePart(Part("Documents/1/Pages/1.fpage"), writer.NewContent("new"));
            writer.AddPart(Part("added"), "text/plain", writer.NewContent("added"));
        }));
    }
    EXPECT_TRUE(outputs[0] == outputs[1]);
    EXPECT_FALSE(outputs[0].empty());
}
} // namespace
} // namespace host::opc
