#include "base/xml/xmlutility.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "support/failures.h"
#include "support/thrown.h"
#include "support/tickets.h"

namespace base::xml::XmlUtility
{
namespace
{
using support::HresultOf;

LONGLONG PositionOf(IStream& stream)
{
    ULARGE_INTEGER position{};
    EXPECT_EQ(stream.Seek(LARGE_INTEGER{}, STREAM_SEEK_CUR, &position), S_OK);
    return static_cast<LONGLONG>(position.QuadPart);
}

TEST(XmlUtility, CreatesASynchronousDocumentThatFetchesNothing)
{
    const auto document = CreateDocument();
    VARIANT_BOOL setting = VARIANT_TRUE;
    ASSERT_EQ(document->get_async(&setting), S_OK);
    EXPECT_EQ(setting, VARIANT_FALSE);
    ASSERT_EQ(document->get_resolveExternals(&setting), S_OK);
    EXPECT_EQ(setting, VARIANT_FALSE);
    ASSERT_EQ(document->get_validateOnParse(&setting), S_OK);
    EXPECT_EQ(setting, VARIANT_FALSE);
}

TEST(XmlUtility, RefusesMarkupThatIsNotWellFormed)
{
    for (const wchar_t* markup : {L"", L"<a>", L"<a b='1' b='2'/>", L"<!DOCTYPE a><a/>"})
    {
        EXPECT_EQ(HresultOf([&] { LoadDocumentFromString(markup); }), E_FAIL) << markup;
    }
    EXPECT_TRUE(FAILED(HresultOf([] { LoadDocumentFromFile(L"tickets/missing.xml"); })));
    EXPECT_EQ(HresultOf([] { LoadDocumentFromFile(L"tickets/truncated.xml"); }), E_FAIL);
}

TEST(XmlUtility, RefusesADocumentTypeInAStreamAndLeavesItWhereItIs)
{
    const auto stream = SaveDocument(LoadDocumentFromString(L"<a/>").Get());
    const LARGE_INTEGER second{{1, 0}};
    const std::string text = "x<!---->" + std::string(9000, ' ') + "<a/>";
    ASSERT_EQ(stream->Write(text.data(), static_cast<ULONG>(text.size()), nullptr), S_OK);
    EXPECT_EQ(HresultOf([&] { RefuseDocumentType(*stream.Get()); }), S_OK);
    ASSERT_EQ(stream->Seek(second, STREAM_SEEK_SET, nullptr), S_OK);
    RefuseDocumentType(*stream.Get());
    EXPECT_EQ(PositionOf(*stream), 1);

    ASSERT_EQ(stream->Write("<!DOCTYPE a>", 12, nullptr), S_OK);
    ASSERT_EQ(stream->Seek(second, STREAM_SEEK_SET, nullptr), S_OK);
    EXPECT_EQ(HresultOf([&] { RefuseDocumentType(*stream.Get()); }), E_FAIL);
}

void ExpectSaved(const wchar_t* declaration, int declarationsLeft)
{
    const auto document = LoadDocumentFromString(std::wstring(declaration) + L"<a b='\x20AC'>text</a>");
    EXPECT_EQ(PositionOf(*SaveDocument(document.Get())), 0);
    EXPECT_EQ(support::Count(document, "/a[@b = '\xE2\x82\xAC' and . = 'text']"), 1) << declaration;
    EXPECT_EQ(support::Count(document, "/processing-instruction()"), declarationsLeft) << declaration;
}

TEST(XmlUtility, SavesADocumentThatLoadsAgainFromTheStreamsStart)
{
    ExpectSaved(L"<?xml version='1.0' encoding='utf-8'?>", 1);
    ExpectSaved(L"<?p encoding='utf-16'?>", 1);
    EXPECT_EQ(support::MessageOf<std::invalid_argument>([] { SaveDocument(nullptr); }),
              "base\\xml\\xmlutility(...) : pDom is null.\n");
}

TEST(XmlUtility, SavesWhatWasInAnotherEncoding)
{
    ExpectSaved(L"<?xml version='1.0' encoding='UTF-16'?>", 0);
    ExpectSaved(L"<?xml version='1.0' encoding='iso-8859-1'?>", 0);
}
} // namespace
} // namespace base::xml::XmlUtility
