#pragma once

#include <string>
#include <string_view>

namespace host::report::html
{
/// Escapes any text for an element or a quoted attribute of a page in UTF-8. Characters that would be
/// invisible or would reorder the text (controls, bidirectional and zero-width ones) are written as
/// "\u{202E}"; bytes that are no UTF-8 become U+FFFD.
std::string EscapeHtml(std::string_view text, bool keepsLines = false);

/// The same for a long name, which may be broken before an inner capital letter.
std::string EscapeHtmlName(std::string_view name);

/// A name from the document, escaped, in a <code> element.
std::string CodeOf(std::string_view text);
} // namespace host::report::html
