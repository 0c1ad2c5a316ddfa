#include "base/xml/xmlmarger.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "base/utility/utf8.h"
#include "base/utility/variant.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/printticketstructurecomparator.h"
#include "support/table.h"
#include "support/thrown.h"
#include "support/tickets.h"

namespace base::xml
{
namespace
{
using support::CountFeatures;
using support::Document;
using support::Join;
using support::LoadDocument;
using support::MakeTicket;
using support::MessageOf;
using utility::Bstr;

void Merge(IXMLDOMDocument2* base, IXMLDOMDocument2* target)
{
    const xps::printschema::PrintTicketStructureComparator comparator;
    XmlMarger(comparator).Merge(base, target);
}

std::string TextOf(const Document& document)
{
    Bstr text;
    EXPECT_EQ(document->get_xml(text.Receive()), S_OK);
    return utility::ToUtf8(std::wstring(text.View()));
}

TEST(XmlMargerTest, HoldsToItsRules)
{
    for (const auto& row : support::LoadTable("marger/rules.txt"))
    {
        SCOPED_TRACE(row[0]);
        const Document base = MakeTicket(row[1]);
        const Document target = MakeTicket(row[2]);
        const std::string before = TextOf(target);
        Merge(base.Get(), target.Get());
        EXPECT_EQ(Join(base, "//@name | //f:Value"), row[3]) << TextOf(base);
        EXPECT_EQ(TextOf(target), before);
        // A complete ticket is not changed.
        const std::string once = TextOf(base);
        Merge(base.Get(), target.Get());
        EXPECT_EQ(TextOf(base), once);
    }
}

// ticket_queries checks the merged trees with another XML library.
TEST(XmlMargerTest, BringsDeclarationsAndKeepsTheMeaningOfAPrefixOnBothSides)
{
    for (const std::string name : {"public", "othervendor"})
    {
        const Document base = support::LoadFile("marger/" + name + ".xml");
        Merge(base.Get(), support::LoadFile("marger/driver.xml").Get());
        const std::string path = MERGED_TREES_PATH "/" + name + ".merged.xml";
        EXPECT_EQ(base->save(utility::Variant(Bstr(path.c_str())).Get()), S_OK);
        EXPECT_EQ(Join(base, "//f:Feature[1]//@name"), "psk:PageScaling psk:None");
        EXPECT_EQ(CountFeatures(base, "urn:other:vendor", "JobCompress"), 0);
    }
}

TEST(XmlMargerTest, FindsEveryDeclarationWhateverElseTheRootBears)
{
    const std::string rest =
        "xmlns:f='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'";
    for (const std::string& root : {rest + " xmlns:v='urn:v'",
                                    rest + " version='1' xmlns:v='urn:v'",
                                    "xmlns='urn:d' " + rest + " xmlns:v='urn:v'",
                                    rest + " xmlns='urn:d' version='1' xmlns:v='urn:v'",
                                    rest + " xmlns:v='urn:v' xmlns='urn:d'"})
    {
        const auto load = [](const std::string& declarations, const std::string& content) {
            return LoadDocument("<f:PrintTicket " + declarations + ">" + content + "</f:PrintTicket>");
        };
        const Document bare = load(rest, "");
        const Document full = load(root, "<f:Feature name='v:A'/>");
        Merge(bare.Get(), full.Get());
        EXPECT_EQ(CountFeatures(bare, "urn:v", "A"), 1) << root;

        // In the other direction the declaration exists already.
        const Document other =
            load(rest + " xmlns:v='urn:w'", "<f:Feature name='v:A'/><f:Feature name='v:B' xmlns:v='urn:x'/>");
        Merge(full.Get(), other.Get());
        EXPECT_EQ(CountFeatures(full, "urn:v", "A"), 1) << root;
        EXPECT_EQ(CountFeatures(full, "urn:x", "B"), 1) << root;
    }
}

TEST(XmlMargerTest, KnowsAnElementOfTheRootUnderAnotherPrefix)
{
    const std::string driver = "http://schemas.quellmark.example/printing/2005/08/printticket";
    const std::string own =
        "<psf:Feature name='own:JobCompress'><psf:Option name='own:Type9'>"
        "<psf:Property name='own:P'><psf:Value xsi:type='xsd:QName'>own:V</psf:Value>"
        "</psf:Property><psf:Property name='psk:Q'><psf:Value>own:W</psf:Value></psf:Property>"
        "</psf:Option></psf:Feature><psf:Feature name='psk:A'/>";
    const auto merged = [&](const std::string& declarations) {
        std::string ticket = support::Ticket(own);
        const std::string ns0000 = "xmlns:ns0000=\"" + driver + "\"";
        ticket.replace(ticket.find(ns0000), ns0000.size(), declarations + " xmlns:own='" + driver + "'");
        const Document base = LoadDocument(ticket);
        for (int round = 0; round < 2; ++round)
        {
            Merge(base.Get(), support::LoadFile("marger/driver.xml").Get());
            EXPECT_EQ(CountFeatures(base, driver, "JobCompress"), 1) << TextOf(base);
        }
        return Join(base, "//f:Feature[.//f:Property]//@name | //f:Value");
    };
    EXPECT_EQ(merged(""), "own:JobCompress own:Type9 own:P own:V psk:Q own:W");
    // The base uses the target's prefix for another namespace; the element still has it.
    EXPECT_EQ(merged("xmlns:ns0000='urn:other'"),
              "ns0000:JobCompress ns0000:Type9 ns0000:P ns0000:V psk:Q own:W");
}

TEST(XmlMargerTest, RefusesNullAndLetsEmptyDocumentsBe)
{
    const Document some = MakeTicket(support::Feature("A", "One"));
    const std::string before = TextOf(some);
    const std::string source = "base\\xml\\xmlmarger(...) : ";
    EXPECT_EQ(MessageOf<std::invalid_argument>([&] { Merge(nullptr, some.Get()); }),
              source + "pBase is null.\n");
    EXPECT_EQ(MessageOf<std::invalid_argument>([&] { Merge(some.Get(), nullptr); }),
              source + "pTarget is null.\n");
    Merge(some.Get(), XmlUtility::CreateDocument().Get());
    Merge(XmlUtility::CreateDocument().Get(), some.Get());
    EXPECT_EQ(TextOf(some), before);
}
} // namespace
} // namespace base::xml
