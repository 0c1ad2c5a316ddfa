#pragma once

#include "base/utility/comptr.h"
#include "platform/filterpipeline.h"
#include "platform/printerextension.h"

namespace base::utility
{
/// The property bag of the printer driver, out of the pipeline's. Empty when the pipeline has none, or holds
/// something else under its name.
ComPtr<IPrinterPropertyBag> FindDriverPropertyBag(IPrintPipelinePropertyBag& pipelineBag);
} // namespace base::utility
