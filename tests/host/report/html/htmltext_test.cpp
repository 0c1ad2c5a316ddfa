#include "host/report/html/htmltext.h"

#include <gtest/gtest.h>

namespace host::report::html
{
namespace
{
TEST(HtmlText, ShowsWhatAReaderWouldNotSeeAndNothingAsMarkup)
{
    const std::pair<std::string, const char*> table[] = {
        {R"(<a b="c" d='&'>)", "&lt;a b=&quot;c&quot; d=&#39;&amp;&#39;&gt;"},
        {std::string("a\0b\x1F\x7F\n", 6), "a\\u{0}b\\u{1F}\\u{7F}\\u{A}"},
        {"\xC2\x85\xC2\xAD\xC2\xA0", "\\u{85}\\u{AD}\xC2\xA0"},
        {"\xE2\x80\x8B\xE2\x80\xAE\xE2\x81\xA6\xEF\xBB\xBF", "\\u{200B}\\u{202E}\\u{2066}\\u{FEFF}"},
        {"\xF3\xA0\x81\x81\xF0\x9F\x98\x80\xD7\x90", "\\u{E0041}\xF0\x9F\x98\x80\xD7\x90"},
        // Cut off, a lone byte, overlong, a surrogate, beyond the last character.
        {"\xE2\x80", "&#65533;&#65533;"},
        {"\x80<", "&#65533;&lt;"},
        {"\xC0\xBC", "&#65533;&#65533;"},
        {"\xE0\x80\xBC", "&#65533;&#65533;&#65533;"},
        {"\xED\xA0\x80", "&#65533;&#65533;&#65533;"},
        {"\xF4\x90\x80\x80", "&#65533;&#65533;&#65533;&#65533;"},
    };
    for (const auto& [text, html] : table)
    {
        EXPECT_EQ(EscapeHtml(text), html);
    }
    EXPECT_EQ(EscapeHtml("a\n\rb\n", true), "a\n\\u{D}b\n");
    EXPECT_EQ(EscapeHtmlName("PageMedia&Size\xFF"), "Page<wbr>Media&amp;Size&#65533;");
}
} // namespace
} // namespace host::report::html
