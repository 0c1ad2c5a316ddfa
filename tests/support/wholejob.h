#pragma once

#include <string>

#include "support/pipeline.h"
#include "support/tickettext.h"

namespace support
{
/// A scaling with its parameters, each as "psk:PageScaling..." of a ScoredProperty.
inline std::string CustomScaling()
{
    std::string properties;
    std::string parameters;
    for (const std::string name : {"OffsetWidth", "OffsetHeight", "ScaleWidth", "ScaleHeight"})
    {
        properties += "<psf:ScoredProperty name=\"psk:" + name +
                      "\"><psf:ParameterRef name=\"psk:PageScaling" + name + "\"/></psf:ScoredProperty>";
        parameters += "<psf:ParameterInit name=\"psk:PageScaling" + name +
                      "\"><psf:Value xsi:type=\"xsd:integer\">100</psf:Value></psf:ParameterInit>";
    }
    return Feature("PageScaling", "Custom", properties) + parameters;
}

/// A job that uses every path through the module: parts of every kind, and pages that are turned, with and
/// without a ticket of their own, refitted, and passed.
inline void AddWholeJob(Pipeline& pipeline, const std::string& documentTicket, const std::string& page)
{
    const std::string a4 = MediaFeature("ISOA4", 210000, 297000);
    const std::string feed =
        R"(<psf:Property name="psk:FeedDirection"><psf:Value>psk:LongEdgeFirst</psf:Value></psf:Property>)";
    pipeline.Add<RootPart>();
    pipeline.Add<SequencePart>("sequence");
    pipeline.Add<DocumentPart>("document", documentTicket);
    pipeline.Add<PagePart>("turned by its document", page);
    pipeline.Add<OtherPart>();
    pipeline.Add<PagePart>(
        "turned by itself", page, Ticket(a4 + Feature("PageOrientation", "Landscape") + CustomScaling()));
    pipeline.Add<DocumentPart>("document without ticket");
    pipeline.Add<PagePart>("refitted",
                           page,
                           Ticket(MediaFeature("ISOA3", 297000, 420000) +
                                  Feature("PageScaling", "FitApplicationMediaSizeToPageMediaSize")));
    pipeline.Add<PagePart>("passed", page, Ticket(a4 + Feature("PageInputBin", "AutoSelect", feed)));
}
} // namespace support
