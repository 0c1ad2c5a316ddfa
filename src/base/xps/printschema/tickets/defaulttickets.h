#pragma once

#include <string>

#include "platform/filterpipeline.h"

namespace base::xps::printschema
{
/// The print ticket that holds for what a job leaves open: one of three, by the page-description type that
/// the driver's property bag names. Whatever keeps the type from being read, or an unknown type, selects the
/// ticket of type 7.
std::wstring SelectDefaultPrintTicket(IPrintPipelinePropertyBag& pipelineBag);

/// The ticket of a page-description type, that of type 7 for an unknown one.
std::wstring DefaultPrintTicketOf(LONG pageDescriptionType);
} // namespace base::xps::printschema
