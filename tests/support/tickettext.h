#pragma once

#include <string>

// Print tickets as text. Names without a prefix are keywords.
namespace support
{
/// The root declares psf, psk, xsi, xsd and, for the driver's names, ns0000.
inline std::string Ticket(const std::string& content)
{
    return R"(<?xml version="1.0" encoding="UTF-8"?><psf:PrintTicket version="1")"
           R"( xmlns:psf="http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework")"
           R"( xmlns:psk="http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords")"
           R"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:xsd="http://www.w3.org/2001/XMLSchema")"
           R"( xmlns:ns0000="http://schemas.quellmark.example/printing/2005/08/printticket">)" +
           content + "</psf:PrintTicket>";
}

inline std::string Qualified(const std::string& name)
{
    return name.find(':') == std::string::npos ? "psk:" + name : name;
}

inline std::string Feature(const std::string& name,
                           const std::string& option,
                           const std::string& content = {})
{
    return "<psf:Feature name=\"" + Qualified(name) + "\"><psf:Option name=\"" + Qualified(option) + "\">" +
           content + "</psf:Option></psf:Feature>";
}

/// Lengths are in micrometres; 0 x 0 writes no size.
inline std::string MediaFeature(const std::string& option, int width = 0, int height = 0)
{
    const auto length = [](const char* name, int value) {
        return std::string("<psf:ScoredProperty name=\"psk:") + name +
               "\"><psf:Value xsi:type=\"xsd:integer\">" + std::to_string(value) +
               "</psf:Value></psf:ScoredProperty>";
    };
    return Feature("PageMediaSize",
                   option,
                   width == 0 ? "" : length("MediaSizeWidth", width) + length("MediaSizeHeight", height));
}
} // namespace support
