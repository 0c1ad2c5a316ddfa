#include "base/xml/prologscanner.h"

namespace base::xml
{
namespace
{
constexpr std::size_t kLongestMark = 3;

unsigned char ByteAt(std::string_view bytes, std::size_t index)
{
    return static_cast<unsigned char>(bytes[index]);
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

/// By the byte-order mark or, without one, by the zero that every character of ASCII has in UTF-16.
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
    case State::AfterFirstDash:
        m_verdict = character == u'-' ? m_verdict : PrologVerdict::Refused;
        m_state = m_state == State::AfterFirstDash ? State::InComment : State::AfterFirstDash;
        break;
    case State::InComment:
        SkipTo(u"-->", character);
        break;
    case State::InInstruction:
        SkipTo(u"?>", character);
        break;
    }
}

void PrologScanner::TakeBetweenMarkup(char16_t character)
{
    constexpr std::u16string_view blanks = u" \t\r\n";
    if (character == u'<')
    {
        m_state = State::AfterLessThan;
    }
    else if (blanks.find(character) == std::u16string_view::npos)
    {
        m_verdict = PrologVerdict::Refused;
    }
}

void PrologScanner::TakeAfterLessThan(char16_t character)
{
    if (character == u'?' || character == u'!')
    {
        m_state = character == u'?' ? State::InInstruction : State::AfterExclamationMark;
        return;
    }
    // Characters of four bytes have more zeros.
    m_verdict = character == u'\0' ? PrologVerdict::Refused : PrologVerdict::Accepted;
}

void PrologScanner::SkipTo(std::u16string_view ending, char16_t character)
{
    m_tail.erase(0, m_tail.size() == ending.size() ? 1 : 0);
    m_tail += character;
    if (m_tail == ending)
    {
        m_tail.clear();
        m_state = State::BetweenMarkup;
    }
}
} // namespace base::xml
