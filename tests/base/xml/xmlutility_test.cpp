#include "base/xml/xmlutility.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "base/utility/variant.h"
#include "support/failures.h"
#include "support/tickets.h"

namespace base::xml::XmlUtility
{
namespace
{
using tests::HresultOf;
using tests::MessageOf;

TEST(XmlUtility, CreatesASynchronousDocumentThatFetchesNothing)
{
    const auto document = CreateDocument();
    VARIANT_BOOL isAsync = VARIANT_TRUE;
    ASSERT_EQ(document->get_async(&isAsync), S_OK);
    EXPECT_EQ(isAsync, VARIANT_FALSE);
    VARIANT_BOOL resolves = VARIANT_TRUE;
    ASSERT_EQ(document->get_resolveExternals(&resolves), S_OK);
    EXPECT_EQ(resolves, VARIANT_FALSE);
    VARIANT_BOOL validates = VARIANT_TRUE;
    ASSERT_EQ(document->get_validateOnParse(&validates), S_OK);
    EXPECT_EQ(validates, VARIANT_FALSE);
}

TEST(XmlUtility, RefusesMarkupThatIsNotWellFormed)
{
    for (const wchar_t* markup : {L"", L"<a>", L"<a></b>", L"text", L"<a b='1' b='2'/>", L"<!DOCTYPE a><a/>"})
    {
        std::string source;
        EXPECT_EQ(HresultOf([&] { LoadDocumentFromString(markup); }, &source), E_FAIL) << markup;
        EXPECT_EQ(source, "base\\xml\\xmlutility");
    }
    EXPECT_TRUE(FAILED(HresultOf([] { LoadDocumentFromFile(tests::DataPath(L"tickets/missing.xml")); })));
    EXPECT_EQ(HresultOf([] { LoadDocumentFromFile(tests::DataPath(L"tickets/truncated.xml")); }), E_FAIL);
}

TEST(XmlUtility, RefusesADocumentTypeInAStreamAndLeavesItWhereItIs)
{
    const auto stream = SaveDocument(LoadDocumentFromString(L"<a/>").Get());
    const LARGE_INTEGER second{{1, 0}};
    ASSERT_EQ(stream->Write("x<!---->", 8, nullptr), S_OK);
    ASSERT_EQ(stream->Write(std::string(9000, ' ').c_str(), 9000, nullptr), S_OK);
    ASSERT_EQ(stream->Write("<a/>", 4, nullptr), S_OK);
    EXPECT_EQ(HresultOf([&] { RefuseDocumentType(*stream.Get()); }), S_OK);
    ASSERT_EQ(stream->Seek(second, STREAM_SEEK_SET, nullptr), S_OK);
    RefuseDocumentType(*stream.Get());
    ULARGE_INTEGER position{};
    ASSERT_EQ(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_CUR, &position), S_OK);
    EXPECT_EQ(position.QuadPart, 1U);

    ASSERT_EQ(stream->Write("<!DOCTYPE a>", 12, nullptr), S_OK);
    ASSERT_EQ(stream->Seek(second, STREAM_SEEK_SET, nullptr), S_OK);
    std::string source;
    EXPECT_EQ(HresultOf([&] { RefuseDocumentType(*stream.Get()); }, &source), E_FAIL);
    EXPECT_EQ(source, "base\\xml\\xmlutility");
}

void ExpectSaved(const wchar_t* declaration, int declarationsLeft)
{
    const auto original = LoadDocumentFromString(std::wstring(declaration) + L"<a b='\x20AC'>text</a>");
    const auto stream = SaveDocument(original.Get());
    ULARGE_INTEGER position{};
    ASSERT_EQ(stream->Seek(LARGE_INTEGER{}, STREAM_SEEK_CUR, &position), S_OK);
    EXPECT_EQ(position.QuadPart, 0U);

    const auto copy = CreateDocument();
    VARIANT_BOOL loaded = VARIANT_FALSE;
    ASSERT_EQ(copy->load(utility::Variant(stream.Get()).Get(), &loaded), S_OK) << declaration;
    EXPECT_EQ(tests::Count(copy, L"/a[@b = '\x20AC' and . = 'text']"), 1) << declaration;
    EXPECT_EQ(tests::Count(copy, L"/processing-instruction()"), declarationsLeft) << declaration;
}

TEST(XmlUtility, SavesADocumentThatLoadsAgainFromTheStreamsStart)
{
    ExpectSaved(L"", 0);
    ExpectSaved(L"<?xml version='1.0'?>", 1);
    ExpectSaved(L"<?xml version='1.0' encoding='utf-8'?>", 1);
    ExpectSaved(L"<?p encoding='utf-16'?>", 1);
}

TEST(XmlUtility, SavesWhatWasInAnotherEncoding)
{
    ExpectSaved(L"<?xml version='1.0' encoding='UTF-16'?>", 0);
    ExpectSaved(L"<?xml version='1.0' encoding='iso-8859-1'?>", 0);
}

TEST(XmlUtility, RefusesToSaveNull)
{
    EXPECT_EQ(MessageOf<std::invalid_argument>([] { SaveDocument(nullptr); }),
              "base\\xml\\xmlutility(...) : pDom is null.\n");
}
} // namespace
} // namespace base::xml::XmlUtility
