#include "host/opc/partname.h"

#include <sstream>

#include <gtest/gtest.h>

#include "host/xml/markup.h"
#include "tests/host/testpackages.h"

namespace host::opc
{
namespace
{
TEST(PartName, TakesAnyProducersSpellingOfAnItem)
{
    for (const auto& row : ReadTable("itemnames.txt"))
    {
        const auto name = PartName::FromItem(row.at(0));
        EXPECT_EQ(name ? name->Text() : "none", row.at(1)) << row[0];
    }
}

TEST(PartName, ComparesWithoutAsciiCaseOnly)
{
    EXPECT_EQ(Part("Pages/%c3%a9.FPAGE"), Part("PAGES/%C3%A9.fpage"));
    EXPECT_NE(Part("\xC3\x89"), Part("\xC3\xA9"));
    EXPECT_LT(Part("A"), Part("b"));
    EXPECT_LT(Part("a"), Part("B"));
    EXPECT_EQ(Part("A").Text(), "/A");
}

TEST(PartName, ResolvesReferencesAgainstThePartTheyStandIn)
{
    const PartName page = Part("Documents/1/Pages/1.fpage");
    for (const auto& row : ReadTable("references.txt"))
    {
        const std::string& reference = row.at(0);
        const std::string& target = row.at(1);
        std::string result;
        const std::string fault = FaultOf<xml::MarkupError>([&] { result = page.Resolve(reference).Text(); });
        const bool leadsToAPart = target[0] == '/';
        const std::string refusal = "refers to \"" + reference + "\", which " + target;
        EXPECT_EQ(leadsToAPart ? result : fault, leadsToAPart ? target : refusal) << fault;
        EXPECT_EQ(page.TryResolve(reference).has_value(), leadsToAPart) << reference;
    }
    EXPECT_EQ(PartName::PackageRoot().Resolve("a/b").Text(), "/a/b");
}

TEST(PartName, KnowsItsRelationshipsPartAndBack)
{
    EXPECT_EQ(PartName::PackageRoot().RelationshipsPart().Text(), "/_rels/.rels");
    EXPECT_EQ(Part("a/b.c").RelationshipsPart().Text(), "/a/_rels/b.c.rels");
    EXPECT_EQ(Part("_RELS/.Rels").RelationshipsSource(), PartName::PackageRoot());
    EXPECT_EQ(Part("a/_rels/b.c.rels").RelationshipsSource(), Part("a/b.c"));
    EXPECT_FALSE(Part("a/rels/b.rels").RelationshipsSource().has_value());
    EXPECT_FALSE(Part("a/_rels/b.xml").RelationshipsSource().has_value());
    EXPECT_EQ(Part("a.b/c.d.PNG").Extension(), "PNG");
    EXPECT_EQ(Part("a.b/c").Extension(), "");
}

TEST(ItemName, TellsPiecesFromWholeParts)
{
    const ItemRole first = ParseItemName("a/1.fpage/[0].piece");
    EXPECT_EQ(first.logicalName, "a/1.fpage");
    EXPECT_EQ(first.piece, 0U);
    EXPECT_FALSE(first.isLastPiece);
    const ItemRole last = ParseItemName("a\\1.fpage\\[12].LAST.Piece");
    EXPECT_EQ(last.logicalName, "a\\1.fpage");
    EXPECT_EQ(last.piece, 12U);
    EXPECT_TRUE(last.isLastPiece);
    std::istringstream endings("[0].pieces [00].piece [].piece [-1].piece [x].piece [0] 0].piece "
                               "[99999999999].piece [Content_Types].xml");
    for (std::string ending; endings >> ending;)
    {
        EXPECT_FALSE(ParseItemName("a/" + ending).piece.has_value()) << ending;
        EXPECT_EQ(ParseItemName("a/" + ending).logicalName, "a/" + ending);
    }
    EXPECT_FALSE(ParseItemName("a/").piece.has_value());
    EXPECT_FALSE(ParseItemName("[0].piece").piece.has_value());
}
} // namespace
} // namespace host::opc
