#include "pagevalidatefilter/classfactory.h"

#include "base/logging/boundary.h"
#include "base/utility/comptr.h"
#include "pagevalidatefilter/pagevalidatexpsfilter.h"

namespace pagevalidatefilter
{
STDMETHODIMP ClassFactoryBase::LockServer(BOOL lock)
{
    if (lock)
    {
        if (++m_lockCount == 1)
        {
            ++g_moduleCount;
        }
    }
    else if (--m_lockCount == 0)
    {
        --g_moduleCount;
    }
    return S_OK;
}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** result)
{
    if (outer != nullptr)
    {
        return CLASS_E_NOAGGREGATION;
    }
    if (result == nullptr)
    {
        return E_POINTER;
    }
    *result = nullptr;
    return base::exception::AtBoundary(
        [&] { return base::utility::MakeCom<PageValidateXpsFilter>()->QueryInterface(iid, result); });
}
} // namespace pagevalidatefilter
