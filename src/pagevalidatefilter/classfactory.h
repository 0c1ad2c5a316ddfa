#pragma once

#include <atomic>

#include "base/utility/comobject.h"
#include "pagevalidatefilter/module.h"

namespace pagevalidatefilter
{
/// Keeps the module loaded while the factory lives and while it is locked.
class ClassFactoryBase : public base::utility::ComObject<IClassFactory>
{
public:
    /// Each lock needs its own unlock. Never fails.
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
    /// CLASS_E_NOAGGREGATION for an outer object. If the filter does not have the interface, it is released.
    STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** result) override;
};
} // namespace pagevalidatefilter
