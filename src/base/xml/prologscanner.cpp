#include "base/xml/prologscanner.h"

#include <algorithm>
#include <optional>

namespace base::xml
{
namespace
{
constexpr std::size_t kLongestMark = 3;
// Far longer than any real declaration.
constexpr std::size_t kLongestDeclaration = 1024;
constexpr std::u16string_view kBlanks = u" \t\r\n";

unsigned char ByteAt(std::string_view bytes, std::size_t index)
{
    return static_cast<unsigned char>(bytes[index]);
}

std::u16string_view WithoutLeadingBlanks(std::u16string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text;
}

struct PseudoAttribute
{
    std::u16string_view name;
    std::u16string_view value;
};

/// Removes the first pseudo-attribute, such as encoding="utf-8", from a declaration's text and returns it;
/// nothing for other text.
std::optional<PseudoAttribute> TakePseudoAttribute(std::u16string_view& text)
{
    PseudoAttribute attribute{text.substr(0, text.find_first_of(u" \t\r\n=")), {}};
    text = WithoutLeadingBlanks(text.substr(attribute.name.size()));
    if (!text.starts_with(u'='))
    {
        return std::nullopt;
    }
    text = WithoutLeadingBlanks(text.substr(1));
    const bool isQuoted = text.starts_with(u'"') || text.starts_with(u'\'');
    const std::size_t end = isQuoted ? text.find(text.front(), 1) : std::u16string_view::npos;
    if (end == std::u16string_view::npos)
    {
        return std::nullopt;
    }
    attribute.value = text.substr(1, end - 1);
    text = WithoutLeadingBlanks(text.substr(end + 1));
    return attribute;
}

bool IsUnicode(std::u16string_view encoding)
{
    std::u16string name(encoding);
    for (char16_t& c : name)
    {
        c = c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
    }
    return name == u"utf-8" || name == u"utf-16";
}

/// `declaration` is the text of an XML declaration after its target.
bool NamesUnicodeOrNothing(std::u16string_view declaration)
{
    std::u16string_view text = WithoutLeadingBlanks(declaration);
    while (!text.empty())
    {
        const auto attribute = TakePseudoAttribute(text);
        if (!attribute || (attribute->name == u"encoding" && !IsUnicode(attribute->value)))
        {
            return false;
        }
    }
    return true;
}
} // namespace

PrologVerdict PrologScanner::Take(std::string_view bytes)
{
    while (m_encoding == Encoding::Unknown && !bytes.empty())
    {
        m_start += bytes.front();
        bytes.remove_prefix(1);
        if (m_start.size() == kLongestMark)
        {
            Recognise();
        }
    }
    for (std::size_t index = 0; index < bytes.size() && m_verdict == PrologVerdict::Undecided; ++index)
    {
        TakeByte(ByteAt(bytes, index));
    }
    return m_verdict;
}

/// Recognises the encoding by the byte-order mark or, without one, by the zero byte that every ASCII
/// character has in UTF-16.
void PrologScanner::Recognise()
{
    std::string_view text = m_start;
    const bool firstIsZero = text[0] == '\0';
    const bool secondIsZero = text[1] == '\0';
    if (text == "\xEF\xBB\xBF")
    {
        m_encoding = Encoding::Bytes;
        text = {};
    }
    else if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
    {
        m_encoding = text.starts_with("\xFF") ? Encoding::LittleEndian : Encoding::BigEndian;
        text.remove_prefix(2);
    }
    else if (firstIsZero != secondIsZero)
    {
        m_encoding = firstIsZero ? Encoding::BigEndian : Encoding::LittleEndian;
    }
    else
    {
        m_encoding = Encoding::Bytes;
    }
    Take(text);
}

void PrologScanner::TakeByte(unsigned char byte)
{
    if (m_encoding == Encoding::Bytes)
    {
        TakeCharacter(byte);
        return;
    }
    if (m_pendingByte < 0)
    {
        m_pendingByte = byte;
        return;
    }
    const int high = m_encoding == Encoding::BigEndian ? m_pendingByte : byte;
    const int low = m_encoding == Encoding::BigEndian ? byte : m_pendingByte;
    m_pendingByte = -1;
    TakeCharacter(static_cast<char16_t>(high * 256 + low));
}

void PrologScanner::TakeCharacter(char16_t character)
{
    switch (m_state)
    {
    case State::BetweenMarkup:
        TakeBetweenMarkup(character);
        break;
    case State::AfterLessThan:
        TakeAfterLessThan(character);
        break;
    case State::AfterExclamationMark:
        TakeDash(character, State::AfterDash);
        break;
    case State::AfterDash:
        TakeDash(character, State::InComment);
        break;
    case State::InComment:
        SkipTo(u"-->", character);
        break;
    case State::InTarget:
        TakeInTarget(character);
        break;
    case State::InInstruction:
        SkipTo(u"?>", character);
        break;
    case State::InDeclaration:
        TakeInDeclaration(character);
        break;
    }
}

void PrologScanner::TakeBetweenMarkup(char16_t character)
{
    if (character == u'<')
    {
        m_state = State::AfterLessThan;
    }
    else if (kBlanks.find(character) == std::u16string_view::npos)
    {
        m_verdict = PrologVerdict::Refused;
    }
}

void PrologScanner::TakeAfterLessThan(char16_t character)
{
    if (character == u'?' || character == u'!')
    {
        m_state = character == u'?' ? State::InTarget : State::AfterExclamationMark;
        return;
    }
    // Characters of four bytes have more zeros.
    m_verdict = character == u'\0' ? PrologVerdict::Refused : PrologVerdict::Accepted;
}

void PrologScanner::TakeDash(char16_t character, State next)
{
    if (character != u'-')
    {
        m_verdict = PrologVerdict::Refused;
        return;
    }
    m_state = next;
}

void PrologScanner::TakeInTarget(char16_t character)
{
    constexpr std::u16string_view declaration = u"xml";
    m_text += character;
    if (m_text.ends_with(u"?>"))
    {
        EndMarkup();
    }
    else if (m_text.size() > declaration.size())
    {
        const bool isDeclaration =
            m_text.starts_with(declaration) && kBlanks.find(character) != std::u16string_view::npos;
        m_state = isDeclaration ? State::InDeclaration : State::InInstruction;
        m_text = character;
    }
}

void PrologScanner::TakeInDeclaration(char16_t character)
{
    m_text += character;
    if (m_text.ends_with(u"?>"))
    {
        const auto declaration = std::u16string_view(m_text).substr(0, m_text.size() - 2);
        m_verdict = NamesUnicodeOrNothing(declaration) ? m_verdict : PrologVerdict::Refused;
        EndMarkup();
    }
    else if (m_text.size() == kLongestDeclaration)
    {
        m_verdict = PrologVerdict::Refused;
    }
}

void PrologScanner::SkipTo(std::u16string_view ending, char16_t character)
{
    m_text.erase(0, m_text.size() == ending.size() ? 1 : 0);
    m_text += character;
    if (m_text == ending)
    {
        EndMarkup();
    }
}

void PrologScanner::EndMarkup()
{
    m_text.clear();
    m_state = State::BetweenMarkup;
}
} // namespace base::xml
