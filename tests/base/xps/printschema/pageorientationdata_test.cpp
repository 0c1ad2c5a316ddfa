#include "base/xps/printschema/pageorientationdata.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "support/failures.h"

namespace base::xps::printschema
{
namespace
{
TEST(PageOrientationData, TurnsByAQuarterAndAroundUnlessItsOptionIsUnknown)
{
    PageOrientationData data;
    data.SetOptionId(0);
    for (const std::int32_t option : {0, 1, 2, 3, 0})
    {
        EXPECT_EQ(data.GetOptionId(), option);
        EXPECT_EQ(PageOrientationData::IsLandscapeOrientation(option), option % 2 == 0);
        data.RotateOption();
    }
    EXPECT_FALSE(PageOrientationData::IsLandscapeOrientation(-2));
    data.SetOptionId(4);
    EXPECT_EQ(tests::MessageOf<std::logic_error>([&] { data.RotateOption(); }), "Unexpected Option Id.");
    data.SetOptionId(-1);
    EXPECT_THROW(data.RotateOption(), exception::InvalidOptionIdError);
}
} // namespace
} // namespace base::xps::printschema
