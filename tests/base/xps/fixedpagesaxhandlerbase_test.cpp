#include "base/xps/fixedpagesaxhandlerbase.h"

#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "base/utility/comptr.h"
#include "base/utility/utf8.h"
#include "base/xps/page/pagetransform.h"
#include "support/saxattributes.h"
#include "support/table.h"
#include "support/thrown.h"

namespace base::xps
{
namespace
{
using support::AttributeList;
using utility::MakeCom;

/// Makes the base's protected functions public.
class Handler final : public FixedPageSaxHandlerBase
{
public:
    using FixedPageSaxHandlerBase::ReadAttributes;
    using FixedPageSaxHandlerBase::RewriteBleedBox;
    using FixedPageSaxHandlerBase::RewriteContentBox;
    using FixedPageSaxHandlerBase::RewritePageSize;

    /// The text that is appended to a tag.
    static std::string BuildAttributeText(const AttributeMap& map)
    {
        std::string tag = "tag";
        FixedPageSaxHandlerBase::BuildAttributeText(map, tag);
        return tag.substr(3);
    }
    static std::string BuildAttributeTextFromSax(ISAXAttributes& attributes)
    {
        std::string tag = "tag";
        FixedPageSaxHandlerBase::BuildAttributeTextFromSax(attributes, tag);
        return tag.substr(3);
    }
};

constexpr PageBox kLetter{0, 0, 816, 1056};

TEST(FixedPageSaxHandlerBase, AnswersEveryCallbackAndDoesNothing)
{
    const auto handler = MakeCom<Handler>();
    for (const HRESULT hr : {handler->putDocumentLocator(nullptr),
                             handler->startDocument(),
                             handler->endDocument(),
                             handler->startPrefixMapping(nullptr, 0, nullptr, 0),
                             handler->endPrefixMapping(nullptr, 0),
                             handler->startElement(nullptr, 0, nullptr, 0, nullptr, 0, nullptr),
                             handler->endElement(nullptr, 0, nullptr, 0, nullptr, 0),
                             handler->characters(nullptr, 0),
                             handler->ignorableWhitespace(nullptr, 0),
                             handler->processingInstruction(nullptr, 0, nullptr, 0),
                             handler->skippedEntity(nullptr, 0)})
    {
        EXPECT_EQ(hr, S_OK);
    }
}

// In a map the key decides whether a value is escaped, from the reader the local name.
TEST(Attributes, ComeBackInKeyOrderFromTheMapAndInDocumentOrderFromTheReader)
{
    const auto list = MakeCom<AttributeList>(AttributeList::Attributes{{L"xml:lang", L"en-US"},
                                                                       {L"Width", L"816"},
                                                                       {L"xmlns", L"urn:<page>"},
                                                                       {L"Height", L"1056"},
                                                                       {L"UnicodeString", L"a<b & \"c\""},
                                                                       {L"p:UnicodeString", L"<"}});
    AttributeMap map{{L"Stale", L"1"}};
    Handler::ReadAttributes(*list, map);
    EXPECT_EQ(Handler::BuildAttributeText(map),
              " Height=\"1056\" UnicodeString=\"a&lt;b &amp; &quot;c&quot;\" Width=\"816\""
              " p:UnicodeString=\"<\" xml:lang=\"en-US\" xmlns=\"urn:<page>\"");
    EXPECT_EQ(Handler::BuildAttributeTextFromSax(*list),
              " xml:lang=\"en-US\" Width=\"816\" xmlns=\"urn:<page>\" Height=\"1056\""
              " UnicodeString=\"a&lt;b &amp; &quot;c&quot;\" p:UnicodeString=\"&lt;\"");
    EXPECT_EQ(Handler::BuildAttributeText({}), "");
}

TEST(Attributes, StopSilentlyWhereTheReaderFails)
{
    const AttributeMap two{{L"a", L"1"}, {L"b", L"2"}};
    // Fails at the count, and at the name and the value of the third attribute.
    for (const auto& [answers, expected] :
         {std::pair(0, AttributeMap()), std::pair(5, two), std::pair(6, two)})
    {
        const auto list =
            MakeCom<AttributeList>(AttributeList::Attributes{{L"a", L"1"}, {L"b", L"2"}, {L"c", L"3"}});
        AttributeMap map{{L"Stale", L"1"}};
        list->answers = answers;
        Handler::ReadAttributes(*list, map);
        EXPECT_EQ(map, expected);
        list->answers = answers;
        EXPECT_EQ(Handler::BuildAttributeTextFromSax(*list), "");
    }
}

TEST(RewritePageSize, NeedsWidthAndHeight)
{
    GdiMatrix matrix;
    for (AttributeMap incomplete : {AttributeMap{{L"Width", L"1"}}, AttributeMap{{L"Height", L"1"}}})
    {
        EXPECT_EQ(support::MessageOf<std::logic_error>([&] { Handler::RewritePageSize(matrix, incomplete); }),
                  "base\\xps\\fixedpagesaxhandlerbase(...) : FixedPage Hegiht/Width attribute is required by "
                  "XPS.\n");
    }
}

TEST(RewriteBoxes, KeepsABleedBoxThatCoversThePageAndAContentBoxWithinIt)
{
    for (const auto& row : support::LoadTable("boxes.txt"))
    {
        const std::wstring name = utility::FromUtf8(row[0]);
        GdiMatrix matrix;
        ComputePageTransform(kLetter, std::stof(row[2]), 1, matrix);
        AttributeMap map{{name, utility::FromUtf8(row[1])}, {L"Width", L"816"}};
        Handler::RewriteBleedBox(kLetter, matrix, map);
        Handler::RewriteContentBox(kLetter, matrix, map);
        AttributeMap expected{{L"Width", L"816"}};
        if (row[3] != "dropped")
        {
            expected[name] = utility::FromUtf8(row[3]);
        }
        EXPECT_EQ(map, expected) << row[0] << " " << row[1] << " by " << row[2];
    }
}
} // namespace
} // namespace base::xps
