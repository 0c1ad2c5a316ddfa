#pragma once

#include <string>

#include "platform/filterpipeline.h"

namespace base::xps::printschema
{
/// The print ticket for all that a job leaves open: one of three, by the page-description type in the
/// driver's property bag. If the type is unknown or cannot be read, it is the ticket of type 7.
std::wstring SelectDefaultPrintTicket(IPrintPipelinePropertyBag& pipelineBag);

/// The ticket of a page-description type; that of type 7 for an unknown type.
std::wstring DefaultPrintTicketOf(LONG pageDescriptionType);
} // namespace base::xps::printschema
