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
#include "support/ticketfacts.h"
#include "support/tickettext.h"

namespace base::xml
{
namespace
{
using support::DomDocument;
using support::LoadDocument;
using support::MessageOf;
using support::Ticket;
using support::TicketFacts;
using utility::Bstr;

const std::string kDriver = "http://schemas.quellmark.example/printing/2005/08/printticket";

void Merge(IXMLDOMDocument2* base, IXMLDOMDocument2* target)
{
    const xps::printschema::PrintTicketStructureComparator comparator;
    XmlMarger(comparator).Merge(base, target);
}

std::string TextOf(const DomDocument& document)
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
        const DomDocument base = LoadDocument(Ticket(row[1]));
        const DomDocument target = LoadDocument(Ticket(row[2]));
        const std::string before = TextOf(target);
        Merge(base.Get(), target.Get());
        EXPECT_EQ(TicketFacts(base.Get()).Join("//@name | //f:Value"), row[3]) << TextOf(base);
        EXPECT_EQ(TextOf(target), before);
        // What is complete stays as it is.
        const std::string once = TextOf(base);
        Merge(base.Get(), target.Get());
        EXPECT_EQ(TextOf(base), once);
    }
}

// The merged documents are looked at by mergedtrees_test as well, with a library of another kind.
TEST(XmlMargerTest, BringsDeclarationsAndKeepsTheMeaningOfAPrefixOnBothSides)
{
    for (const std::string name : {"public", "othervendor"})
    {
        const auto load = [](const std::string& file) {
            return XmlUtility::LoadDocumentFromFile(
                utility::FromUtf8(TEST_DATA_PATH "/marger/" + file + ".xml"));
        };
        const DomDocument base = load(name);
        Merge(base.Get(), load("driver").Get());
        const std::string path = MERGED_TREES_PATH "/" + name + ".merged.xml";
        EXPECT_EQ(base->save(utility::Variant(Bstr(path.c_str())).Get()), S_OK);
        const TicketFacts facts(base.Get());
        const bool isPublic = name == "public";
        EXPECT_EQ(facts.Join("//f:Feature[1]//@name"), "psk:PageScaling psk:None");
        EXPECT_EQ(facts.CountFeatures("urn:other:vendor", "PageFold"), isPublic ? 0 : 1);
        EXPECT_EQ(facts.CountFeatures("urn:other:vendor", "JobCompress"), 0);
        EXPECT_EQ(facts.CountFeatures(kDriver, "JobCompress"), 1);
        EXPECT_EQ(facts.Count("//f:Value[namespace::xsd='http://www.w3.org/2001/XMLSchema']"), 1);
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
        const DomDocument bare = load(rest, "");
        const DomDocument full = load(root, "<f:Feature name='v:A'/>");
        Merge(bare.Get(), full.Get());
        EXPECT_EQ(TicketFacts(bare.Get()).CountFeatures("urn:v", "A"), 1) << root;

        // The other way round a declaration is there already.
        const DomDocument other =
            load(rest + " xmlns:v='urn:w'", "<f:Feature name='v:A'/><f:Feature name='v:B' xmlns:v='urn:x'/>");
        Merge(full.Get(), other.Get());
        EXPECT_EQ(TicketFacts(full.Get()).CountFeatures("urn:v", "A"), 1) << root;
        EXPECT_EQ(TicketFacts(full.Get()).CountFeatures("urn:x", "B"), 1) << root;
    }
}

TEST(XmlMargerTest, RefusesNullAndLetsEmptyDocumentsBe)
{
    const DomDocument some = LoadDocument(Ticket(support::Feature("A", "One")));
    const std::string before = TextOf(some);
    const auto refused = [](IXMLDOMDocument2* base, IXMLDOMDocument2* target) {
        return MessageOf<std::invalid_argument>([&] { Merge(base, target); });
    };
    EXPECT_TRUE(refused(nullptr, some.Get()).ends_with(" : pBase is null.\n"));
    EXPECT_TRUE(refused(some.Get(), nullptr).ends_with(" : pTarget is null.\n"));
    Merge(some.Get(), XmlUtility::CreateDocument().Get());
    Merge(XmlUtility::CreateDocument().Get(), some.Get());
    EXPECT_EQ(TextOf(some), before);
}
} // namespace
} // namespace base::xml
