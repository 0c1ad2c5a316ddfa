#pragma once

#include "base/utility/comptr.h"
#include "platform/msxml6.h"

namespace base::xps::printschema
{
/// A print ticket without any feature.
inline constexpr const wchar_t* kEmptyPrintTicket =
    LR"(<?xml version="1.0" encoding="UTF-8"?>)"
    LR"(<psf:PrintTicket version="1")"
    LR"( xmlns:xsd="http://www.w3.org/2001/XMLSchema")"
    LR"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
    LR"( xmlns:psf="http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework")"
    LR"( xmlns:psk="http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords"/>)";

/// Loads a print ticket or print capabilities from the start of a stream. Throws HresultError: the stream's
/// code if seeking fails, or E_FAIL if loading fails.
utility::ComPtr<IXMLDOMDocument2> LoadTicketDocument(IStream& stream);
} // namespace base::xps::printschema
