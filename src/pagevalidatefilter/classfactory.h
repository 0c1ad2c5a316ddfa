#pragma once

#include <atomic>

#include "base/utility/comobject.h"
#include "pagevalidatefilter/modulecount.h"

namespace pagevalidatefilter
{
/// Keeps the module loaded while it lives, and while it is locked.
class ClassFactoryBase : public base::utility::ComObject<IClassFactory>
{
public:
    /// Each lock wants an unlock of its own. Never fails.
    STDMETHODIMP LockServer(BOOL lock) override;

protected:
    ClassFactoryBase() = default;

private:
    std::atomic<ULONG> m_lockCount{0};
    ModuleReference m_moduleReference;
};

/// Creates the module's filter.
class ClassFactory final : public ClassFactoryBase
{
public:
    /// CLASS_E_NOAGGREGATION for an outer object. A filter without the interface asked for is let go again.
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** result) override;
};
} // namespace pagevalidatefilter
