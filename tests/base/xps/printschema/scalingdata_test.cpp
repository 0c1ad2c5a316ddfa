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
using tests::Feature;
using tests::HandlerOf;
using tests::Integers;
using tests::MakeTicket;
using tests::Names;

Document TicketOf(const std::wstring& option, const std::wstring& parameters)
{
    return MakeTicket(Feature(L"psk:PageScaling", option, Integers(L"ScoredProperty", L"psk:", parameters)));
}

ScalingData Custom(std::int32_t optionId, const PageScale& scale)
{
    ScalingData data;
    data.SetOptionId(optionId);
    data.SetScale(scale);
    return data;
}

TEST(ScalingData, ReadsTheCustomOptionsParametersAndNoOthers)
{
    const wchar_t* const all = L"OffsetWidth=-10 OffsetHeight=20 ScaleWidth=30 ScaleHeight=40 Scale=150";
    const struct
    {
        std::wstring option;
        std::int32_t optionId;
        PageScale scale;
    } cases[] = {
        {L"psk:Custom", 0, {-10, 20, 30, 40}},
        {L"psk:CustomSquare", 1, {-10, 20, 150, 150}},
        {L"psk:None", 6, {}},
        {L"ns0000:FitApplicationImageableSizeToImageableSize", 7, {}},
        // The keyword of the same text is none of the options, nor is the private twin of a keyword.
        {L"psk:FitApplicationImageableSizeToImageableSize", 5, {1, 2, 3, 4}},
        {L"ns0000:None", 5, {1, 2, 3, 4}},
    };
    for (const auto& row : cases)
    {
        ScalingData data = Custom(5, {1, 2, 3, 4});
        data.Read(HandlerOf(TicketOf(row.option, all)));
        EXPECT_EQ(data.GetOptionId(), row.optionId);
        EXPECT_EQ(data.GetScale(), row.scale) << row.optionId;
    }
}

TEST(ScalingData, ThrowsForAMissingParameterAndKeepsItsValues)
{
    const struct
    {
        std::wstring option;
        std::wstring parameters;
    } cases[] = {
        {L"psk:Custom", L"OffsetHeight=2 ScaleWidth=3 ScaleHeight=4 Scale=5"},
        {L"psk:Custom", L"OffsetWidth=1 ScaleWidth=3 ScaleHeight=4 Scale=5"},
        {L"psk:Custom", L"OffsetWidth=1 OffsetHeight=2 ScaleHeight=4 Scale=5"},
        {L"psk:Custom", L"OffsetWidth=1 OffsetHeight=2 ScaleWidth=3 Scale=5"},
        {L"psk:CustomSquare", L"OffsetWidth=1 OffsetHeight=2 ScaleWidth=3 ScaleHeight=4"},
    };
    for (const auto& row : cases)
    {
        ScalingData data = Custom(5, {1, 2, 3, 4});
        const Document document = TicketOf(row.option, row.parameters);
        std::string source;
        EXPECT_EQ(tests::HresultOf([&] { data.Read(HandlerOf(document)); }, &source), kNotFound);
        EXPECT_EQ(source, "base\\xps\\printschema\\scalingdata");
        EXPECT_EQ(data.GetScale(), (PageScale{1, 2, 3, 4}));
    }
}

TEST(ScalingData, WritesParametersNamedByItsFeatureUnderTheRoot)
{
    Document document = MakeTicket(L"");
    Custom(ScalingData::kCustom, {-10, 20, 30, 40}).Write(HandlerOf(document), Scope::Job);
    EXPECT_EQ(Names(document, L"/psf:PrintTicket/psf:Feature/psf:Option/psf:ScoredProperty"),
              L"psk:OffsetWidth psk:OffsetHeight psk:ScaleWidth psk:ScaleHeight");
    const std::wstring names =
        L"psk:PageScalingOffsetWidth psk:PageScalingOffsetHeight psk:PageScalingScaleWidth"
        L" psk:PageScalingScaleHeight";
    EXPECT_EQ(Names(document, L"//psf:Option/psf:ScoredProperty/psf:ParameterRef"), names);
    EXPECT_EQ(Names(document, L"/psf:PrintTicket/psf:ParameterInit"), names);
    EXPECT_EQ(Names(document, L"/psf:PrintTicket/psf:ParameterInit/psf:Value"), L"-10 20 30 40");

    document = MakeTicket(L"");
    Custom(ScalingData::kCustomSquare, {1, 2, 150, 150}).Write(HandlerOf(document));
    EXPECT_EQ(Names(document, L"//psf:ParameterInit"),
              L"psk:PageScalingOffsetWidth psk:PageScalingOffsetHeight psk:PageScalingScale");
    ScalingData again;
    again.Read(HandlerOf(document));
    EXPECT_EQ(again.GetScale(), (PageScale{1, 2, 150, 150}));

    document = MakeTicket(L"");
    ScalingData().Write(HandlerOf(document));
    EXPECT_EQ(Names(document, L"//psf:Option | //psf:ParameterInit"),
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
