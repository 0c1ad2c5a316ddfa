#include "base/xps/fixedpagesaxhandlerbase.h"

#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/utility/comptr.h"
#include "base/xps/pagetransform.h"
#include "support/saxattributes.h"
#include "support/thrown.h"

namespace base::xps
{
namespace
{
using support::AttributeList;
using utility::MakeCom;

/// Opens what the base offers to derived handlers.
class Handler final : public FixedPageSaxHandlerBase
{
public:
    using FixedPageSaxHandlerBase::BuildAttributeText;
    using FixedPageSaxHandlerBase::BuildAttributeTextFromSax;
    using FixedPageSaxHandlerBase::ReadAttributes;
    using FixedPageSaxHandlerBase::RewriteBleedBox;
    using FixedPageSaxHandlerBase::RewriteContentBox;
    using FixedPageSaxHandlerBase::RewritePageSize;
};

constexpr PageBox kLetter{0, 0, 816, 1056};

TEST(FixedPageSaxHandlerBase, AnswersEveryCallbackAndDoesNothing)
{
    const auto handler = MakeCom<Handler>();
    EXPECT_EQ(handler->putDocumentLocator(nullptr), S_OK);
    EXPECT_EQ(handler->startDocument(), S_OK);
    EXPECT_EQ(handler->endDocument(), S_OK);
    EXPECT_EQ(handler->startPrefixMapping(nullptr, 0, nullptr, 0), S_OK);
    EXPECT_EQ(handler->endPrefixMapping(nullptr, 0), S_OK);
    EXPECT_EQ(handler->startElement(nullptr, 0, nullptr, 0, nullptr, 0, nullptr), S_OK);
    EXPECT_EQ(handler->endElement(nullptr, 0, nullptr, 0, nullptr, 0), S_OK);
    EXPECT_EQ(handler->characters(nullptr, 0), S_OK);
    EXPECT_EQ(handler->ignorableWhitespace(nullptr, 0), S_OK);
    EXPECT_EQ(handler->processingInstruction(nullptr, 0, nullptr, 0), S_OK);
    EXPECT_EQ(handler->skippedEntity(nullptr, 0), S_OK);
    EXPECT_TRUE(utility::ComPtr<ISAXContentHandler>(handler.Get()).TryQuery<ISAXContentHandler>());
}

TEST(Attributes, ComeBackInKeyOrderFromTheMapAndInDocumentOrderFromTheReader)
{
    const auto list = MakeCom<AttributeList>(AttributeList::Attributes{{L"xml:lang", L"en-US"},
                                                                       {L"Width", L"816"},
                                                                       {L"xmlns", L"urn:<page>"},
                                                                       {L"Height", L"1056"},
                                                                       {L"UnicodeString", L"a<b & \"c\""}});
    AttributeMap map{{L"Stale", L"1"}};
    Handler::ReadAttributes(*list, map);
    EXPECT_EQ(Handler::BuildAttributeText(map),
              L" Height=\"1056\" UnicodeString=\"a&lt;b &amp; &quot;c&quot;\" Width=\"816\""
              L" xml:lang=\"en-US\" xmlns=\"urn:<page>\"");
    EXPECT_EQ(Handler::BuildAttributeTextFromSax(*list),
              L" xml:lang=\"en-US\" Width=\"816\" xmlns=\"urn:<page>\" Height=\"1056\""
              L" UnicodeString=\"a&lt;b &amp; &quot;c&quot;\"");
    EXPECT_EQ(Handler::BuildAttributeText({}), L"");
}

TEST(Attributes, AreEscapedByKeyInTheMapAndByLocalNameFromTheReader)
{
    const auto list = MakeCom<AttributeList>(AttributeList::Attributes{{L"p:UnicodeString", L"<"}});
    AttributeMap map;
    Handler::ReadAttributes(*list, map);
    EXPECT_EQ(Handler::BuildAttributeText(map), L" p:UnicodeString=\"<\"");
    EXPECT_EQ(Handler::BuildAttributeTextFromSax(*list), L" p:UnicodeString=\"&lt;\"");
}

TEST(Attributes, StopSilentlyWhereTheReaderFails)
{
    const AttributeList::Attributes three{{L"a", L"1"}, {L"b", L"2"}, {L"c", L"3"}};
    const auto failingName = MakeCom<AttributeList>(three);
    failingName->failingName = 2;
    const auto failingValue = MakeCom<AttributeList>(three);
    failingValue->failingValue = 2;
    for (const auto& list : {failingName, failingValue})
    {
        AttributeMap map;
        Handler::ReadAttributes(*list, map);
        EXPECT_EQ(map, (AttributeMap{{L"a", L"1"}, {L"b", L"2"}}));
        EXPECT_EQ(Handler::BuildAttributeTextFromSax(*list), L"");
    }
    const auto failingLength = MakeCom<AttributeList>(three);
    failingLength->lengthResult = E_FAIL;
    AttributeMap map{{L"Stale", L"1"}};
    Handler::ReadAttributes(*failingLength, map);
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(Handler::BuildAttributeTextFromSax(*failingLength), L"");
}

TEST(RewritePageSize, ExchangesWidthAndHeightOfATurnedPage)
{
    GdiMatrix matrix;
    ComputePageTransform(kLetter, 270, 1, matrix);
    AttributeMap map{{L"Width", L"816"}, {L"Height", L"1056"}};
    Handler::RewritePageSize(matrix, map);
    EXPECT_EQ(map, (AttributeMap{{L"Width", L"1056.00"}, {L"Height", L"816.00"}}));

    for (const AttributeMap& incomplete : {AttributeMap{{L"Width", L"1"}}, AttributeMap{{L"Height", L"1"}}})
    {
        AttributeMap changed = incomplete;
        const std::string message =
            support::MessageOf<std::logic_error>([&] { Handler::RewritePageSize(matrix, changed); });
        EXPECT_TRUE(message.ends_with(" : FixedPage Hegiht/Width attribute is required by XPS.\n"))
            << message;
    }
}

struct BoxCase
{
    const char* name;
    const wchar_t* value;
    float angleDegrees;
    // Null for a box that is dropped.
    const wchar_t* expected;
};

void ExpectRewritten(const BoxCase& given,
                     const wchar_t* attribute,
                     void (*rewrite)(const PageBox&, GdiMatrix&, AttributeMap&))
{
    GdiMatrix matrix;
    ComputePageTransform(kLetter, given.angleDegrees, 1, matrix);
    AttributeMap map{{attribute, given.value}, {L"Width", L"816"}};
    rewrite(kLetter, matrix, map);
    AttributeMap expected{{L"Width", L"816"}};
    if (given.expected != nullptr)
    {
        expected[attribute] = given.expected;
    }
    EXPECT_EQ(map, expected) << given.name;
}

TEST(RewriteBleedBox, KeepsOneThatCoversThePage)
{
    const std::vector<BoxCase> cases = {
        {"around", L"-10,-10,836,1076", 0, L"-10.00,-10.00,826.00,1066.00"},
        {"exactly the page", L"0,0,816,1056", 0, L"0.00,0.00,816.00,1056.00"},
        {"turned and wide enough", L"0,0,1056,816", 270, L"0.00,0.00,816.00,1056.00"},
        {"turned and too small", L"0,0,816,1056", 270, nullptr},
        {"right of the edge", L"1,0,816,1056", 0, nullptr},
        {"below the edge", L"0,1,816,1056", 0, nullptr},
        {"too narrow", L"0,0,815,1056", 0, nullptr},
        {"too low", L"0,0,816,1055", 0, nullptr},
        {"empty field", L"-1,,-2,900,1100", 0, L"-1.00,-2.00,899.00,1098.00"},
        {"three numbers", L"0,0,816", 0, nullptr},
        {"five numbers", L"0,0,816,1056,1", 0, nullptr},
        {"empty", L"", 0, nullptr},
    };
    for (const BoxCase& given : cases)
    {
        ExpectRewritten(given, L"BleedBox", Handler::RewriteBleedBox);
    }
}

TEST(RewriteContentBox, KeepsOneThatLiesWithinThePage)
{
    const std::vector<BoxCase> cases = {
        {"exactly the page", L"0,0,816,1056", 0, L"0.00,0.00,816.00,1056.00"},
        {"with a corner of its own", L"96,48,100,200", 0, L"96.00,48.00,196.00,248.00"},
        {"turned in its place", L"96,48,100,200", 270, L"96.00,48.00,296.00,148.00"},
        {"turned and too wide", L"0,0,816,1056", 270, nullptr},
        {"left of the edge", L"-1,0,10,10", 0, nullptr},
        {"above the edge", L"0,-1,10,10", 0, nullptr},
        {"too wide", L"0,0,817,10", 0, nullptr},
        {"too high", L"0,0,10,1057", 0, nullptr},
        {"not a box", L"0,0", 0, nullptr},
    };
    for (const BoxCase& given : cases)
    {
        ExpectRewritten(given, L"ContentBox", Handler::RewriteContentBox);
    }
}

TEST(RewriteBoxes, LeaveAPageWithoutBoxesAlone)
{
    GdiMatrix matrix;
    AttributeMap map{{L"Width", L"816"}};
    Handler::RewriteBleedBox(kLetter, matrix, map);
    Handler::RewriteContentBox(kLetter, matrix, map);
    EXPECT_EQ(map.size(), 1U);
}
} // namespace
} // namespace base::xps
