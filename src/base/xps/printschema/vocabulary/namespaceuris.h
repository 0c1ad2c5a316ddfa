#pragma once

#include <array>
#include <utility>

namespace base::xps::printschema
{
// The published names, compared as plain text. Documents that spell them with https are wrong.
inline constexpr wchar_t kFrameworkUri[] =
    L"http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework";
inline constexpr wchar_t kKeywordsUri[] =
    L"http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords";
inline constexpr wchar_t kSchemaInstanceUri[] = L"http://www.w3.org/2001/XMLSchema-instance";
inline constexpr wchar_t kSchemaUri[] = L"http://www.w3.org/2001/XMLSchema";

// The namespace of the driver's names, unless a ticket binds the private prefix to another one.
inline constexpr wchar_t kPrivateUri[] = L"http://schemas.quellmark.example/printing/2005/08/printticket";

/// The namespaces that every ticket needs, with their customary prefixes.
inline constexpr std::array<std::pair<const wchar_t*, const wchar_t*>, 4> kPublicNamespaces = {
    {{L"psf", kFrameworkUri}, {L"psk", kKeywordsUri}, {L"xsi", kSchemaInstanceUri}, {L"xsd", kSchemaUri}}};
} // namespace base::xps::printschema
