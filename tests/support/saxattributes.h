#pragma once

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "base/utility/comobject.h"
#include "platform/msxml6.h"

namespace support
{
/// Attributes as a SAX reader passes them. The first `answers` calls succeed; the next one fails.
class AttributeList final : public base::utility::ComObject<ISAXAttributes>
{
public:
    using Attributes = std::vector<std::pair<std::wstring, std::wstring>>;
    explicit AttributeList(Attributes attributes = {}) : m_attributes(std::move(attributes)) {}

    int answers = std::numeric_limits<int>::max();

    STDMETHODIMP getLength(int* length) override
    {
        *length = static_cast<int>(m_attributes.size());
        return Answer();
    }
    STDMETHODIMP getName(int index,
                         const wchar_t** uri,
                         int* uriLength,
                         const wchar_t** localName,
                         int* localNameLength,
                         const wchar_t** qualifiedName,
                         int* qualifiedNameLength) override
    {
        const std::wstring& name = m_attributes[static_cast<std::size_t>(index)].first;
        // After the colon, if the name has one.
        const std::size_t start = name.find(L':') + 1;
        *uri = L"";
        *uriLength = 0;
        *localName = name.c_str() + start;
        *localNameLength = static_cast<int>(name.size() - start);
        *qualifiedName = name.c_str();
        *qualifiedNameLength = static_cast<int>(name.size());
        return Answer();
    }
    STDMETHODIMP getValue(int index, const wchar_t** value, int* length) override
    {
        const std::wstring& text = m_attributes[static_cast<std::size_t>(index)].second;
        *value = text.c_str();
        *length = static_cast<int>(text.size());
        return Answer();
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
    HRESULT Answer() { return answers-- == 0 ? E_FAIL : S_OK; }

    Attributes m_attributes;
};
} // namespace support
