#include "host/xml/reader.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "host/xml/writer.h"
#include "tests/host/testpackages.h"

namespace host::xml
{
namespace
{
/// What the start tags of `markup` say, one a line, or the fault.
std::string Describe(std::string_view markup)
{
    std::string tags;
    const std::string fault = FaultOf<MarkupError>([&] {
        ReadElements(markup, [&](const Element& element) {
            const std::string* const a = element.Find("a");
            tags += std::to_string(element.depth) + "{" + element.namespaceUri + "}" + element.localName +
                    (a != nullptr ? "=" + *a : "") + ";";
        });
    });
    return fault == kNoFault ? tags : fault;
}

TEST(Reader, ReadsEveryEncodingOfAPackage)
{
    const std::string expected = "0{urn:n}r=\xC3\xA9\xF0\x9F\x98\x80;1{}c;";
    const std::u16string wide = u"<n:r xmlns:n=\"urn:n\" n:a=\"no\" a=\"\u00E9\U0001F600\"><c/></n:r>\r\n";
    const std::string narrow = "<n:r xmlns:n=\"urn:n\" n:a=\"no\" a=\"\xC3\xA9\xF0\x9F\x98\x80\"><c/></n:r>";
    EXPECT_EQ(Describe(narrow), expected);
    EXPECT_EQ(Describe("\xEF\xBB\xBF" + narrow), expected);
    EXPECT_EQ(Describe("<?xml version='1.0' encoding='UTF-8'?>\n" + narrow), expected);
    EXPECT_EQ(Describe("\xEF\xBB\xBF<?xml version='1.0'?>" + narrow), expected);
    EXPECT_EQ(Describe("<?xml version='1.0' encoding='utf-16'?>" + narrow), expected);
    for (const bool bigEndian : {false, true})
    {
        for (const std::u16string_view start : {u"",
                                                u"\uFEFF",
                                                u"\uFEFF<?xml version=\"1.0\" encoding=\"utf-16\"?>",
                                                u"<?xml version='1.0'?>\n"})
        {
            EXPECT_EQ(Describe(ToUtf16(std::u16string(start) + wide, bigEndian)), expected)
                << bigEndian << start.size();
        }
    }
}

TEST(Reader, SaysWhyMarkupCannotBeRead)
{
    const std::pair<std::string, const char*> faults[] = {
        {"<a>\n<b></a>", "is not well-formed: line 2, column "},
        {"<?xml version='1.0'?>\n\n<a", "is not well-formed: line 3, column "},
        {"", "is empty"},
        {"  \n", "is empty"},
        {"text", "is not well-formed: "},
        {"<!-- no element -->", "is empty"},
        {"<?xml version='1.0' encoding=?><a/>", "is not well-formed: "},
        {"<?xml version='1.0'" + std::string(1020, ' ') + "?><a/>",
         "has an XML declaration of more than 1024"},
        {"<a b='\xFF'/>", "is not well-formed: "},
        {"<a>&b;</a>", "is not well-formed: "},
        {std::string("\xFF\xFE<", 3), "is not valid UTF-16"},
        {ToUtf16(u"<a b='\xD800'/>"), "is not valid UTF-16"},
        {ToUtf16(u"<a b='\xDC00\xDC00'/>", true), "is not valid UTF-16"},
        {"<?xml version='1.0' encoding=\"windows-1252\"?><a/>", "is encoded in windows-1252, "},
        {"<?xml version='1.0'", "is not well-formed: "},
        {"<!DOCTYPE a><a/>", "declares a document type"},
        {" <!-- <a> --><?p <a> ?>\n<!DOCTYPE a [<!ENTITY b 'c'>]><a/>", "declares a document type"},
        {ToUtf16(u"\uFEFF<!DOCTYPE a><a/>", true), "declares a document type"},
    };
    for (const auto& [markup, expected] : faults)
    {
        const std::string fault = Describe(markup);
        EXPECT_TRUE(fault.starts_with(expected)) << markup << " gives " << fault;
        EXPECT_EQ(FindMarkupFault(markup), fault);
    }
    EXPECT_EQ(Describe("<a><!-- <!DOCTYPE --></a>"), "0{}a;");
    EXPECT_EQ(FindMarkupFault("<a/>"), "");
}

std::string Repeat(std::string_view text, int count)
{
    std::string repeated;
    while (count-- > 0)
    {
        repeated += text;
    }
    return repeated;
}

TEST(Reader, RefusesWhatReadersTakeTooLongFor)
{
    const auto nested = [](int depth) { return Repeat("<a>", depth) + Repeat("</a>", depth); };
    const auto attributed = [](int count) {
        std::string tag = "<a";
        for (int number = 0; number < count; ++number)
        {
            tag += " a" + std::to_string(number) + "='=>'";
        }
        return tag + "/>";
    };
    EXPECT_EQ(FindMarkupFault(nested(200)), "");
    EXPECT_EQ(FindMarkupFault(nested(1001)), "nests elements more than 1000 deep");
    EXPECT_EQ(FindMarkupFault("<a>" + Repeat("<b/><c x='/'></c><!-- <d> --><?e <f> ?><![CDATA[<g>]]>", 2000) +
                              "</a>"),
              "");
    EXPECT_EQ(FindMarkupFault("<a b='" + Repeat("&amp;", 10000) + "'/>"), "");
    EXPECT_EQ(FindMarkupFault("<a b='" + Repeat("&amp;", 10001) + "'/>"),
              "has an element with more than 10000 references");
    EXPECT_EQ(FindMarkupFault(attributed(1000)), "");
    EXPECT_EQ(FindMarkupFault(attributed(1001)), "has an element with more than 1000 attributes");
}

TEST(Reader, LetsThroughToAnotherReaderWhatHasNoDocumentType)
{
    for (const char* passed : {"<?xml version='1.0'?><!-- <!DOCTYPE --><a>&b;<c", "", "text", "<?XML?><a/>"})
    {
        EXPECT_NO_THROW(RequireSafeMarkup(passed)) << passed;
    }
    for (const std::string& unsafe : {std::string("<!DOCTYPE a><a>"),
                                      std::string("<?XML?><!DOCTYPE a><a/>"),
                                      std::string("<?xml version='1.0' encoding='x'?><a/>"),
                                      "<a>" + Repeat("<a>", 1000)})
    {
        EXPECT_THROW(RequireSafeMarkup(unsafe), MarkupError) << unsafe;
    }
}

TEST(Reader, LetsTheCallersExceptionThroughWithItsType)
{
    int seen = 0;
    const auto fail = [&](const Element&) { ++seen == 2 ? throw std::out_of_range("b") : void(); };
    EXPECT_THROW(ReadElements("<a><b/><c/></a>", fail), std::out_of_range);
    EXPECT_EQ(seen, 2);
}

/// Keeps the attribute "a" of the root and the text in it.
class TextListener final : public Listener
{
public:
    bool WantsText() const override { return true; }
    void OnStart(Element element) override { read += *element.Find("a") + "|"; }
    void OnText(const std::string& text) override { read += text; }

    std::string read;
};

TEST(Writer, IsReadBackAsItWasWritten)
{
    const std::string text = "a&<>\"'\t\r\n \xC3\xA9";
    Writer writer;
    writer.Start("r");
    writer.Attribute("a", text);
    writer.Text(text);
    writer.End();
    TextListener listener;
    Reader().Read(writer.Take(), listener);
    EXPECT_EQ(listener.read, text + "|" + text);
}

TEST(Reader, TakesNamespaceNamesThatHoldBlanks)
{
    EXPECT_EQ(Describe("<n:r xmlns:n='http://vendor.example/My Driver'/>"),
              "0{http://vendor.example/My Driver}r;");
}
} // namespace
} // namespace host::xml
