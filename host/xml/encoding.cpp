#include "host/xml/encoding.h"

#include <algorithm>
#include <cwchar>
#include <locale>

#include "host/xml/markup.h"

namespace host::xml
{
namespace
{
/// The standard library's converter between UTF-8 and text of `Unit`, whatever the locale.
template <typename Unit>
const auto& Converter()
{
    return std::use_facet<std::codecvt<Unit, char8_t, std::mbstate_t>>(std::locale::classic());
}

std::string FromUtf16(std::string_view bytes, bool isBigEndian)
{
    std::u16string units;
    for (std::size_t index = 0; index + 1 < bytes.size(); index += 2)
    {
        const auto high = static_cast<unsigned char>(bytes[isBigEndian ? index : index + 1]);
        const auto low = static_cast<unsigned char>(bytes[isBigEndian ? index + 1 : index]);
        units += static_cast<char16_t>(high * 256U + low);
    }
    constexpr std::size_t longestCharacter = 3;
    std::u8string text(units.size() * longestCharacter, u8'\0');
    std::mbstate_t state{};
    const char16_t* unitsEnd = nullptr;
    char8_t* textEnd = text.data();
    const auto result = Converter<char16_t>().out(state,
                                                  units.data(),
                                                  units.data() + units.size(),
                                                  unitsEnd,
                                                  text.data(),
                                                  text.data() + text.size(),
                                                  textEnd);
    if (result != std::codecvt_base::ok || bytes.size() % 2 != 0)
    {
        throw MarkupError("is not valid UTF-16");
    }
    return {text.data(), textEnd};
}
} // namespace

DecodedCharacter DecodeFirst(std::string_view text)
{
    const std::u8string bytes(text.begin(), text.begin() + std::min<std::size_t>(text.size(), 4));
    std::mbstate_t state{};
    char32_t character = kNoCharacter;
    char32_t* characterEnd = &character;
    const char8_t* bytesEnd = bytes.data();
    Converter<char32_t>().in(
        state, bytes.data(), bytes.data() + bytes.size(), bytesEnd, &character, &character + 1, characterEnd);
    const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
    return isSurrogate || characterEnd == &character
               ? DecodedCharacter{kNoCharacter, 1}
               : DecodedCharacter{character, static_cast<std::size_t>(bytesEnd - bytes.data())};
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
    // Without a mark the first character decides, which is ASCII in every well-formed document.
    const bool firstIsZero = bytes.starts_with('\0');
    const bool secondIsZero = bytes.substr(std::min<std::size_t>(bytes.size(), 1)).starts_with('\0');
    const bool hasMark = bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
    if (hasMark || (bytes.size() >= 2 && firstIsZero != secondIsZero))
    {
        return FromUtf16(bytes.substr(hasMark ? 2 : 0), firstIsZero || bytes.starts_with('\xFE'));
    }
    return std::string(bytes.substr(bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0));
}
} // namespace host::xml
