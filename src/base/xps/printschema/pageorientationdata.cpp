#include "base/xps/printschema/pageorientationdata.h"

#include <stdexcept>

#include "base/xps/printschema/keywordlists.h"

namespace base::xps::printschema
{
namespace
{
constexpr std::int32_t kOptionCount = 4;
} // namespace

PageOrientationData::PageOrientationData() noexcept : SingleScopeFeature(0, kPortrait) {}

bool PageOrientationData::IsLandscapeOrientation(std::int32_t optionId) noexcept
{
    return optionId == kLandscape || optionId == kReverseLandscape;
}

void PageOrientationData::RotateOption()
{
    const std::int32_t optionId = GetOptionId();
    if (optionId >= kOptionCount)
    {
        throw std::logic_error("Unexpected Option Id.");
    }
    SetOptionId((optionId + 1) % kOptionCount);
}

const SchemaBase& PageOrientationData::GetFeatureSchema() const
{
    return SharedList<PageOrientationFeatureSchema>();
}

const SchemaBase& PageOrientationData::GetOptionSchema() const
{
    return SharedList<PageOrientationOptionSchema>();
}
} // namespace base::xps::printschema
