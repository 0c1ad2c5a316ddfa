#pragma once

#include "base/xps/printschema/printticketfunctionoption.h"

namespace base::xps::printschema
{
/// JobInputBin, DocumentInputBin or PageInputBin, with the feed direction of the bin. Initially the job's
/// "AutoSelect" with "ShortEdgeFirst".
class InputBinData final : public ThreeScopeFeature
{
public:
    InputBinData() noexcept;

    /// The index in FeedDirectionSchema; -1 for no direction or an unknown one.
    std::int32_t GetFeedDirection() const noexcept { return m_feedDirection; }
    void SetFeedDirection(std::int32_t feedDirection) noexcept { m_feedDirection = feedDirection; }

    /// Sets the direction by its keyword.
    void SetFeedDirection(const wchar_t* name);

    const SchemaBase& GetFeatureSchema() const override;
    const SchemaBase& GetOptionSchema() const override;

    /// Keeps the direction if the ticket has none that can be read.
    void ReadParameters(PrintSchemaHandler handler, const Qname& feature) override;

    /// Writes no direction if it is -1.
    void WriteParameters(PrintSchemaHandler handler, IXMLDOMElement* option, Scope scope) const override;

private:
    std::int32_t m_feedDirection;
};
} // namespace base::xps::printschema
