#include "base/xps/printschema/scalingdata.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "support/thrown.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using support::HandlerOf;
using support::Join;

ScalingData Custom(std::int32_t optionId, const PageScale& scale)
{
    ScalingData data;
    data.SetOptionId(optionId);
    data.SetScale(scale);
    return data;
}

TEST(ScalingData, WritesParametersNamedByItsFeatureUnderTheRoot)
{
    const auto custom = support::MakeTicket("");
    Custom(ScalingData::kCustom, {-10, 20, 30, 40}).Write(HandlerOf(custom), Scope::Job);
    const std::string names =
        "psk:PageScalingOffsetWidth psk:PageScalingOffsetHeight psk:PageScalingScaleWidth"
        " psk:PageScalingScaleHeight";
    EXPECT_EQ(Join(custom, "/*/f:Feature//f:ParameterRef/@name"), names);
    EXPECT_EQ(Join(custom, "/*/f:ParameterInit/@name"), names);
    EXPECT_EQ(Join(custom, "/*/f:ParameterInit/f:Value"), "-10 20 30 40");

    const auto square = support::MakeTicket("");
    Custom(ScalingData::kCustomSquare, {1, 2, 150, 150}).Write(HandlerOf(square));
    ScalingData again;
    again.Read(HandlerOf(square));
    EXPECT_EQ(again.GetScale(), (PageScale{1, 2, 150, 150}));

    const auto fitting = support::MakeTicket("");
    ScalingData().Write(HandlerOf(fitting));
    EXPECT_EQ(Join(fitting, "//f:Option/@name | //f:ParameterInit"),
              "psk:FitApplicationMediaSizeToPageMediaSize");
}

TEST(ScalingData, RefusesASquareOfTwoScalesAfterItsOffsets)
{
    const auto document = support::MakeTicket("");
    const ScalingData data = Custom(ScalingData::kCustomSquare, {1, 2, 120, 121});
    EXPECT_EQ(
        support::MessageOf<std::logic_error>([&] { data.Write(HandlerOf(document)); }),
        "base\\xps\\printschema\\scalingdata(...) : CustomSquare needs same values of Width and Height.\n");
    EXPECT_EQ(Join(document, "//@name"), "psk:PageScalingOffsetWidth psk:PageScalingOffsetHeight");
}
} // namespace
} // namespace base::xps::printschema
