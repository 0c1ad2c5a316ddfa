#pragma once

#include "base/xps/printschema/printticketfunctionoption.h"

namespace base::xps::printschema
{
/// PageOrientation. Initially "Portrait".
class PageOrientationData final : public SingleScopeFeature
{
public:
    static constexpr std::int32_t kLandscape = 0;
    static constexpr std::int32_t kPortrait = 1;
    static constexpr std::int32_t kReverseLandscape = 2;
    static constexpr std::int32_t kReversePortrait = 3;

    PageOrientationData() noexcept;

    static bool IsLandscapeOrientation(std::int32_t optionId) noexcept;

    /// Selects the next option in the order Landscape, Portrait, ReverseLandscape, ReversePortrait,
    /// Landscape. Throws std::logic_error for any other option.
    void RotateOption();

    const SchemaBase& GetFeatureSchema() const override;
    const SchemaBase& GetOptionSchema() const override;
};
} // namespace base::xps::printschema
