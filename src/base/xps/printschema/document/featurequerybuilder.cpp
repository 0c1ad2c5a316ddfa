#include "base/xps/printschema/document/featurequerybuilder.h"

#include <utility>

#include "base/logging/errors.h"
#include "base/logging/log.h"
#include "base/xps/printschema/document/domboundary.h"

namespace base::xps::printschema
{
using exception::ThrowIfFailed;
using logging::FormatWString;
using utility::Bstr;

namespace
{
[[nodiscard]] HRESULT Append(Bstr& text, const wchar_t* tail)
{
    Bstr joined;
    const HRESULT hr = VarBstrCat(text.Get(), Bstr(tail).Get(), joined.Receive());
    if (SUCCEEDED(hr))
    {
        text = std::move(joined);
    }
    return hr;
}
} // namespace

HRESULT FeatureQueryBuilder::AddFeature(const wchar_t* prefix, const wchar_t* localName)
{
    return AddNamedElement(L"//%sFeature[@name = \"%s\"]", prefix, localName);
}

HRESULT FeatureQueryBuilder::AddProperty(const wchar_t* prefix, const wchar_t* localName)
{
    return AddNamedElement(L"//%sProperty[@name = \"%s\"]", prefix, localName);
}

HRESULT FeatureQueryBuilder::AddScoredProperty(const wchar_t* prefix, const wchar_t* localName)
{
    return AddNamedElement(L"//%sScoredProperty[@name = \"%s\"]", prefix, localName);
}

HRESULT FeatureQueryBuilder::AddOption(const wchar_t* optionPrefix)
{
    return AtDomBoundary([&]() -> HRESULT {
        if (m_psfPrefix.Length() == 0)
        {
            return E_FAIL;
        }
        const wchar_t* const psf = m_psfPrefix.Get();
        const Bstr features = m_query;
        ThrowIfFailed(Append(m_query, FormatWString(L"/%sOption", psf).c_str()));
        ThrowIfFailed(Append(m_query, L" | "));
        ThrowIfFailed(Append(m_query, features.Get()));
        ThrowIfFailed(Append(
            m_query,
            FormatWString(L"/%sScoredProperty[@name = \"%sOptionName\"]/%sValue", psf, optionPrefix, psf)
                .c_str()));
        return S_OK;
    });
}

HRESULT FeatureQueryBuilder::GetQuery(BSTR* query) const
{
    if (query == nullptr)
    {
        return E_POINTER;
    }
    *query = nullptr;
    if (m_psfPrefix.Length() == 0)
    {
        return E_FAIL;
    }
    return AtDomBoundary([&]() -> HRESULT {
        *query = Bstr(m_query).Detach();
        return S_OK;
    });
}

HRESULT FeatureQueryBuilder::AddNamedElement(const wchar_t* format,
                                             const wchar_t* prefix,
                                             const wchar_t* localName)
{
    return AtDomBoundary([&]() -> HRESULT {
        if (m_psfPrefix.Length() == 0)
        {
            return E_FAIL;
        }
        Bstr name;
        HRESULT hr = S_OK;
        if (prefix != nullptr && *prefix != L'\0')
        {
            hr |= Append(name, prefix);
        }
        hr |= Append(name, localName);
        hr |= Append(m_query, FormatWString(format, m_psfPrefix.Get(), name.Get()).c_str());
        return hr;
    });
}
} // namespace base::xps::printschema
