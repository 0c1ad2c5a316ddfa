#include "base/xps/printschema/pageorientationdata.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "support/failures.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
TEST(PageOrientationData, TurnsByAQuarterAndAround)
{
    PageOrientationData data;
    data.Read(tests::HandlerOf(tests::MakeTicket(tests::Feature(L"psk:PageOrientation", L"psk:Landscape"))));
    const struct
    {
        std::int32_t optionId;
        bool isLandscape;
    } steps[] = {{0, true}, {1, false}, {2, true}, {3, false}, {0, true}};
    for (const auto& step : steps)
    {
        EXPECT_EQ(data.GetOptionId(), step.optionId);
        EXPECT_EQ(PageOrientationData::IsLandscapeOrientation(data.GetOptionId()), step.isLandscape);
        data.RotateOption();
    }
    EXPECT_FALSE(PageOrientationData::IsLandscapeOrientation(-2));
}

TEST(PageOrientationData, RefusesToTurnAnUnknownOption)
{
    PageOrientationData data;
    data.SetOptionId(4);
    EXPECT_EQ(tests::MessageOf<std::logic_error>([&] { data.RotateOption(); }), "Unexpected Option Id.");
    EXPECT_EQ(data.GetOptionId(), 4);
    data.SetOptionId(-1);
    EXPECT_THROW(data.RotateOption(), exception::InvalidOptionIdError);
}
} // namespace
} // namespace base::xps::printschema
