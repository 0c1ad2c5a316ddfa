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

/// Checks what comes before an XML document's root element. It accepts an XML declaration, comments and
/// processing instructions. It refuses text, and a document type, so that no reader opens or expands
/// entities. An XML declaration may name UTF-8 or UTF-16 only, as OPC requires: in another encoding a comment
/// might end where this scanner does not see it.
class PrologScanner
{
public:
    /// Scans the next bytes, in portions of any size. A verdict other than Undecided is final. A document
    /// that ends undecided has no root element.
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
    // The first bytes, until the encoding is recognised.
    std::string m_start;
    // The first byte of a UTF-16 unit; -1 for none.
    int m_pendingByte = -1;
    // The text of a declaration so far, or the last characters of a comment or another instruction.
    std::u16string m_text;
};
} // namespace base::xml
