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

/// The markup of a part as UTF-8 without byte-order mark. Takes UTF-8 and UTF-16, with a mark or without,
/// whatever its XML declaration names. Throws MarkupError for malformed UTF-16, and for more nesting,
/// attributes or references than readers can take.
std::string DecodeMarkup(std::string_view bytes);
} // namespace host::xml
