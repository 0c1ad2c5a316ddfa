#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host::xml
{
inline constexpr char32_t kNoCharacter = 0xFFFFFFFF;

struct DecodedCharacter
{
    char32_t character;
    /// In bytes.
    std::size_t length;
};

/// The first character of a text in UTF-8 that is not empty; kNoCharacter, one byte long, where the bytes are
/// no UTF-8.
DecodedCharacter DecodeFirst(std::string_view text);

bool IsUtf8(std::string_view text);

/// Whether a byte of UTF-8 continues the character of the byte before it.
constexpr bool IsUtf8Continuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

/// The bytes of an XML document as UTF-8 without byte-order mark. Takes UTF-8, whose bytes are not checked,
/// and UTF-16, both with a mark or without. Throws MarkupError for malformed UTF-16.
std::string ToUtf8(std::string_view bytes);
} // namespace host::xml
