#pragma once

namespace base::xps::printschema
{
/// A print ticket that asks for nothing.
inline constexpr const wchar_t* kEmptyPrintTicket =
    LR"(<?xml version="1.0" encoding="UTF-8"?>)"
    LR"(<psf:PrintTicket version="1")"
    LR"( xmlns:xsd="http://www.w3.org/2001/XMLSchema")"
    LR"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
    LR"( xmlns:psf="http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework")"
    LR"( xmlns:psk="http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords"/>)";
} // namespace base::xps::printschema
