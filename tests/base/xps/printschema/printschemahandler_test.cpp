#include "base/xps/printschema/printschemahandler.h"

#include <gtest/gtest.h>

#include "base/logging/errors.h"
#include "base/logging/log.h"
#include "base/utility/utf8.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/namespaceprefixes.h"
#include "support/failures.h"
#include "support/heap.h"
#include "support/table.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using tests::Count;
using tests::Document;
using tests::Feature;
using tests::HandlerOf;
using tests::HresultOf;
using tests::Integer;
using tests::MakeTicket;
using tests::Names;
using utility::Bstr;
using utility::ComPtr;
using utility::FromUtf8;
using xml::XmlUtility::LoadDocumentFromString;
using enum NamespaceId;

constexpr wchar_t kFramework[] =
    L"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework";
constexpr wchar_t kKeywords[] = L"http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords";

/// The text that an operation hands out, or its failure in brackets.
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
    EXPECT_EQ(HresultOf([] { HandlerOf(Document()); }), E_PENDING);
    const std::wstring uri = kFramework;
    const std::wstring refused[] = {
        L"<PrintTicket/>",
        L"<PrintTicket xmlns='" + uri + L"'/>",
        L"<psf:PrintCapabilities xmlns:psf='" + uri + L"'/>",
        L"<x xmlns:psf='" + uri + L"'><psf:PrintTicket/></x>",
        L"<psf:PrintTicket xmlns:psf='" + uri + L"s'/>",
        L"<psf:PrintTicket xmlns='" + uri + L"' xmlns:psf='" + uri + L"'/>",
        L"<psf:PrintTicket xmlns:psf='" + uri + L"' xmlns='" + kKeywords + L"'/>",
        // The first attribute of that value is no declaration of a prefix.
        L"<psf:PrintTicket first='" + uri + L"' xmlns:psf='" + uri + L"' second='" + uri + L"'/>",
    };
    for (const std::wstring& markup : refused)
    {
        const Document document = LoadDocumentFromString(markup);
        EXPECT_EQ(HresultOf([&] { HandlerOf(document); }), E_FAIL) << Bstr(markup).Get();
    }
}

TEST_F(PrintSchemaHandlerTest, TakesADocumentUnderAnyPrefixes)
{
    const Document document = LoadDocumentFromString(
        std::wstring(L"<a:PrintTicket xmlns:k='") + kKeywords + L"' version='1' xmlns:a='" + kFramework +
        L"' xmlns:i='http://www.w3.org/2001/XMLSchema-instance' xmlns:d='http://www.w3.org/2001/XMLSchema'>"
        L"<a:Feature name='k:PageMediaSize'><a:Option name='k:ISOA4'/></a:Feature></a:PrintTicket>");
    const PrintSchemaHandler handler = HandlerOf(document);
    EXPECT_EQ(handler.GetPrefix(Framework).View(), L"a:");
    EXPECT_EQ(handler.GetPrefix(Keywords).View(), L"k:");
    EXPECT_EQ(OptionOf(handler, L"PageMediaSize"), "ISOA4");

    ComPtr<IXMLDOMElement> property;
    ASSERT_EQ(handler.CreatePropertyWithValue(L"P", L"integer", L"7", property.Receive(), Keywords), S_OK);
    ASSERT_EQ(handler.AppendToElement(L"PrintTicket", property.Get()), S_OK);
    EXPECT_EQ(Names(document, L"/a:PrintTicket/a:Property"), L"k:P");
    EXPECT_EQ(
        Count(tests::Reload(document),
              L"/psf:PrintTicket/psf:Property[@name = 'k:P']/psf:Value[. = '7']/@*[. = 'd:integer' and "
              L"local-name() = 'type' and namespace-uri() = 'http://www.w3.org/2001/XMLSchema-instance']"),
        1);
}

TEST_F(PrintSchemaHandlerTest, PassesOverADefaultNamespaceThatItDoesNotLookFor)
{
    const PrintSchemaHandler handler =
        HandlerOf(LoadDocumentFromString(std::wstring(L"<psf:PrintTicket xmlns='urn:other' xmlns:psf='") +
                                         kFramework + L"' xmlns:psk='" + kKeywords + L"'/>"));
    EXPECT_EQ(handler.GetPrefix(Keywords).View(), L"psk:");
    EXPECT_EQ(TextOf([&](BSTR* text) { return handler.DiscoverPrefix(L"urn:other", text); }), "(80004005)");
    EXPECT_EQ(TextOf([&](BSTR* text) { return handler.DiscoverPrefix(L"urn:none", text); }), "(1)");
}

TEST_F(PrintSchemaHandlerTest, KnowsThePrefixOfEachNamespace)
{
    const PrintSchemaHandler handler = HandlerOf(MakeTicket(L""));
    EXPECT_EQ(handler.GetPrefix(Keywords).View(), L"psk:");
    EXPECT_EQ(handler.GetPrefix(Framework).View(), L"psf:");
    EXPECT_EQ(handler.GetPrefix(Private).View(), L"ns0000:");
    EXPECT_EQ(handler.GetPrefix(Fallback).View(), L"ns0000:");
    EXPECT_EQ(HresultOf([&] { handler.GetPrefix(static_cast<NamespaceId>(4)); }), E_INVALIDARG);

    SetPrivatePrefix(L"ven");
    EXPECT_EQ(HandlerOf(MakeTicket(L"")).GetPrefix(Private).View(), L"ven:");
    EXPECT_EQ(handler.GetPrefix(Fallback).View(), L"ns0000:");
    SetPrivatePrefix(nullptr);
    EXPECT_EQ(handler.GetPrefix(Private).View(), L"ns0000:");
}

TEST_F(PrintSchemaHandlerTest, AnswersUnexpectedWithoutAKeywordsPrefix)
{
    const PrintSchemaHandler handler = HandlerOf(tests::LoadTicket(L"nokeywords.xml"));
    for (const NamespaceId id : {Keywords, Framework, Private, Fallback, static_cast<NamespaceId>(4)})
    {
        EXPECT_EQ(HresultOf([&] { handler.GetPrefix(id); }), E_UNEXPECTED);
    }
    EXPECT_EQ(OptionOf(handler, L"PageMediaSize"), "(8000ffff)");
    EXPECT_EQ(handler.RemoveFeature(L"PageMediaSize", Keywords), E_UNEXPECTED);
}

TEST_F(PrintSchemaHandlerTest, ChecksItsArgumentsInOrder)
{
    const Document document = MakeTicket(L"");
    const PrintSchemaHandler handler = HandlerOf(document);
    // A handler that has given its document away has none.
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
        EXPECT_EQ(OptionOf(HandlerOf(MakeTicket(FromUtf8(row[0]))), L"F"), row[1]) << row[0];
    }
    EXPECT_TRUE(FAILED(HandlerOf(MakeTicket(L"")).RemoveFeature(L"quoted\"name", Keywords)));
}

TEST_F(PrintSchemaHandlerTest, ReadsValuesAndFollowsParameters)
{
    const std::wstring parameters =
        Integer(L"ParameterInit", L"psk:Other", L"1") +
        L"\n  <psf:ParameterInit name='psk:P'>\n <psf:Value>-42 mm</psf:Value>\n</psf:ParameterInit>";
    for (const auto& row : support::LoadTable("propertyvalues.txt"))
    {
        const Document ticket = MakeTicket(Feature(L"psk:F", L"psk:O", FromUtf8(row[0])) + parameters);
        const PrintSchemaHandler handler = HandlerOf(ticket);
        EXPECT_EQ(TextOf([&](BSTR* text) {
                      return handler.GetScoredPropertyValue(L"F", L"S", text, Keywords, Keywords, Keywords);
                  }),
                  row[1])
            << row[0];
        std::int32_t number = -7;
        static_cast<void>(
            handler.GetScoredPropertyInteger(L"F", L"S", &number, Keywords, Keywords, Keywords));
        EXPECT_EQ(std::to_string(number), row[2]) << row[0];
    }
    // A parameter that nothing initialises, and an empty value, are a success without text.
    const PrintSchemaHandler handler = HandlerOf(
        MakeTicket(L"<psf:ScoredProperty><psf:ParameterRef name='psk:Missing'/></psf:ScoredProperty>"));
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
    const PrintSchemaHandler handler =
        HandlerOf(MakeTicket(Integer(L"ScoredProperty", L"psk:S", L"psk:a text of some length")));
    BSTR text = nullptr;
    const std::size_t before = tests::CountHeapBlocks();
    for (std::size_t run = 0; run < runs; ++run)
    {
        ASSERT_EQ(handler.GetValueText(L"//psf:ScoredProperty", &text), S_OK);
        ASSERT_EQ(handler.StripKnownPrefix(&text, Private), S_OK);
    }
    EXPECT_LT(tests::CountHeapBlocks(), before + runs / 2);
    EXPECT_EQ(Bstr::Adopt(text).View(), L"a text of some length");
}

TEST_F(PrintSchemaHandlerTest, TellsTheNamespacesOfOptionsApart)
{
    const Qname feature{Keywords, L"F"};
    const std::pair<const wchar_t*, Qname> cases[] = {
        {L"psk:X", {Keywords, L"X"}},
        {L"ns0000:X", {Private, L"X"}},
        {L"ven:X", {Private, L"X"}},
        {L"X", {Keywords, L"X"}},
        {L"psf:X", {}},
        {L"", {}},
    };
    SetPrivatePrefix(L"ven");
    for (const auto& [name, expected] : cases)
    {
        const PrintSchemaHandler handler = HandlerOf(MakeTicket(Feature(L"psk:F", name)));
        const bool isKnown = !expected.localName.empty();
        Qname found;
        Qname option;
        EXPECT_EQ(handler.FindFirstOption({{Private, L"F"}, feature}, {Keywords, Private}, &found, &option),
                  isKnown ? S_OK : kNotFound)
            << name;
        EXPECT_EQ(option, expected) << name;
        EXPECT_EQ(found, isKnown ? feature : Qname()) << name;
    }
}

TEST_F(PrintSchemaHandlerTest, RemovesAFeatureWithTheParametersThatOnlyItUsed)
{
    const auto referring = [](const std::wstring& name) {
        return L"<psf:ParameterRef name='psk:" + name + L"'/>";
    };
    const auto init = [](const std::wstring& name) {
        return Integer(L"ParameterInit", L"psk:" + name, L"1");
    };
    const std::wstring parameters = init(L"A") + init(L"B") + init(L"Shared") + init(L"C");
    Document document =
        MakeTicket(parameters + Feature(L"psk:F", L"psk:O", referring(L"A") + referring(L"Shared")) +
                   Feature(L"psk:Kept", L"psk:O", referring(L"Shared") + referring(L"C")) +
                   Feature(L"psk:F", L"psk:O", referring(L"B")));
    EXPECT_EQ(HandlerOf(document).RemoveFeature(L"F", Keywords), S_FALSE);
    EXPECT_EQ(Names(document, L"//psf:Feature"), L"psk:Kept");
    EXPECT_EQ(Names(document, L"//psf:ParameterInit"), L"psk:Shared psk:C");

    document = MakeTicket(parameters + Feature(L"psk:F", L"psk:O"));
    EXPECT_EQ(HandlerOf(document).RemoveFeature(L"None", Keywords), S_FALSE);
    EXPECT_EQ(Count(document, L"//psf:ParameterInit"), 4);
    EXPECT_EQ(HandlerOf(document).RemoveFeature(L"F", Keywords), S_FALSE);
    EXPECT_EQ(Count(document, L"//psf:ParameterInit"), 0);
}

TEST_F(PrintSchemaHandlerTest, NamesNewElementsByTheirNamespace)
{
    SetPrivatePrefix(L"ven");
    const Document document = MakeTicket(L"");
    const PrintSchemaHandler handler = HandlerOf(document);
    const auto append = [&](HRESULT hr, ComPtr<IXMLDOMElement>& element) {
        EXPECT_EQ(hr, S_OK);
        EXPECT_EQ(handler.AppendToElement(L"PrintTicket", std::exchange(element, {}).Get()), S_OK);
    };
    ComPtr<IXMLDOMElement> first;
    ComPtr<IXMLDOMElement> second;
    for (const wchar_t* name :
         {L"PageWatermarkSizeWidth", L"PageWatermarkSizeHeight", L"pageWatermarkSizeWidth", L"S"})
    {
        append(handler.CreateIntegerParameter(name, -5, first.Receive(), second.Receive()), second);
        append(handler.CreateScoredPropertyWithChild(L"W", first.Get(), second.Receive()), second);
        first = {};
    }
    const std::wstring names =
        L"ven:PageWatermarkSizeWidth ven:PageWatermarkSizeHeight psk:pageWatermarkSizeWidth psk:S";
    EXPECT_EQ(Names(document, L"/psf:PrintTicket/psf:ParameterInit[psf:Value = '-5']"), names);
    EXPECT_EQ(Names(document, L"/psf:PrintTicket/psf:ScoredProperty[@name = 'psk:W']/psf:ParameterRef"),
              names);

    append(handler.CreateFeatureWithOption(L"Bare", first.Receive(), second.Receive(), Private), first);
    EXPECT_EQ(Count(document, L"//psf:Feature[@name = 'ven:Bare']/psf:Option[not(@*) and not(node())]"), 1);
    second = {};
    append(handler.CreateFeatureWithNamedOption(
               L"F", L"O", first.Receive(), second.Receive(), Keywords, Private),
           first);
    EXPECT_EQ(Count(document, L"//psf:Feature[@name = 'psk:F']/psf:Option[@name = 'ven:O']"), 1);
    append(handler.CreateIntegerScoredProperty(L"Width", 297000, first.Receive()), first);
    EXPECT_EQ(Count(document, L"//psf:ScoredProperty[@name = 'psk:Width']/psf:Value[. = '297000']"), 1);

    // A value has no type where the root declares no prefix for it.
    const std::wstring xsd = L" xmlns:xsd='http://www.w3.org/2001/XMLSchema'";
    const std::wstring xsi = L" xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance'";
    const std::pair<std::wstring, const wchar_t*> cases[] = {
        {L"", L"not(@*)"}, {xsd, L"not(@*)"}, {xsi, L"@*[local-name() = 'type'] = 'integer'"}};
    for (const auto& [declared, attributes] : cases)
    {
        const Document bare =
            LoadDocumentFromString(std::wstring(L"<psf:PrintTicket xmlns:psf='") + kFramework +
                                   L"' xmlns:psk='" + kKeywords + L"'" + declared + L"/>");
        ComPtr<IXMLDOMElement> property;
        ASSERT_EQ(HandlerOf(bare).CreateIntegerScoredProperty(L"Width", 7, property.Receive()), S_OK);
        ASSERT_EQ(HandlerOf(bare).AppendToElement(L"PrintTicket", property.Get()), S_OK);
        const std::wstring value = std::wstring(L"//psf:Value[. = '7' and ") + attributes + L"]";
        EXPECT_EQ(Count(tests::Reload(bare), value.c_str()), 1) << declared;
    }
}

TEST_F(PrintSchemaHandlerTest, SharesItsDocumentAndLetsGoOfIt)
{
    const Document document = MakeTicket(Feature(L"psk:F", L"psk:O"));
    document->AddRef();
    const ULONG before = document->Release();
    {
        const PrintSchemaHandler handler = HandlerOf(document);
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the copy is what is tested.
        const PrintSchemaHandler copy = handler;
        EXPECT_EQ(copy.RemoveFeature(L"F", Keywords), S_FALSE);
        EXPECT_EQ(handler.NodeExists(L"//psf:Feature"), kNotFound);
    }
    document->AddRef();
    EXPECT_EQ(document->Release(), before);
}
} // namespace
} // namespace base::xps::printschema
