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
    const auto unknown = held.QueryHeld<IUnknown>();
    return unknown ? unknown.TryQuery<IPrinterPropertyBag>() : ComPtr<IPrinterPropertyBag>();
}
} // namespace base::utility
