#pragma once

#include <cassert>
#include <utility>

#include "platform/win32.h"

namespace base::utility
{
/// Holds a COM reference: calls AddRef when it takes a pointer, Release on destruction.
template <typename T>
class ComPtr
{
public:
    ComPtr() = default;
    explicit ComPtr(T* shared) noexcept : m_pObject(shared)
    {
        if (m_pObject != nullptr)
        {
            m_pObject->AddRef();
        }
    }
    ComPtr(const ComPtr& other) noexcept : ComPtr(other.m_pObject) {}
    ComPtr(ComPtr&& other) noexcept : m_pObject(std::exchange(other.m_pObject, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept
    {
        std::swap(m_pObject, other.m_pObject);
        return *this;
    }
    ~ComPtr()
    {
        if (m_pObject != nullptr)
        {
            m_pObject->Release();
        }
    }

    /// Takes ownership of a reference, as that of a new object.
    static ComPtr Adopt(T* owned) noexcept
    {
        ComPtr result;
        result.m_pObject = owned;
        return result;
    }

    T* Get() const noexcept { return m_pObject; }
    T* operator->() const noexcept { return m_pObject; }
    T& operator*() const noexcept { return *m_pObject; }
    explicit operator bool() const noexcept { return m_pObject != nullptr; }

    /// Address for a callee's out-parameter; the pointer must be empty.
    T** Receive() noexcept
    {
        assert(m_pObject == nullptr);
        return &m_pObject;
    }

    /// The same for callees that return any interface as void**.
    void** ReceiveUntyped() noexcept { return reinterpret_cast<void**>(Receive()); }

    /// Passes ownership to the caller.
    [[nodiscard]] T* Detach() noexcept { return std::exchange(m_pObject, nullptr); }

    /// Queries for another interface; empty when the object does not have it.
    template <typename U>
    ComPtr<U> TryQuery() const noexcept
    {
        ComPtr<U> result;
        m_pObject->QueryInterface(__uuidof(U), result.ReceiveUntyped());
        return result;
    }

private:
    T* m_pObject = nullptr;
};

/// Creates a COM object of this module.
template <typename T, typename... Arguments>
ComPtr<T> MakeCom(Arguments&&... arguments)
{
    return ComPtr<T>::Adopt(new T(std::forward<Arguments>(arguments)...));
}
} // namespace base::utility
