#include "host/xml/encoding.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "host/xml/markup.h"

namespace host::xml
{
namespace
{
enum class ByteOrder
{
    LittleEndian,
    BigEndian
};

class Utf16Reader
{
public:
    Utf16Reader(std::string_view bytes, ByteOrder order) : m_bytes(bytes), m_order(order) {}

    bool AtEnd() const noexcept { return m_bytes.empty(); }

    std::uint32_t NextCodePoint()
    {
        const std::uint32_t lead = NextUnit();
        if (lead < 0xD800 || lead > 0xDFFF)
        {
            return lead;
        }
        const std::uint32_t trail = lead < 0xDC00 && !AtEnd() ? NextUnit() : 0;
        if (trail < 0xDC00 || trail > 0xDFFF)
        {
            throw MarkupError("is not valid UTF-16");
        }
        return 0x10000 + ((lead - 0xD800) << 10) + (trail - 0xDC00);
    }

private:
    std::uint32_t NextUnit()
    {
        if (m_bytes.size() < 2)
        {
            throw MarkupError("ends within a UTF-16 character");
        }
        const auto first = static_cast<unsigned char>(m_bytes[0]);
        const auto second = static_cast<unsigned char>(m_bytes[1]);
        m_bytes.remove_prefix(2);
        return m_order == ByteOrder::LittleEndian ? first + second * 256U : first * 256U + second;
    }

    std::string_view m_bytes;
    ByteOrder m_order;
};

void AppendUtf8(std::string& text, std::uint32_t codePoint)
{
    const auto append = [&](std::uint32_t value) { text += static_cast<char>(value); };
    const auto appendTail = [&](int shift) { append(0x80 | ((codePoint >> shift) & 0x3F)); };
    if (codePoint < 0x80)
    {
        append(codePoint);
    }
    else if (codePoint < 0x800)
    {
        append(0xC0 | (codePoint >> 6));
        appendTail(0);
    }
    else if (codePoint < 0x10000)
    {
        append(0xE0 | (codePoint >> 12));
        appendTail(6);
        appendTail(0);
    }
    else
    {
        append(0xF0 | (codePoint >> 18));
        appendTail(12);
        appendTail(6);
        appendTail(0);
    }
}

std::string FromUtf16(std::string_view bytes, ByteOrder order)
{
    std::string text;
    text.reserve(bytes.size() / 2);
    for (Utf16Reader reader(bytes, order); !reader.AtEnd();)
    {
        AppendUtf8(text, reader.NextCodePoint());
    }
    return text;
}
} // namespace

DecodedCharacter DecodeFirst(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length == 0 || length > text.size() ||
        !std::all_of(text.begin() + 1, text.begin() + length, IsUtf8Continuation))
    {
        return {kNoCharacter, 1};
    }
    constexpr std::array<unsigned, 5> leadBits = {0, 0x7F, 0x1F, 0x0F, 0x07};
    char32_t character = lead & leadBits[length];
    for (std::size_t index = 1; index < length; ++index)
    {
        character = character << 6U | (static_cast<unsigned char>(text[index]) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> least = {0, 0, 0x80, 0x800, 0x10000};
    const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
    return character < least[length] || character > 0x10FFFF || isSurrogate
               ? DecodedCharacter{kNoCharacter, 1}
               : DecodedCharacter{character, length};
}

bool IsUtf8(std::string_view text)
{
    while (!text.empty())
    {
        const auto [character, length] = DecodeFirst(text);
        if (character == kNoCharacter)
        {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

std::string ToUtf8(std::string_view bytes)
{
    if (bytes.starts_with("\xEF\xBB\xBF"))
    {
        return std::string(bytes.substr(3));
    }
    if (bytes.starts_with("\xFF\xFE"))
    {
        return FromUtf16(bytes.substr(2), ByteOrder::LittleEndian);
    }
    if (bytes.starts_with("\xFE\xFF"))
    {
        return FromUtf16(bytes.substr(2), ByteOrder::BigEndian);
    }
    // Without a mark the first character decides, which is ASCII in every well-formed document.
    if (bytes.size() >= 2 && bytes[0] != '\0' && bytes[1] == '\0')
    {
        return FromUtf16(bytes, ByteOrder::LittleEndian);
    }
    if (bytes.size() >= 2 && bytes[0] == '\0' && bytes[1] != '\0')
    {
        return FromUtf16(bytes, ByteOrder::BigEndian);
    }
    return std::string(bytes);
}
} // namespace host::xml
