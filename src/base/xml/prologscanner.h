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
/// for its sake; so is text. An XML declaration may name UTF-8 and UTF-16 only, as OPC has it: a reader of
/// another encoding may see a comment end where this scanner does not.
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
        AfterDash,
        InComment,
        InTarget,
        InInstruction,
        InDeclaration
    };

    void Recognise();
    void TakeByte(unsigned char byte);
    void TakeCharacter(char16_t character);
    void TakeBetweenMarkup(char16_t character);
    void TakeAfterLessThan(char16_t character);
    void TakeDash(char16_t character, State next);
    void TakeInTarget(char16_t character);
    void TakeInDeclaration(char16_t character);
    void SkipTo(std::u16string_view ending, char16_t character);
    void EndMarkup();

    Encoding m_encoding = Encoding::Unknown;
    State m_state = State::BetweenMarkup;
    PrologVerdict m_verdict = PrologVerdict::Undecided;
    // The first bytes, until they tell the encoding.
    std::string m_start;
    // The half of a character that has come already.
    int m_pendingByte = -1;
    // What has come of a declaration, and the last characters of a comment or another instruction.
    std::u16string m_text;
};
} // namespace base::xml
