#include "base/xps/printschema/document/featurequerybuilder.h"

#include <vector>

#include <gtest/gtest.h>

#include "base/xps/printschema/document/domboundary.h"

namespace base::xps::printschema
{
namespace
{
using utility::Bstr;

std::wstring QueryOf(const FeatureQueryBuilder& builder)
{
    Bstr query;
    EXPECT_EQ(builder.GetQuery(query.Receive()), S_OK);
    return std::wstring(query.View());
}

TEST(FeatureQueryBuilder, JoinsFeaturePropertiesAndOptions)
{
    FeatureQueryBuilder builder(Bstr(L"a:"));
    EXPECT_EQ(QueryOf(builder), L"");
    EXPECT_EQ(builder.AddFeature(L"k:", L"F"), S_OK);
    EXPECT_EQ(builder.AddProperty(L"", L"P"), S_OK);
    EXPECT_EQ(builder.AddScoredProperty(nullptr, L"S"), S_OK);
    const std::wstring query = L"//a:Feature[@name = \"k:F\"]//a:Property[@name = \"P\"]"
                               L"//a:ScoredProperty[@name = \"S\"]";
    EXPECT_EQ(QueryOf(builder), query);
    EXPECT_EQ(builder.AddOption(L"k:"), S_OK);
    EXPECT_EQ(QueryOf(builder),
              query + L"/a:Option | " + query + L"/a:ScoredProperty[@name = \"k:OptionName\"]/a:Value");
}

TEST(FeatureQueryBuilder, FailsWithoutAFrameworkPrefix)
{
    FeatureQueryBuilder builder{Bstr()};
    EXPECT_EQ(builder.AddFeature(L"psk:", L"F"), E_FAIL);
    EXPECT_EQ(builder.AddOption(L"psk:"), E_FAIL);
    Bstr query;
    EXPECT_EQ(builder.GetQuery(query.Receive()), E_FAIL);
}

TEST(FeatureQueryBuilder, OverwritesItsOutPointerWithoutFreeingIt)
{
    const FeatureQueryBuilder builder(Bstr(L"psf:"));
    EXPECT_EQ(builder.GetQuery(nullptr), E_POINTER);
    const Bstr previous(L"still there");
    BSTR query = previous.Get();
    EXPECT_EQ(builder.GetQuery(&query), S_OK);
    EXPECT_NE(query, previous.Get());
    // If it had been freed, one of the next strings of this length would have its address.
    const std::vector<Bstr> next(16, Bstr(L"overwritten"));
    EXPECT_EQ(previous.View(), L"still there");
    Bstr::Adopt(query);
}

TEST(AtDomBoundary, AnswersAFormattingFailureWithItsOwnHresult)
{
    EXPECT_EQ(AtDomBoundary([] { throw exception::CXDException(E_ACCESSDENIED); }), E_ACCESSDENIED);
    EXPECT_EQ(AtDomBoundary([] {}), S_OK);
}
} // namespace
} // namespace base::xps::printschema
