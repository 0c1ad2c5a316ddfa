#include "base/xps/printschema/printschemahandler.h"

#include <gtest/gtest.h>

#include "base/logging/log.h"
#include "base/utility/utf8.h"
#include "base/xps/printschema/document/dom.h"
#include "base/xps/printschema/vocabulary/namespaceprefixes.h"
#include "support/failures.h"
#include "support/heap.h"
#include "support/table.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using support::Count;
using support::Document;
using support::Feature;
using support::HandlerOf;
using support::HresultOf;
using support::Integers;
using support::Join;
using support::LoadDocument;
using support::MakeTicket;
using utility::Bstr;
using utility::ComPtr;
using enum NamespaceId;

// Values of attributes.
const std::string kFramework = "'http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework'";
const std::string kKeywords = "'http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords'";
const std::string kPsf = "xmlns:psf=" + kFramework;
const std::string kPsk = "xmlns:psk=" + kKeywords;

/// The text that an operation returns, or its failure in brackets.
template <typename Operation>
std::string TextOf(Operation&& operation)
{
    Bstr text;
    const HRESULT hr = operation(text.Receive());
    return hr != S_OK ? logging::FormatString("(%x)", hr) : utility::ToUtf8(std::wstring(text.View()));
}

std::string OptionOf(const PrintSchemaHandler& handler, const wchar_t* feature)
{
    return TextOf([&](BSTR* text) { return handler.GetOptionName(feature, text, Keywords, Keywords); });
}

class PrintSchemaHandlerTest : public testing::Test
{
protected:
    void SetUp() override { SetPrivatePrefix(L""); }
    void TearDown() override { SetPrivatePrefix(L""); }
};

TEST_F(PrintSchemaHandlerTest, RefusesDocumentsThatItCannotQuery)
{
    EXPECT_EQ(HresultOf([] { HandlerOf({}); }), E_PENDING);
    const std::string refused[] = {
        "<PrintTicket xmlns=" + kFramework + "/>",
        "<psf:PrintCapabilities " + kPsf + "/>",
        "<x " + kPsf + "><psf:PrintTicket>v<x xmlns:f=" + kFramework + "/></psf:PrintTicket></x>",
        "<psf:PrintTicket xmlns=" + kFramework + " " + kPsf + "/>",
        "<psf:PrintTicket " + kPsf + " xmlns=" + kKeywords + "/>",
        // The attribute with this value does not declare a prefix.
        "<psf:PrintTicket " + kPsf + " other=" + kKeywords + "/>",
    };
    for (const std::string& markup : refused)
    {
        EXPECT_EQ(HresultOf([&] { HandlerOf(LoadDocument(markup)); }), E_FAIL) << markup;
    }
}

TEST_F(PrintSchemaHandlerTest, TakesADocumentUnderAnyPrefixes)
{
    const Document document = LoadDocument(
        "<a:PrintTicket xmlns:k=" + kKeywords + " version='1' xmlns:a=" + kFramework +
        " xmlns:i='http://www.w3.org/2001/XMLSchema-instance' xmlns:d='http://www.w3.org/2001/XMLSchema'>"
        "<a:Feature name='k:PageMediaSize'><a:Option name='k:ISOA4'/></a:Feature></a:PrintTicket>");
    const PrintSchemaHandler handler = HandlerOf(document);
    EXPECT_EQ(handler.GetPrefix(Framework).View(), L"a:");
    EXPECT_EQ(handler.GetPrefix(Keywords).View(), L"k:");
    EXPECT_EQ(OptionOf(handler, L"PageMediaSize"), "ISOA4");

    ComPtr<IXMLDOMElement> property;
    ASSERT_EQ(handler.CreatePropertyWithValue(L"P", L"integer", L"7", property.Receive(), Keywords), S_OK);
    ASSERT_EQ(handler.AppendToElement(L"PrintTicket", property.Get()), S_OK);
    EXPECT_EQ(Count(document,
                    "/f:PrintTicket/f:Property[@name='k:P']/f:Value[.='7']/@*[.='d:integer' and local-name()="
                    "'type' and namespace-uri()='http://www.w3.org/2001/XMLSchema-instance']"),
              1);

    // Another default namespace is ignored, and so is everything after the start tag.
    const auto other = HandlerOf(
        LoadDocument("<psf:PrintTicket xmlns='urn:o' xmlns:r='urn:?a=&quot;1&amp;&gt;' xmlns:h='urn:&amp;#y' "
                     "xmlns:t='urn:&amp;' "
                     "v='=&quot;/>&#10;&lt;&amp;' w='&#x1F5A8;' " +
                     kPsf + " " + kPsk + "><x xmlns:y='urn:none' z='urn:none'/></psf:PrintTicket>"));
    EXPECT_EQ(other.GetPrefix(Keywords).View(), L"psk:");
    EXPECT_EQ(TextOf([&](BSTR* text) { return other.DiscoverPrefix(L"urn:o", text); }), "(80004005)");
    EXPECT_EQ(TextOf([&](BSTR* text) { return other.DiscoverPrefix(L"urn:?a=\"1&>", text); }), "r:");
    EXPECT_EQ(TextOf([&](BSTR* text) { return other.DiscoverPrefix(L"urn:&#y", text); }), "h:");
    EXPECT_EQ(TextOf([&](BSTR* text) { return other.DiscoverPrefix(L"urn:&", text); }), "t:");
    EXPECT_EQ(TextOf([&](BSTR* text) { return other.DiscoverPrefix(L"=\"/>\n<&", text); }), "(80004005)");
    EXPECT_EQ(TextOf([&](BSTR* text) { return other.DiscoverPrefix(L"\U0001F5A8", text); }), "(80004005)");
    EXPECT_EQ(TextOf([&](BSTR* text) { return other.DiscoverPrefix(L"urn:none", text); }), "(1)");
}

TEST_F(PrintSchemaHandlerTest, KnowsThePrefixOfEachNamespace)
{
    const PrintSchemaHandler handler = HandlerOf(MakeTicket(""));
    EXPECT_EQ(handler.GetPrefix(Keywords).View(), L"psk:");
    EXPECT_EQ(handler.GetPrefix(Framework).View(), L"psf:");
    EXPECT_EQ(handler.GetPrefix(Private).View(), L"ns0000:");
    EXPECT_EQ(HresultOf([&] { handler.GetPrefix(static_cast<NamespaceId>(4)); }), E_INVALIDARG);
    SetPrivatePrefix(L"ven");
    EXPECT_EQ(handler.GetPrefix(Private).View(), L"ven:");
    EXPECT_EQ(handler.GetPrefix(Fallback).View(), L"ns0000:");

    const PrintSchemaHandler withoutKeywords = HandlerOf(support::LoadFile("tickets/nokeywords.xml"));
    for (const NamespaceId id : {Keywords, Framework, Private, Fallback, static_cast<NamespaceId>(4)})
    {
        EXPECT_EQ(HresultOf([&] { withoutKeywords.GetPrefix(id); }), E_UNEXPECTED);
    }
    EXPECT_EQ(withoutKeywords.RemoveFeature(L"PageMediaSize", Keywords), E_UNEXPECTED);
}

TEST_F(PrintSchemaHandlerTest, ChecksItsArgumentsInOrder)
{
    const Document document = MakeTicket("");
    const PrintSchemaHandler handler = HandlerOf(document);
    // A handler that was moved from has no document.
    PrintSchemaHandler moved = handler;
    const PrintSchemaHandler thief = std::move(moved);
    // NOLINTBEGIN(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
    std::int32_t number = 0;
    Bstr text;
    ComPtr<IXMLDOMNode> node;
    ComPtr<IXMLDOMElement> a;
    ComPtr<IXMLDOMElement> b;
    ComPtr<IXMLDOMNodeList> nodes;
    BSTR empty = nullptr;
    Qname name;
    constexpr NamespaceId k = Keywords;
    const PrintSchemaHandler& h = handler;
    // clang-format off
    const struct
    {
        const char* what;
        HRESULT actual;
        HRESULT expected;
    } cases[] = {
        {"DiscoverPrefix out", h.DiscoverPrefix(L"", nullptr), E_POINTER},
        {"DiscoverPrefix uri", h.DiscoverPrefix(L"", text.Receive()), E_INVALIDARG},
        {"SelectSingleNode out", moved.SelectSingleNode(L"", nullptr), E_POINTER},
        {"SelectSingleNode document", moved.SelectSingleNode(L"", node.Receive()), E_PENDING},
        {"SelectSingleNode xpath", h.SelectSingleNode(L"", node.Receive()), E_INVALIDARG},
        {"SelectNodesByLocalName out", h.SelectNodesByLocalName(L"", nullptr), E_POINTER},
        {"SelectNodesByLocalName name", h.SelectNodesByLocalName(L"", nodes.Receive()), E_FAIL},
        {"NodeExists xpath", h.NodeExists(L""), E_INVALIDARG},
        {"GetValueText out", h.GetValueText(L"", nullptr), E_POINTER},
        {"GetValueText xpath", h.GetValueText(L"", text.Receive()), E_INVALIDARG},
        {"GetValueText nothing", h.GetValueText(L"//psf:None", text.Receive()), kNotFound},
        {"GetValueInteger out", h.GetValueInteger(L"", nullptr), E_POINTER},
        {"GetValueInteger xpath", h.GetValueInteger(L"", &number), E_INVALIDARG},
        {"GetAttributeText node", h.GetAttributeText(nullptr, L"", text.Receive()), E_POINTER},
        {"GetAttributeText out", h.GetAttributeText(document.Get(), L"", nullptr), E_POINTER},
        {"GetAttributeText name", h.GetAttributeText(document.Get(), L"", text.Receive()), E_INVALIDARG},
        {"GetAttributeText nothing", h.GetAttributeText(document.Get(), L"a", text.Receive()), S_FALSE},
        {"GetOptionName out", h.GetOptionName(L"", nullptr, k, k), E_POINTER},
        {"GetOptionName name", h.GetOptionName(L"", text.Receive(), k, k), E_INVALIDARG},
        {"FindFirstOption document", moved.FindFirstOption({}, {}, &name, &name), E_PENDING},
        {"FindFirstOption out", h.FindFirstOption({}, {}, nullptr, nullptr), E_POINTER},
        {"GetPropertyValue out", h.GetPropertyValue(L"", L"", nullptr, k, k, k), E_POINTER},
        {"GetPropertyValue property", h.GetPropertyValue(L"F", L"", &empty, k, k, k), E_INVALIDARG},
        {"GetScoredPropertyValue feature", h.GetScoredPropertyValue(L"", L"P", &empty, k, k, k), E_INVALIDARG},
        {"GetPropertyInteger out", h.GetPropertyInteger(L"", L"", nullptr, k, k, k), E_POINTER},
        {"GetScoredPropertyInteger", h.GetScoredPropertyInteger(L"F", L"", &number, k, k, k), E_INVALIDARG},
        {"RemoveNode", h.RemoveNode(nullptr), E_POINTER},
        {"RemoveNode without parent", h.RemoveNode(document.Get()), S_FALSE},
        {"RemoveFeature", h.RemoveFeature(nullptr, k), E_INVALIDARG},
        {"RemoveFeature nothing", h.RemoveFeature(L"None", k), S_FALSE},
        {"RemoveOrphanParameterInits", h.RemoveOrphanParameterInits(nullptr, nullptr), E_POINTER},
        {"RemoveAllNodes", h.RemoveAllNodes(nullptr), E_POINTER},
        {"StripKnownPrefix null", h.StripKnownPrefix(nullptr, k), E_POINTER},
        {"StripKnownPrefix empty", h.StripKnownPrefix(&empty, k), E_INVALIDARG},
        {"CreateElement name", h.CreateElement(nullptr, L"u", a.Receive()), E_INVALIDARG},
        {"CreateElement uri", h.CreateElement(L"e", nullptr, a.Receive()), E_INVALIDARG},
        {"CreateElement no out", h.CreateElement(L"e", L"u", nullptr), S_OK},
        {"SetAttribute", h.SetAttribute(nullptr, L"n", nullptr, L"v"), E_INVALIDARG},
        {"CreateProperty out", h.CreateProperty(L"", nullptr, k), E_POINTER},
        {"CreateProperty name", h.CreateProperty(L"", a.Receive(), k), E_INVALIDARG},
        {"CreatePropertyWithValue out", h.CreatePropertyWithValue(L"", L"", L"", nullptr, k), E_POINTER},
        {"CreatePropertyWithValue type", h.CreatePropertyWithValue(L"n", L"", L"v", a.Receive(), k), E_INVALIDARG},
        {"CreateScoredProperty out", h.CreateScoredProperty(L"", nullptr), E_POINTER},
        {"... WithValue", h.CreateScoredPropertyWithValue(L"n", L"t", L"", a.Receive()), E_INVALIDARG},
        {"CreateIntegerScoredProperty name", h.CreateIntegerScoredProperty(L"", 1, a.Receive()), E_INVALIDARG},
        {"... WithChild child", h.CreateScoredPropertyWithChild(L"", nullptr, a.Receive()), E_POINTER},
        {"CreateFeatureWithOption out", h.CreateFeatureWithOption(L"", nullptr, a.Receive(), k), E_POINTER},
        {"CreateFeatureWithOption name", h.CreateFeatureWithOption(L"", a.Receive(), b.Receive(), k), E_INVALIDARG},
        {"... NamedOption", h.CreateFeatureWithNamedOption(L"F", L"", a.Receive(), b.Receive(), k, k), E_INVALIDARG},
        {"CreateParameter out", h.CreateParameter(L"", L"", L"", a.Receive(), nullptr), E_POINTER},
        {"CreateParameter value", h.CreateParameter(L"n", L"t", L"", a.Receive(), b.Receive()), E_INVALIDARG},
        {"AppendToElement child", h.AppendToElement(L"", nullptr), E_POINTER},
        {"AppendToElement name", h.AppendToElement(L"", document.Get()), E_INVALIDARG},
        {"AppendToElement nothing", h.AppendToElement(L"PrintCapabilities", document.Get()), kNotFound},
    };
    // clang-format on
    // NOLINTEND(bugprone-use-after-move, clang-analyzer-cplusplus.Move)
    for (const auto& row : cases)
    {
        EXPECT_EQ(row.actual, row.expected) << row.what;
    }
}

TEST_F(PrintSchemaHandlerTest, NamesTheFirstOptionWithoutItsPrefix)
{
    for (const auto& row : support::LoadTable("optionnames.txt"))
    {
        EXPECT_EQ(OptionOf(HandlerOf(MakeTicket(row[0])), L"F"), row[1]) << row[0];
    }
    EXPECT_TRUE(FAILED(HandlerOf(MakeTicket("")).RemoveFeature(L"quoted\"name", Keywords)));
}

TEST_F(PrintSchemaHandlerTest, ReadsValuesAndFollowsParameters)
{
    constexpr NamespaceId k = Keywords;
    const std::string parameters =
        Integers("ParameterInit", "psk:", "Other=1") +
        "\n  <psf:ParameterInit name='psk:P'>\n <psf:Value>-42 mm</psf:Value>\n</psf:ParameterInit>";
    for (const auto& row : support::LoadTable("propertyvalues.txt"))
    {
        const PrintSchemaHandler handler = HandlerOf(MakeTicket(Feature("F", "O", row[0]) + parameters));
        const auto read = [&](BSTR* text) {
            return handler.GetScoredPropertyValue(L"F", L"S", text, k, k, k);
        };
        EXPECT_EQ(TextOf(read), row[1]) << row[0];
        std::int32_t number = -7;
        static_cast<void>(handler.GetScoredPropertyInteger(L"F", L"S", &number, k, k, k));
        EXPECT_EQ(std::to_string(number), row[2]) << row[0];
    }
    // A parameter without a ParameterInit gives success and no text.
    const PrintSchemaHandler handler = HandlerOf(
        MakeTicket("<psf:ScoredProperty><psf:ParameterRef name='psk:Missing'/></psf:ScoredProperty>"));
    BSTR text = Bstr(L"previous").Detach();
    EXPECT_EQ(handler.GetValueText(L"//psf:ScoredProperty", &text), S_OK);
    EXPECT_EQ(text, nullptr);
    std::int32_t number = -7;
    EXPECT_EQ(handler.GetValueInteger(L"//psf:ScoredProperty", &number), S_OK);
    EXPECT_EQ(number, 0);
}

TEST_F(PrintSchemaHandlerTest, FreesTheTextThatItReplaces)
{
    constexpr std::size_t runs = 100;
    const auto handler =
        HandlerOf(MakeTicket("<psf:ScoredProperty><psf:Value>psk:a text</psf:Value></psf:ScoredProperty>"));
    BSTR text = nullptr;
    const std::size_t before = tests::CountHeapBlocks();
    for (std::size_t run = 0; run < runs; ++run)
    {
        ASSERT_EQ(handler.GetValueText(L"//psf:ScoredProperty", &text), S_OK);
        ASSERT_EQ(handler.StripKnownPrefix(&text, Private), S_OK);
    }
    EXPECT_LT(tests::CountHeapBlocks(), before + runs / 2);
    EXPECT_EQ(Bstr::Adopt(text).View(), L"a text");
}

TEST_F(PrintSchemaHandlerTest, TellsTheNamespacesOfOptionsApart)
{
    const Qname feature{Keywords, L"F"};
    const std::pair<const char*, Qname> cases[] = {
        {"psk:X", {Keywords, L"X"}},
        {"ns0000:X", {Private, L"X"}},
        {"ven:X", {Private, L"X"}},
        {"X", {Keywords, L"X"}},
        {"psf:X", {}},
    };
    SetPrivatePrefix(L"ven");
    for (const auto& [name, expected] : cases)
    {
        const std::string option = "<psf:Option name='" + std::string(name) + "'/>";
        const auto handler = HandlerOf(MakeTicket("<psf:Feature name='psk:F'>" + option + "</psf:Feature>"));
        const bool isKnown = !expected.localName.empty();
        Qname found;
        Qname selected;
        // The parser refuses the query of the first one.
        EXPECT_EQ(handler.FindFirstOption({{Keywords, L"quoted\"name"}, {Private, L"F"}, feature},
                                          {Keywords, Private},
                                          &found,
                                          &selected),
                  isKnown ? S_OK : kNotFound)
            << name;
        EXPECT_EQ(selected, expected) << name;
        EXPECT_EQ(found, isKnown ? feature : Qname()) << name;
    }
}

TEST_F(PrintSchemaHandlerTest, RemovesAFeatureWithTheParametersThatOnlyItUsed)
{
    const auto ref = [](const std::string& name) { return "<psf:ParameterRef name='psk:" + name + "'/>"; };
    const std::string parameters = Integers("ParameterInit", "psk:", "A=1 B=1 Shared=1 C=1");
    Document document =
        MakeTicket(parameters + Feature("F", "O", ref("A") + ref("Shared")) +
                   Feature("Kept", "O", ref("Shared") + ref("C")) + Feature("F", "O", ref("B")));
    EXPECT_EQ(HandlerOf(document).RemoveFeature(L"F", Keywords), S_FALSE);
    EXPECT_EQ(Join(document, "//f:Feature/@name"), "psk:Kept");
    EXPECT_EQ(Join(document, "//f:ParameterInit/@name"), "psk:Shared psk:C");

    document = MakeTicket(parameters + Feature("F", "O"));
    EXPECT_EQ(HandlerOf(document).RemoveFeature(L"None", Keywords), S_FALSE);
    EXPECT_EQ(Count(document, "//f:ParameterInit"), 4);
    EXPECT_EQ(HandlerOf(document).RemoveFeature(L"F", Keywords), S_FALSE);
    EXPECT_EQ(Count(document, "//f:ParameterInit"), 0);
}

TEST_F(PrintSchemaHandlerTest, NamesNewElementsByTheirNamespace)
{
    SetPrivatePrefix(L"ven");
    const Document document = MakeTicket("");
    const PrintSchemaHandler handler = HandlerOf(document);
    ComPtr<IXMLDOMElement> first;
    ComPtr<IXMLDOMElement> second;
    const auto append = [&](HRESULT hr, ComPtr<IXMLDOMElement>& element) {
        EXPECT_EQ(hr, S_OK);
        EXPECT_EQ(handler.AppendToElement(L"PrintTicket", std::exchange(element, {}).Get()), S_OK);
    };
    for (const auto* name :
         {L"PageWatermarkSizeWidth", L"PageWatermarkSizeHeight", L"pageWatermarkSizeWidth", L"S"})
    {
        append(handler.CreateIntegerParameter(name, -5, first.Receive(), second.Receive()), second);
        append(handler.CreateScoredPropertyWithChild(L"W", first.Get(), second.Receive()), second);
        first = {};
    }
    const std::string names =
        "ven:PageWatermarkSizeWidth ven:PageWatermarkSizeHeight psk:pageWatermarkSizeWidth psk:S";
    EXPECT_EQ(Join(document, "/f:PrintTicket/f:ParameterInit[f:Value='-5']/@name"), names);
    EXPECT_EQ(Join(document, "/f:PrintTicket/f:ScoredProperty[@name='psk:W']/f:ParameterRef/@name"), names);

    append(handler.CreateFeatureWithOption(L"Bare", first.Receive(), second.Receive(), Private), first);
    EXPECT_EQ(Count(document, "//f:Feature[@name='ven:Bare']/f:Option[not(@*) and not(node())]"), 1);

    // A value has no type if the root declares no prefix for it.
    const std::string xsd = "xmlns:xsd='http://www.w3.org/2001/XMLSchema'";
    const std::string xsi = "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'";
    const std::pair<std::string, std::string> cases[] = {
        {"", "not(@*)"}, {xsd, "not(@*)"}, {xsi, "@*[local-name()='type']='integer'"}};
    for (const auto& [declared, attributes] : cases)
    {
        const Document bare = LoadDocument("<psf:PrintTicket " + kPsf + " " + kPsk + " " + declared + "/>");
        ComPtr<IXMLDOMElement> property;
        ASSERT_EQ(HandlerOf(bare).CreateIntegerScoredProperty(L"Width", 7, property.Receive()), S_OK);
        ASSERT_EQ(HandlerOf(bare).AppendToElement(L"PrintTicket", property.Get()), S_OK);
        EXPECT_EQ(Count(bare, "//f:ScoredProperty[@name='psk:Width']/f:Value[.='7' and " + attributes + "]"),
                  1);
    }
}

TEST(ItemOf, FailsBeyondTheEndOfAListThatHasBecomeShorter)
{
    const Document ticket = MakeTicket("");
    ComPtr<IXMLDOMNodeList> children;
    ASSERT_EQ(ticket->get_childNodes(children.Receive()), S_OK);
    EXPECT_EQ(HresultOf([&] { ItemOf(children.Get(), CountOf(children.Get())); }), E_UNEXPECTED);
}
} // namespace
} // namespace base::xps::printschema
