#include "host/xml/elementreader.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "host/xml/markuptext.h"

namespace host::xml
{
namespace
{
std::string ToUtf16(std::u16string_view text, bool bigEndian)
{
    std::string bytes;
    for (const char16_t unit : text)
    {
        const char high = static_cast<char>(unit >> 8);
        const char low = static_cast<char>(unit & 0xFF);
        bytes.append({bigEndian ? high : low, bigEndian ? low : high});
    }
    return bytes;
}

/// What the start tags of `markup` say, one a line, or the fault.
std::string Describe(std::string_view markup)
{
    std::string tags;
    try
    {
        ReadElements(markup, [&](const Element& element) {
            tags += std::to_string(element.depth) + "{" + element.namespaceUri + "}" + element.localName;
            const std::string* const a = element.Find("a");
            tags += a != nullptr ? "=" + *a : "";
            tags += ";";
        });
    }
    catch (const MarkupError& fault)
    {
        return fault.what();
    }
    return tags;
}

TEST(ElementReader, ReadsEveryEncodingOfAPackage)
{
    const std::string expected = "0{urn:n}r=\xC3\xA9\xF0\x9F\x98\x80;1{}c;";
    const std::u16string wide = u"<n:r xmlns:n=\"urn:n\" n:a=\"no\" a=\"\u00E9\U0001F600\"><c/></n:r>\r\n";
    const std::string narrow = "<n:r xmlns:n=\"urn:n\" n:a=\"no\" a=\"\xC3\xA9\xF0\x9F\x98\x80\"><c/></n:r>";
    EXPECT_EQ(Describe(narrow), expected);
    EXPECT_EQ(Describe("\xEF\xBB\xBF" + narrow), expected);
    EXPECT_EQ(Describe("<?xml version='1.0' encoding='UTF-8'?>\n" + narrow), expected);
    EXPECT_EQ(Describe("\xEF\xBB\xBF<?xml version='1.0'?>" + narrow), expected);
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

TEST(ElementReader, SaysWhyMarkupCannotBeRead)
{
    const struct
    {
        std::string markup;
        const char* fault;
    } table[] = {
        {"<a>\n<b></a>", "is not well-formed: line 2: "},
        {"<?xml version='1.0'?>\n\n<a", "is not well-formed: line 3: "},
        {"", "is not well-formed: "},
        {"  \n", "is not well-formed: "},
        {"text", "is not well-formed: "},
        {"<a b='\xFF'/>", "is not well-formed: "},
        {"<a>&b;</a>", "is not well-formed: "},
        {std::string("\xFF\xFE<", 3), "ends within a UTF-16 character"},
        {ToUtf16(u"<a b='\xD800'/>", false), "is not valid UTF-16"},
        {ToUtf16(u"<a b='\xDC00\xDC00'/>", true), "is not valid UTF-16"},
        {"<?xml version='1.0' encoding=\"windows-1252\"?><a/>", "is encoded in windows-1252, "},
        {"<?xml version='1.0'", "has an XML declaration without end"},
        {"<!DOCTYPE a><a/>", "declares a document type"},
        {" <!-- <a> --><?p <a> ?>\n<!DOCTYPE a [<!ENTITY b 'c'>]><a/>", "declares a document type"},
        {ToUtf16(u"\uFEFF<!DOCTYPE a><a/>", true), "declares a document type"},
    };
    for (const auto& row : table)
    {
        const std::string fault = Describe(row.markup);
        EXPECT_TRUE(fault.starts_with(row.fault)) << row.markup << " gives " << fault;
        EXPECT_EQ(FindMarkupFault(row.markup), fault);
    }
    EXPECT_EQ(Describe("<a><!-- <!DOCTYPE --></a>"), "0{}a;");
    EXPECT_EQ(FindMarkupFault("<a/>"), "");
}

TEST(ElementReader, LetsTheCallersExceptionThroughWithItsType)
{
    int seen = 0;
    EXPECT_THROW(ReadElements("<a><b/><c/></a>",
                              [&](const Element&) {
                                  if (++seen == 2)
                                  {
                                      throw std::out_of_range("b");
                                  }
                              }),
                 std::out_of_range);
    EXPECT_EQ(seen, 2);
}

TEST(EscapeAttribute, IsReadBackAsItWas)
{
    const std::string text = "a&<>\"'\t\r\n \xC3\xA9";
    ReadElements("<r a=\"" + EscapeAttribute(text) + "\"/>",
                 [&](const Element& element) { EXPECT_EQ(*element.Find("a"), text); });
}
} // namespace
} // namespace host::xml
