#include "base/xps/printschema/scalingdata.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "support/failures.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using tests::Document;
using tests::HandlerOf;
using tests::MakeTicket;
using tests::Names;

ScalingData Custom(std::int32_t optionId, const PageScale& scale)
{
    ScalingData data;
    data.SetOptionId(optionId);
    data.SetScale(scale);
    return data;
}

TEST(ScalingData, WritesParametersNamedByItsFeatureUnderTheRoot)
{
    const Document custom = MakeTicket(L"");
    Custom(ScalingData::kCustom, {-10, 20, 30, 40}).Write(HandlerOf(custom), Scope::Job);
    const std::wstring names =
        L"psk:PageScalingOffsetWidth psk:PageScalingOffsetHeight psk:PageScalingScaleWidth"
        L" psk:PageScalingScaleHeight";
    EXPECT_EQ(Names(custom, L"/psf:PrintTicket/psf:Feature//psf:ParameterRef"), names);
    EXPECT_EQ(Names(custom, L"/psf:PrintTicket/psf:ParameterInit"), names);
    EXPECT_EQ(Names(custom, L"/psf:PrintTicket/psf:ParameterInit/psf:Value"), L"-10 20 30 40");

    const Document square = MakeTicket(L"");
    Custom(ScalingData::kCustomSquare, {1, 2, 150, 150}).Write(HandlerOf(square));
    ScalingData again;
    again.Read(HandlerOf(square));
    EXPECT_EQ(again.GetScale(), (PageScale{1, 2, 150, 150}));

    const Document fitting = MakeTicket(L"");
    ScalingData().Write(HandlerOf(fitting));
    EXPECT_EQ(Names(fitting, L"//psf:Option | //psf:ParameterInit"),
              L"psk:FitApplicationMediaSizeToPageMediaSize");
}

TEST(ScalingData, RefusesASquareOfTwoScalesAfterItsOffsets)
{
    const Document document = MakeTicket(L"");
    EXPECT_EQ(
        tests::MessageOf<std::logic_error>([&] {
            Custom(ScalingData::kCustomSquare, {1, 2, 120, 121}).Write(HandlerOf(document));
        }),
        "base\\xps\\printschema\\scalingdata(...) : CustomSquare needs same values of Width and Height.\n");
    EXPECT_EQ(Names(document, L"//psf:ParameterInit"),
              L"psk:PageScalingOffsetWidth psk:PageScalingOffsetHeight");
    EXPECT_EQ(Names(document, L"//psf:Feature"), L"");
}
} // namespace
} // namespace base::xps::printschema
