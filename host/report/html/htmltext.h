#pragma once

#include <string>
#include <string_view>

namespace host::report::html
{
/// Text of any origin as it stands in an element or in a quoted attribute of a page in UTF-8. What a reader
/// would not see, or would see in another order than it has, becomes visible: control characters,
/// bidirectional and zero-width ones as "\u{202E}"; bytes that are no UTF-8 become U+FFFD.
std::string EscapeHtml(std::string_view text);

/// The same of text that has lines.
std::string EscapeHtmlLines(std::string_view text);

/// The same of a long name in an element, which a line may then break before an inner capital letter.
std::string EscapeHtmlName(std::string_view name);

/// The first between tags that keep it together and apart from the text around it: a name of the document.
std::string CodeOf(std::string_view text);
} // namespace host::report::html
