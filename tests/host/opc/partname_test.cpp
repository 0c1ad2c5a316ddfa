#include "host/opc/partname.h"

#include <gtest/gtest.h>

#include "host/opc/itemname.h"
#include "host/opc/packageerror.h"
#include "tests/host/testpackages.h"

namespace host::opc
{
namespace
{
std::string NameOfItem(std::string_view item)
{
    const auto name = PartName::FromItem(item);
    return name.has_value() ? name->Text() : "(none)";
}

TEST(PartName, TakesAnyProducersSpellingOfAnItem)
{
    const struct
    {
        const char* item;
        const char* name;
    } table[] = {
        {"Documents/1/Pages/1.fpage", "/Documents/1/Pages/1.fpage"},
        {"/a/b", "/a/b"},
        {"\\a\\b", "/a/b"},
        {"a b/\xC3\xA9[1]", "/a%20b/%C3%A9%5B1%5D"},
        {"%61%2d%7e/%c3%a9", "/a-~/%C3%A9"},
        {"100%/%zz%4", "/100%25/%25zz%254"},
        {"!$&'()*+,;=:@", "/!$&'()*+,;=:@"},
        {"", "(none)"},
        {"folder/", "(none)"},
        {"a//b", "(none)"},
        {"a/b.", "(none)"},
        {"a./b", "(none)"},
        {"a/%2e%2e/b", "(none)"},
        {"a/./b", "(none)"},
        {"a%2fb", "(none)"},
        {"a%5Cb", "(none)"},
    };
    for (const auto& row : table)
    {
        EXPECT_EQ(NameOfItem(row.item), row.name) << row.item;
    }
}

TEST(PartName, ComparesWithoutAsciiCaseOnly)
{
    EXPECT_EQ(Part("Pages/%c3%a9.FPAGE"), Part("PAGES/%C3%A9.fpage"));
    EXPECT_NE(Part("\xC3\x89"), Part("\xC3\xA9"));
    EXPECT_EQ(Part("A"), Part("a"));
    EXPECT_LT(Part("A"), Part("b"));
    EXPECT_LT(Part("a"), Part("B"));
    EXPECT_EQ(Part("A").Text(), "/A");
}

TEST(PartName, ResolvesReferencesAgainstThePartTheyStandIn)
{
    const PartName page = Part("Documents/1/Pages/1.fpage");
    const struct
    {
        const char* reference;
        const char* target;
    } table[] = {
        {"2.fpage", "/Documents/1/Pages/2.fpage"},
        {"./a/../b", "/Documents/1/Pages/b"},
        {"../../../Resources/logo.png", "/Resources/logo.png"},
        {"/Resources/logo.png", "/Resources/logo.png"},
        {"..\\x y.png#frame", "/Documents/1/x%20y.png"},
        {"a?query", "/Documents/1/Pages/a"},
        {"%2E%2e/a", "/Documents/1/a"},
        {"..", "/Documents/1"},
        {"a./../b", "/Documents/1/Pages/b"},
        {"a:b/c", "lies outside the package"},
        {"http://example.com/a", "lies outside the package"},
        {"//server/a", "lies outside the package"},
        {"../../../../a", "leads out of the package"},
        {"/..", "leads out of the package"},
        {"%2e%2e/..\\../../a", "leads out of the package"},
        {"#mark", "names no part"},
        {"", "names no part"},
        {"folder/", "is not a part name"},
        {"a%2fb", "is not a part name"},
        {"a//b", "is not a part name"},
    };
    for (const auto& row : table)
    {
        std::string result;
        const std::string fault = FaultOf([&] { result = page.Resolve(row.reference).Text(); });
        if (row.target[0] == '/')
        {
            EXPECT_EQ(result, row.target) << row.reference << fault;
        }
        else
        {
            EXPECT_EQ(fault,
                      std::string("/Documents/1/Pages/1.fpage: refers to \"") + row.reference + "\", which " +
                          row.target);
        }
        EXPECT_EQ(page.TryResolve(row.reference).has_value(), row.target[0] == '/') << row.reference;
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
    for (const char* whole : {"a",
                              "a/[0].pieces",
                              "a/[00].piece",
                              "a/[].piece",
                              "a/[-1].piece",
                              "a/[x].piece",
                              "a/[0]",
                              "[0].piece",
                              "a/0].piece",
                              "a/[99999999999].piece",
                              "[Content_Types].xml"})
    {
        EXPECT_FALSE(ParseItemName(whole).piece.has_value()) << whole;
        EXPECT_EQ(ParseItemName(whole).logicalName, whole);
    }
}
} // namespace
} // namespace host::opc
