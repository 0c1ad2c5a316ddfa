#pragma once

#include <atomic>

#include "platform/win32.h"

namespace base::utility
{
/// Implements IUnknown for the module's COM objects, which have one interface each. The reference count
/// starts at 1 for the creator.
///
/// Derived classes implement the methods of `Interface`. Create them with MakeCom; Release deletes them.
template <typename Interface>
class ComObject : public Interface
{
public:
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    STDMETHODIMP QueryInterface(REFIID iid, void** result) override
    {
        if (result == nullptr)
        {
            return E_POINTER;
        }
        *result = nullptr;
        if (iid != __uuidof(IUnknown) && iid != __uuidof(Interface))
        {
            return E_NOINTERFACE;
        }
        *result = static_cast<Interface*>(this);
        AddRef();
        return S_OK;
    }

    STDMETHODIMP_(ULONG) AddRef() override { return ++m_refCount; }

    STDMETHODIMP_(ULONG) Release() override
    {
        const ULONG remaining = --m_refCount;
        if (remaining == 0)
        {
            delete this;
        }
        return remaining;
    }

protected:
    ComObject() = default;
    virtual ~ComObject() = default;

private:
    std::atomic<ULONG> m_refCount{1};
};
} // namespace base::utility
