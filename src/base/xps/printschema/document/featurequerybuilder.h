#pragma once

#include "base/utility/bstr.h"

namespace base::xps::printschema
{
/// Puts the XPath query for a feature, and for what stands below it, together. Names are compared as the text
/// that the document holds, prefix included. Every operation answers E_FAIL without a framework prefix.
///
/// A name is not escaped, as XPath 1.0 has no escapes: one that holds a quotation mark makes a query that the
/// parser refuses.
class FeatureQueryBuilder
{
public:
    /// `psfPrefix` is the document's prefix of the framework namespace, with its colon.
    explicit FeatureQueryBuilder(const utility::Bstr& psfPrefix) : m_psfPrefix(psfPrefix) {}
    virtual ~FeatureQueryBuilder() = default;
    FeatureQueryBuilder(const FeatureQueryBuilder&) = default;
    FeatureQueryBuilder& operator=(const FeatureQueryBuilder&) = default;

    /// Features of this name, wherever they stand. The answer is the bitwise OR of the HRESULTs of the string
    /// operations, not the first failure.
    [[nodiscard]] HRESULT AddFeature(const wchar_t* prefix, const wchar_t* localName);

    /// Properties of this name at any depth below what the query selects so far; answers like AddFeature.
    [[nodiscard]] HRESULT AddProperty(const wchar_t* prefix, const wchar_t* localName);
    [[nodiscard]] HRESULT AddScoredProperty(const wchar_t* prefix, const wchar_t* localName);

    /// The options of what the query selects so far, or the values that name an option in their stead.
    [[nodiscard]] HRESULT AddOption(const wchar_t* optionPrefix);

    /// Hands out a copy; what `query` held is overwritten and not freed.
    [[nodiscard]] HRESULT GetQuery(BSTR* query) const;

private:
    [[nodiscard]] HRESULT AddNamedElement(const wchar_t* format,
                                          const wchar_t* prefix,
                                          const wchar_t* localName);

    utility::Bstr m_query;
    utility::Bstr m_psfPrefix;
};
} // namespace base::xps::printschema
