#pragma once

#include "base/xps/printschema/printticketfunctionoption.h"
#include "base/xps/printschema/vocabulary/imageablearea.h"

namespace base::xps::printschema
{
/// PageScaling. Initially "FitApplicationMediaSizeToPageMediaSize".
class ScalingData final : public SingleScopeFeature
{
public:
    static constexpr std::int32_t kCustom = 0;
    static constexpr std::int32_t kCustomSquare = 1;
    static constexpr std::int32_t kFitMediaSizeToMediaSize = 5;

    ScalingData() noexcept;

    /// Used by the custom options only; all 0 after another option is read.
    const PageScale& GetScale() const noexcept { return m_scale; }
    void SetScale(const PageScale& scale) noexcept { m_scale = scale; }

    const SchemaBase& GetFeatureSchema() const override;
    const SchemaBase& GetOptionSchema() const override;

    /// Throws HresultError for a custom option without one of its parameters; the scale is kept then.
    void ReadParameters(PrintSchemaHandler handler, const Qname& feature) override;

    /// Throws std::logic_error if the scales of "CustomSquare" differ; its offsets have been written then.
    void WriteParameters(PrintSchemaHandler handler, IXMLDOMElement* option, Scope scope) const override;

private:
    void WriteParameter(const PrintSchemaHandler& handler,
                        IXMLDOMElement* option,
                        Scope scope,
                        const wchar_t* property,
                        std::int32_t value) const;

    PageScale m_scale;
};
} // namespace base::xps::printschema
