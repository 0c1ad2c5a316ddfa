#include "base/xps/printschema/printablemediasizedata.h"

#include <gtest/gtest.h>

namespace base::xps::printschema
{
namespace
{
TEST(MediaSizeLimits, ContainTheirBounds)
{
    const MediaSizeLimits limits{{10, 20}, {30, 40}};
    for (const MediaSize inside : {MediaSize{10, 20}, {30, 40}, {30, 20}, {20, 30}})
    {
        EXPECT_TRUE(limits.Contains(inside));
    }
    for (const MediaSize outside : {MediaSize{9, 20}, {31, 40}, {30, 19}, {20, 41}})
    {
        EXPECT_FALSE(limits.Contains(outside));
    }
}
} // namespace
} // namespace base::xps::printschema
