#pragma once

#include <cstdint>
#include <string_view>

// The two vocabularies of one format: the original XPS and ECMA-388 OpenXPS. Names are compared as they
// stand.
namespace host::xps
{
struct Vocabulary
{
    std::string_view markupNamespace;
    std::string_view fixedRepresentation;
    std::string_view printTicket;
};

inline constexpr Vocabulary kVocabularies[] = {
    {"http://schemas.microsoft.com/xps/2005/06",
     "http://schemas.microsoft.com/xps/2005/06/fixedrepresentation",
     "http://schemas.microsoft.com/xps/2005/06/printticket"},
    {"http://schemas.openxps.org/oxps/v1.0",
     "http://schemas.openxps.org/oxps/v1.0/fixedrepresentation",
     "http://schemas.openxps.org/oxps/v1.0/printticket"},
};

/// Whether a namespace is that of either vocabulary's markup.
constexpr bool IsXpsNamespace(std::string_view uri)
{
    return uri == kVocabularies[0].markupNamespace || uri == kVocabularies[1].markupNamespace;
}

inline constexpr std::string_view kMarkupCompatibilityNamespace =
    "http://schemas.openxmlformats.org/markup-compatibility/2006";

/// Readers of tickets build trees. Real tickets have at most about 100 KB.
inline constexpr std::uint64_t kPrintTicketLimit = 4ULL << 20;

/// The same in both vocabularies.
inline constexpr std::string_view kPrintTicketContentType = "application/vnd.ms-printing.printticket+xml";
} // namespace host::xps
