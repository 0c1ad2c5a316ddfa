#pragma once

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "base/utility/comobject.h"
#include "platform/msxml6.h"

namespace support
{
/// Attributes as a SAX reader hands them out, failing from a chosen index on.
class AttributeList final : public base::utility::ComObject<ISAXAttributes>
{
public:
    using Attributes = std::vector<std::pair<std::wstring, std::wstring>>;
    explicit AttributeList(Attributes attributes) : m_attributes(std::move(attributes)) {}

    HRESULT lengthResult = S_OK;
    int failingName = std::numeric_limits<int>::max();
    int failingValue = std::numeric_limits<int>::max();

    STDMETHODIMP getLength(int* length) override
    {
        *length = static_cast<int>(m_attributes.size());
        return lengthResult;
    }
    STDMETHODIMP getName(int index,
                         const wchar_t** uri,
                         int* uriLength,
                         const wchar_t** localName,
                         int* localNameLength,
                         const wchar_t** qualifiedName,
                         int* qualifiedNameLength) override
    {
        if (index >= failingName)
        {
            return E_FAIL;
        }
        const std::wstring& name = m_attributes[static_cast<std::size_t>(index)].first;
        const std::size_t colon = name.find(L':');
        const std::size_t start = colon == std::wstring::npos ? 0 : colon + 1;
        *uri = L"";
        *uriLength = 0;
        *localName = name.c_str() + start;
        *localNameLength = static_cast<int>(name.size() - start);
        *qualifiedName = name.c_str();
        *qualifiedNameLength = static_cast<int>(name.size());
        return S_OK;
    }
    STDMETHODIMP getValue(int index, const wchar_t** value, int* length) override
    {
        if (index >= failingValue)
        {
            return E_FAIL;
        }
        const std::wstring& text = m_attributes[static_cast<std::size_t>(index)].second;
        *value = text.c_str();
        *length = static_cast<int>(text.size());
        return S_OK;
    }

    STDMETHODIMP getURI(int, const wchar_t**, int*) override { return E_NOTIMPL; }
    STDMETHODIMP getLocalName(int, const wchar_t**, int*) override { return E_NOTIMPL; }
    STDMETHODIMP getQName(int, const wchar_t**, int*) override { return E_NOTIMPL; }
    STDMETHODIMP getIndexFromName(const wchar_t*, int, const wchar_t*, int, int*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP getIndexFromQName(const wchar_t*, int, int*) override { return E_NOTIMPL; }
    STDMETHODIMP getType(int, const wchar_t**, int*) override { return E_NOTIMPL; }
    STDMETHODIMP getTypeFromName(const wchar_t*, int, const wchar_t*, int, const wchar_t**, int*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP getTypeFromQName(const wchar_t*, int, const wchar_t**, int*) override { return E_NOTIMPL; }
    STDMETHODIMP getValueFromName(const wchar_t*, int, const wchar_t*, int, const wchar_t**, int*) override
    {
        return E_NOTIMPL;
    }
    STDMETHODIMP getValueFromQName(const wchar_t*, int, const wchar_t**, int*) override { return E_NOTIMPL; }

private:
    Attributes m_attributes;
};
} // namespace support
