#pragma once

#include "base/utility/bstr.h"

namespace base::xps::printschema
{
/// Builds the XPath query of a feature and of elements below it. Names are compared as text, including the
/// prefix. Every operation returns E_FAIL without a framework prefix. A quirk of the results is fixed:
/// docs/surface.md.
///
/// Names are not escaped, as XPath 1.0 has no escapes: the parser refuses a query with a quotation mark in a
/// name.
class FeatureQueryBuilder
{
public:
    /// `psfPrefix` is the document's prefix of the framework namespace, with colon.
    explicit FeatureQueryBuilder(const utility::Bstr& psfPrefix) : m_psfPrefix(psfPrefix) {}
    virtual ~FeatureQueryBuilder() = default;
    FeatureQueryBuilder(const FeatureQueryBuilder&) = default;
    FeatureQueryBuilder& operator=(const FeatureQueryBuilder&) = default;

    /// Selects the features of this name, anywhere in the document. Returns the bitwise OR of the HRESULTs of
    /// the string operations, not the first failure.
    [[nodiscard]] HRESULT AddFeature(const wchar_t* prefix, const wchar_t* localName);

    /// Selects the properties of this name at any depth below what is selected so far. Returns as AddFeature
    /// does.
    [[nodiscard]] HRESULT AddProperty(const wchar_t* prefix, const wchar_t* localName);
    [[nodiscard]] HRESULT AddScoredProperty(const wchar_t* prefix, const wchar_t* localName);

    /// Selects the options of the features selected so far, or the OptionName values that name one instead.
    [[nodiscard]] HRESULT AddOption(const wchar_t* optionPrefix);

    /// Returns a copy. The previous value of `query` is overwritten, not freed.
    [[nodiscard]] HRESULT GetQuery(BSTR* query) const;

private:
    [[nodiscard]] HRESULT AddNamedElement(const wchar_t* format,
                                          const wchar_t* prefix,
                                          const wchar_t* localName);

    utility::Bstr m_query;
    utility::Bstr m_psfPrefix;
};
} // namespace base::xps::printschema
