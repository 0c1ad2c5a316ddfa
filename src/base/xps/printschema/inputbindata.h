#pragma once

#include "base/xps/printschema/printticketfunctionoption.h"

namespace base::xps::printschema
{
/// JobInputBin, DocumentInputBin or PageInputBin, with the direction in which the bin feeds its sheets.
/// Starts out as the job's "AutoSelect" with "ShortEdgeFirst".
class InputBinData final : public ThreeScopeFeature
{
public:
    InputBinData() noexcept;

    /// An index into FeedDirectionSchema; -1 for none or an unknown one.
    std::int32_t GetFeedDirection() const noexcept { return m_feedDirection; }
    void SetFeedDirection(std::int32_t feedDirection) noexcept { m_feedDirection = feedDirection; }

    /// By its keyword.
    void SetFeedDirection(const wchar_t* name);

    const SchemaBase& GetFeatureSchema() const override;
    const SchemaBase& GetOptionSchema() const override;

    /// A ticket without a readable direction leaves it as it was.
    void ReadParameters(PrintSchemaHandler handler, const Qname& feature) override;

    /// Writes no direction when it is -1.
    void WriteParameters(PrintSchemaHandler handler, IXMLDOMElement* option, Scope scope) const override;

private:
    std::int32_t m_feedDirection;
};
} // namespace base::xps::printschema
