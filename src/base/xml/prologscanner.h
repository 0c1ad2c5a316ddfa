#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace base::xml
{
enum class PrologVerdict
{
    Undecided,
    Accepted,
    Refused
};

/// Reads what stands in front of an XML document's root element, which may be a declaration, comments and
/// processing instructions only. A document type is refused, and with it all that readers open and expand
/// for its sake; so is text. Takes UTF-16, and every encoding that is ASCII where ASCII will do.
class PrologScanner
{
public:
    /// Takes the next bytes, in portions of any size. A verdict once given stays. A document that ends
    /// undecided has no root element.
    PrologVerdict Take(std::string_view bytes);

private:
    enum class Encoding
    {
        Unknown,
        Bytes,
        LittleEndian,
        BigEndian
    };

    enum class State
    {
        BetweenMarkup,
        AfterLessThan,
        AfterExclamationMark,
        AfterFirstDash,
        InComment,
        InInstruction
    };

    void Recognise();
    void TakeByte(unsigned char byte);
    void TakeCharacter(char16_t character);
    void TakeBetweenMarkup(char16_t character);
    void TakeAfterLessThan(char16_t character);
    void SkipTo(std::u16string_view ending, char16_t character);

    Encoding m_encoding = Encoding::Unknown;
    State m_state = State::BetweenMarkup;
    PrologVerdict m_verdict = PrologVerdict::Undecided;
    // The first bytes, until they tell the encoding.
    std::string m_start;
    // The half of a character that has come already.
    int m_pendingByte = -1;
    // The last characters of a comment or an instruction.
    std::u16string m_tail;
};
} // namespace base::xml
