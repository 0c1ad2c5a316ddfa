#include "base/xps/page/markuptext.h"

#include <clocale>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/xps/page/pagebox.h"
#include "support/commalocale.h"
#include "support/thrown.h"

namespace base::xps
{
namespace
{
using support::MessageOf;

TEST(ToNumber, TakesTheLeadingNumberAndNothingElse)
{
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::vector<std::pair<std::wstring, double>> cases = {
        {L"816", 816.0},
        {L"793.70080566406250", 793.7008056640625},
        {L" \t-12.5pt", -12.5},
        {L"3g25", 3.0},
        {L"+7", 7.0},
        {L"+-7", 0.0},
        {L".5", 0.5},
        {L"1,5", 1.0},
        {L"2e3", 2000.0},
        {L"2e", 2.0},
        {L"", 0.0},
        {L"wide", 0.0},
        {L"0x10", 0.0},
        {L"Infinity", 0.0},
        {L"\x0663", 0.0},
        {L"1e999", infinity},
        {L"-1e999", -infinity},
        {L"1e-999", 0.0},
        {std::wstring(400, L'9'), infinity},
        {std::wstring(400, L'9') + L"e-5", infinity},
        {L"0." + std::wstring(400, L'0') + L"1e+5", 0.0},
        {L"-1e99999999999999999999", -infinity},
        {L"1e-99999999999999999999", 0.0},
        {L"0." + std::wstring(400, L'0') + L"1", 0.0},
    };
    for (const auto& [text, expected] : cases)
    {
        EXPECT_EQ(ToNumber(text), expected) << ::testing::PrintToString(text);
    }
}

TEST(MarkupNumbers, KeepTheDecimalPointInEveryLocale)
{
    const std::string previous = std::setlocale(LC_ALL, nullptr);
    ASSERT_NE(std::setlocale(LC_ALL, support::kCommaLocale), nullptr);
    EXPECT_EQ(ToNumber(L"816.5"), 816.5);
    EXPECT_EQ(FormatNumber(816.5), L"816.50");
    EXPECT_EQ(ParseBox(L"0.5,0,1,1").Left, 0.5F);
    std::setlocale(LC_ALL, previous.c_str());
}

TEST(EscapeText, EscapesEachCharacterOnce)
{
    std::string text = "<&><a & 'b' \"c\"> &lt;";
    EscapeText(text, 3);
    EXPECT_EQ(text, "<&>&lt;a &amp; &apos;b&apos; &quot;c&quot;&gt; &amp;lt;");
}

TEST(ParseBox, ReadsFourNumbersAsCornerAndSize)
{
    EXPECT_EQ(ParseBox(L"10,20,100,200"), (PageBox{10, 20, 110, 220}));
    EXPECT_EQ(ParseBox(L"-1,,-2,900,1100"), (PageBox{-1, -2, 899, 1098}));
    EXPECT_EQ(ParseBox(L",1, 2,3 ,4,"), (PageBox{1, 2, 4, 6}));
    EXPECT_EQ(ParseBox(L"a,b,c,d"), PageBox{});
}

TEST(ParseBox, RefusesAnyOtherCount)
{
    const auto refused = [](const wchar_t* text) {
        return MessageOf<std::invalid_argument>([&] { ParseBox(text); });
    };
    for (const wchar_t* text : {L"1,2,3", L"1,2,3,4,5", L",,,"})
    {
        EXPECT_EQ(refused(text),
                  "base\\xps\\page\\pagebox(...) : the value comma deliminated should consist 4 value.\n");
    }
    EXPECT_EQ(refused(L""), "base\\xps\\page\\pagebox(...) : text is empty.\n");
}

TEST(MoveBox, KeepsTheSize)
{
    EXPECT_EQ(MoveBox({10, 20, 110, 220}, 1, 2), (PageBox{1, 2, 101, 202}));
    EXPECT_EQ(FormatBox(-10.0F, 0.005F, 826.126F, 1066), L"-10.00,0.00,826.13,1066.00");
}
} // namespace
} // namespace base::xps
