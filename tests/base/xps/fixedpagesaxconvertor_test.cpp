#include "base/xps/fixedpagesaxconvertor.h"

#include <cwchar>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "base/io/printreadstreamtoistream.h"
#include "base/io/printstreambuffer.h"
#include "base/logging/errors.h"
#include "base/xps/markupreader.h"
#include "support/printstreams.h"
#include "support/saxattributes.h"
#include "support/table.h"
#include "support/thrown.h"

namespace
{
bool g_areElementsLost = false;
} // namespace

/// Replaces GDI+'s function; it can be made to fail.
extern "C" Gdiplus::GpStatus WINGDIPAPI GdipGetMatrixElements(const Gdiplus::GpMatrix* matrix,
                                                              Gdiplus::REAL* elements)
{
    using Function = decltype(GdipGetMatrixElements);
    static auto* const own = reinterpret_cast<Function*>(
        reinterpret_cast<void (*)()>(GetProcAddress(LoadLibraryW(L"gdiplus.dll"), "GdipGetMatrixElements")));
    return g_areElementsLost ? Gdiplus::GenericError : own(matrix, elements);
}

namespace base::xps
{
namespace
{
using support::MemoryReadStream;
using support::MemoryWriteStream;
using utility::MakeCom;

class Markup : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_GE(CoInitializeEx(nullptr, COINIT_MULTITHREADED), 0); }
    void TearDown() override
    {
        EXPECT_EQ(support::LifeCounted::Alive(), 0);
        CoUninitialize();
    }
};

std::string FileContent(const char* path)
{
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

void Parse(const std::string& markup, ISAXContentHandler& handler)
{
    const auto source = MakeCom<MemoryReadStream>(markup);
    source->longest = 1000;
    const auto stream = MakeCom<io::PrintReadStreamToIStream>(source.Get());
    ParseMarkup(*stream, handler);
}

/// Rewrites markup from one print stream into another, as for a page.
std::string Turned(const std::string& markup)
{
    const auto target = MakeCom<MemoryWriteStream>();
    io::PrintStreamBuffer buffer(target.Get());
    std::ostream output(&buffer);
    const auto convertor = MakeCom<FixedPageSaxConvertor>(output, 270.0F, 1.0F);
    Parse(markup, *convertor);
    EXPECT_TRUE(output.good());
    return target->bytes;
}

TEST_F(Markup, IsTurnedByteForByteAsRecorded)
{
    EXPECT_EQ(Turned(FileContent("markup/page.fpage")), FileContent("markup/page.turned.fpage"));
    // A prefix of the page is kept, that of its resources is lost, and a page without a size counts as 0 x 0.
    for (const auto& row : support::LoadTable("markup/turned.txt"))
    {
        EXPECT_EQ(Turned(row[0]), R"(<?xml version="1.0" encoding="utf-8"?>)" + row[1]);
    }
}

TEST_F(Markup, MayComeInAnyEncodingWithAByteOrderMark)
{
    const std::string ascii = R"(<FixedPage Width="10" Height="20" xmlns="urn:p"/>)";
    const std::string expected = Turned(ascii);
    std::string utf16 = "\xFF\xFE";
    for (const char c : ascii)
    {
        utf16.append({c, '\0'});
    }
    EXPECT_EQ(Turned("\xEF\xBB\xBF" + ascii + " \r\n"), expected);
    EXPECT_EQ(Turned(utf16), expected);
}

TEST_F(Markup, EndsInAFailureWhereItIsMalformed)
{
    for (const char* markup : {"", "<FixedPage", "<FixedPage><Path></FixedPage>", "<FixedPage a='1' a='2'/>"})
    {
        EXPECT_THROW(Turned(markup), exception::HresultError) << markup;
    }
}

class ConvertorTest : public ::testing::Test
{
protected:
    HRESULT Start(const wchar_t* name)
    {
        const int length = static_cast<int>(std::wcslen(name));
        return convertor->startElement(L"", 0, name, length, name, length, none.Get());
    }

    std::ostringstream output;
    const utility::ComPtr<support::AttributeList> none = MakeCom<support::AttributeList>();
    utility::ComPtr<FixedPageSaxConvertor> convertor = MakeCom<FixedPageSaxConvertor>(output, 270.0F, 1.0F);
};

TEST_F(ConvertorTest, ClosesWhatAnInterruptedParseLeftOpenFromTheInsideOut)
{
    EXPECT_EQ(convertor->endElement(nullptr, 0, nullptr, 0, nullptr, 0), E_FAIL);
    EXPECT_EQ(Start(L"A"), S_OK);
    EXPECT_EQ(Start(L"p:B"), S_OK);
    EXPECT_EQ(GdiplusGuard::GetUserCount(), 1U);
    convertor = {};
    EXPECT_EQ(output.str(), "<A><p:B></p:B></A>");
    EXPECT_EQ(GdiplusGuard::GetUserCount(), 0U);
}

TEST_F(ConvertorTest, ClosesNothingOfAPageWhoseTransformCannotBeTold)
{
    g_areElementsLost = true;
    EXPECT_EQ(support::MessageOf<std::logic_error>([&] { Start(L"FixedPage"); }),
              "base\\xps\\page\\pagetransform(...) : Matrix.GetElements failed.\n");
    g_areElementsLost = false;
    EXPECT_EQ(output.str(), R"(<FixedPage Height="0.00" Width="0.00">)");
}

TEST(ElementTagWriter, MakesTagsOfItsText)
{
    std::ostringstream output;
    {
        ElementTagWriter writer(output);
        EXPECT_EQ(writer.CleanTagText("  <<a b>  "), "a b");
        EXPECT_EQ(writer.CleanTagText("< a >"), " a ");
        EXPECT_EQ(writer.CleanTagText(" <> "), "");
        EXPECT_EQ(writer.MakeStartTag("a b=\"1\""), "<a b=\"1\">");
        EXPECT_EQ(writer.MakeEndTag("a b=\"1\""), "</a>");
        EXPECT_EQ(writer.MakeEndTag("a"), "</a>");
        for (std::string text : {"page x=\"1\"", "canvas"})
        {
            writer.WriteStartTag(text);
        }
        EXPECT_EQ(output.str(), "<page x=\"1\"><canvas>");
    }
    EXPECT_EQ(output.str(), "<page x=\"1\"><canvas></canvas></page>");
}

/// Throws or fails at the first element.
class FailingHandler final : public FixedPageSaxHandlerBase
{
public:
    STDMETHODIMP startElement(
        const wchar_t*, int, const wchar_t*, int, const wchar_t*, int, ISAXAttributes*) override
    {
        ++calls;
        if (throws)
        {
            throw std::out_of_range("first element");
        }
        return E_FAIL;
    }

    bool throws = true;
    int calls = 0;
};

TEST_F(Markup, BringsAHandlersExceptionOutAsItWasThrownAndItsFailureAsOneOfTheParse)
{
    const auto handler = MakeCom<FailingHandler>();
    EXPECT_EQ(support::MessageOf<std::out_of_range>([&] { Parse("<a><b/><b/></a>", *handler); }),
              "first element");
    EXPECT_EQ(handler->calls, 1);
    handler->throws = false;
    EXPECT_THROW(Parse("<a><b/></a>", *handler), exception::HresultError);
}
} // namespace
} // namespace base::xps
