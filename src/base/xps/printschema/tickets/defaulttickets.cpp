#include "base/xps/printschema/tickets/defaulttickets.h"

#include <algorithm>
#include <array>

#include "base/logging/log.h"
#include "base/utility/bstr.h"
#include "base/utility/driverpropertybag.h"
#include "base/xps/printschema/vocabulary/namespaceuris.h"

namespace base::xps::printschema
{
namespace
{
/// The settings in which the default tickets differ.
struct OutputSettings
{
    LONG pageDescriptionType;
    const wchar_t* compression;
    int thresholdBytes;
    int alignmentBytes;
    const wchar_t* tesselType;
    const wchar_t* bitsPerPixel;
};

constexpr OutputSettings kType7 = {7, L"Type2", 52428800, 8, L"Type7", L"Bits8"};
constexpr std::array kKnown = {
    OutputSettings{1, L"Type4", 24641536, 8, L"Type1", L"Bits8"},
    kType7,
    OutputSettings{'L', L"Type3", 77594624, 256, L"TypeL", L"Bits2"},
};

// The limits of the printable media are in micrometres.
constexpr const wchar_t* kTicketFormat =
    LR"(<?xml version="1.0" encoding="UTF-8" ?>)"
    LR"(<psf:PrintTicket version="1")"
    LR"( xmlns:xsd="http://www.w3.org/2001/XMLSchema")"
    LR"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
    LR"( xmlns:psf="http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework")"
    LR"( xmlns:psk="http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords")"
    LR"( xmlns:ns0000="%s">)"

    LR"(<psf:Feature name="psk:PageScaling">)"
    LR"(<psf:Option name="psk:FitApplicationMediaSizeToPageMediaSize"/>)"
    LR"(</psf:Feature>)"

    LR"(<psf:Feature name="ns0000:JobIcmMode">)"
    LR"(<psf:Option name="ns0000:QmAcct"/>)"
    LR"(</psf:Feature>)"

    LR"(<psf:Feature name="ns0000:JobCompress">)"
    LR"(<psf:Option name="ns0000:%s">)"
    LR"(<psf:Property name="ns0000:Threshold"><psf:Value xsi:type="xsd:integer">%d</psf:Value></psf:Property>)"
    LR"(<psf:Property name="ns0000:AlignementBytes"><psf:Value xsi:type="xsd:integer">%d</psf:Value></psf:Property>)"
    LR"(</psf:Option>)"
    LR"(</psf:Feature>)"

    LR"(<psf:Feature name="ns0000:PagePrintableMediaSize">)"
    LR"(<psf:Option name="ns0000:PrintableMediaSize">)"
    LR"(<psf:Property name="ns0000:MinWidth"><psf:Value xsi:type="xsd:integer">76200</psf:Value></psf:Property>)"
    LR"(<psf:Property name="ns0000:MinHeight"><psf:Value xsi:type="xsd:integer">127000</psf:Value></psf:Property>)"
    LR"(<psf:Property name="ns0000:MaxWidth"><psf:Value xsi:type="xsd:integer">215900</psf:Value></psf:Property>)"
    LR"(<psf:Property name="ns0000:MaxHeight"><psf:Value xsi:type="xsd:integer">355600</psf:Value></psf:Property>)"
    LR"(</psf:Option>)"
    LR"(</psf:Feature>)"

    LR"(<psf:Feature name="ns0000:JobDlutContentType">)"
    LR"(<psf:Option name="ns0000:DlutIndex">)"
    LR"(<psf:Property name="ns0000:Image"><psf:Value xsi:type="xsd:integer">1</psf:Value></psf:Property>)"
    LR"(<psf:Property name="ns0000:Text"><psf:Value xsi:type="xsd:integer">1</psf:Value></psf:Property>)"
    LR"(<psf:Property name="ns0000:Graphics"><psf:Value xsi:type="xsd:integer">1</psf:Value></psf:Property>)"
    LR"(</psf:Option>)"
    LR"(</psf:Feature>)"

    LR"(<psf:Feature name="ns0000:JobTesselType">)"
    LR"(<psf:Option name="ns0000:%s"/>)"
    LR"(</psf:Feature>)"

    LR"(<psf:Feature name="ns0000:JobTesselVersion">)"
    LR"(<psf:Option name="ns0000:Version1"/>)"
    LR"(</psf:Feature>)"

    LR"(<psf:Feature name="ns0000:JobBitsPerPixel">)"
    LR"(<psf:Option name="ns0000:%s"/>)"
    LR"(</psf:Feature>)"

    LR"(</psf:PrintTicket>)";

/// Returns 7 if the driver does not specify a type.
LONG ReadPageDescriptionType(IPrintPipelinePropertyBag& pipelineBag)
{
    const auto driverBag = utility::FindDriverPropertyBag(pipelineBag);
    LONG type = kType7.pageDescriptionType;
    if (!driverBag || FAILED(driverBag->GetInt32(utility::Bstr(L"QuellmarkTesselType").Get(), &type)))
    {
        return kType7.pageDescriptionType;
    }
    return type;
}
} // namespace

std::wstring SelectDefaultPrintTicket(IPrintPipelinePropertyBag& pipelineBag)
{
    return DefaultPrintTicketOf(ReadPageDescriptionType(pipelineBag));
}

std::wstring DefaultPrintTicketOf(LONG pageDescriptionType)
{
    const auto known = std::find_if(kKnown.begin(), kKnown.end(), [&](const OutputSettings& settings) {
        return settings.pageDescriptionType == pageDescriptionType;
    });
    const OutputSettings& selected = known == kKnown.end() ? kType7 : *known;
    return logging::FormatWString(kTicketFormat,
                                  kPrivateUri,
                                  selected.compression,
                                  selected.thresholdBytes,
                                  selected.alignmentBytes,
                                  selected.tesselType,
                                  selected.bitsPerPixel);
}
} // namespace base::xps::printschema
