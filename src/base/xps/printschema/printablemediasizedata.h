#pragma once

#include "base/xps/printschema/printticketfunctionoption.h"
#include "base/xps/printschema/vocabulary/mediasize.h"

namespace base::xps::printschema
{
/// The driver's private feature PrintableMediaSize: the smallest and the largest sheet that the device can
/// print on. Initially both 0 x 0.
class PrintableMediaSizeData final : public ThreeScopeFeature
{
public:
    PrintableMediaSizeData() noexcept;

    const MediaSizeLimits& GetLimits() const noexcept { return m_limits; }
    void SetLimits(const MediaSizeLimits& limits) noexcept { m_limits = limits; }

    const SchemaBase& GetFeatureSchema() const override;
    const SchemaBase& GetOptionSchema() const override;

    /// A limit that is missing or incomplete counts as 0 x 0. Throws std::logic_error if the minimum exceeds
    /// the maximum; the accessor has both values then.
    void ReadParameters(PrintSchemaHandler handler, const Qname& feature) override;
    void WriteParameters(PrintSchemaHandler handler, IXMLDOMElement* option, Scope scope) const override;

private:
    MediaSizeLimits m_limits;
};
} // namespace base::xps::printschema
