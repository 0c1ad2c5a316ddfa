#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace host::xml
{
/// Markup that cannot be read; the text says why and, where it is known, in which line.
class MarkupError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Counted from 1; 0 for what is not known.
struct MarkupPlace
{
    int line = 0;
    int column = 0;
};

/// "line 3, column 14".
std::string FormatPlace(MarkupPlace place);

/// The markup of a part as UTF-8 without byte-order mark and without XML declaration, whose place is left
/// blank so that line numbers hold. Takes UTF-8 and UTF-16, with a mark or without, as packages may hold no
/// other encoding. Throws MarkupError for another one, for malformed UTF-16, for a document type
/// declaration, which neither OPC nor XPS allows, and for more nesting, attributes or references than readers
/// can take.
std::string DecodeMarkup(std::string_view bytes);

/// Throws what DecodeMarkup throws. For markup that goes to a reader which takes document types, and with
/// them the files that they name.
void RequireSafeMarkup(std::string_view bytes);
} // namespace host::xml
