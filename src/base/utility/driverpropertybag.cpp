#include "base/utility/driverpropertybag.h"

#include "base/utility/variant.h"

namespace base::utility
{
ComPtr<IPrinterPropertyBag> FindDriverPropertyBag(IPrintPipelinePropertyBag& pipelineBag)
{
    Variant held;
    if (FAILED(pipelineBag.GetProperty(L"DriverPropertyBag", held.Receive())))
    {
        return {};
    }
    ComPtr<IUnknown> unknown;
    if (FAILED(held.QueryHeld(unknown)) || !unknown)
    {
        return {};
    }
    return unknown.TryQuery<IPrinterPropertyBag>();
}
} // namespace base::utility
