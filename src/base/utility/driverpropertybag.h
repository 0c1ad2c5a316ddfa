#pragma once

#include "base/utility/comptr.h"
#include "platform/filterpipeline.h"
#include "platform/printerextension.h"

namespace base::utility
{
/// Reads the printer driver's property bag from the pipeline's. Empty when the pipeline has none, or when the
/// property is something else.
ComPtr<IPrinterPropertyBag> FindDriverPropertyBag(IPrintPipelinePropertyBag& pipelineBag);
} // namespace base::utility
