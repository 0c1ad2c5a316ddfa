#include "base/utility/safecoinit.h"

#include "base/logging/errors.h"

namespace base::utility
{
SafeCoInit::SafeCoInit()
{
    const HRESULT hr = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    if (hr == RPC_E_CHANGED_MODE)
    {
        return;
    }
    exception::ThrowIfFailed(hr);
    initialized = true;
}

SafeCoInit::~SafeCoInit()
{
    if (initialized)
    {
        CoUninitialize();
    }
}
} // namespace base::utility
