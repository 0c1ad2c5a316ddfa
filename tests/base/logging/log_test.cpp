#include "base/logging/log.h"

#include <clocale>
#include <stdexcept>

#include <gtest/gtest.h>

#include "support/commalocale.h"
#include "support/thrown.h"

namespace base::logging
{
namespace
{
using support::MessageOf;

std::string ForwardToList(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::string text;
    try
    {
        text = FormatStringV(format, arguments);
    }
    catch (const std::invalid_argument& error)
    {
        text = error.what();
    }
    va_end(arguments);
    return text;
}

TEST(FormatString, ExpandsNarrowAndWideText)
{
    EXPECT_EQ(FormatString("%s(%d) : %.2f", "a", 7, 1.5), "a(7) : 1.50");
    EXPECT_EQ(FormatWString(L"%s=%.2f", L"\x20AC", -0.25), L"\x20AC=-0.25");
    EXPECT_EQ(FormatString("%s", ""), "");
    EXPECT_EQ(FormatWString(L"%s", L""), L"");
    EXPECT_EQ(FormatString("%s", std::string(70'000, 'x').c_str()).size(), 70'000U);
    EXPECT_THROW(FormatString("%ls", L"\x4E00"), std::runtime_error);
}

TEST(FormatString, NamesItsSourceAndTellsItsTwoNullChecksApart)
{
    const char* const none = nullptr;
    const wchar_t* const wideNone = nullptr;
    const auto matches = [](const std::string& message, const std::string& end) {
        const std::string path = "base\\logging\\log(";
        return message.starts_with(path) && message.ends_with(") : " + end + "\n");
    };
    const std::string variadic = MessageOf<std::invalid_argument>([&] { FormatString(none); });
    EXPECT_TRUE(matches(variadic, "pMessage is null")) << variadic;
    const std::string wide = MessageOf<std::invalid_argument>([&] { FormatWString(wideNone); });
    EXPECT_TRUE(matches(wide, "pMessage is null")) << wide;
    const std::string list = ForwardToList(none);
    EXPECT_TRUE(matches(list, "pMessage is null.")) << list;
}

TEST(FormatString, KeepsTheDecimalPointInEveryLocale)
{
    const std::string previous = std::setlocale(LC_ALL, nullptr);
    ASSERT_NE(std::setlocale(LC_ALL, support::kCommaLocale), nullptr);
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    EXPECT_EQ(FormatString("%.2f", 816.5), "816.50");
    EXPECT_EQ(FormatWString(L"%.2f", 816.5), L"816.50");
    std::setlocale(LC_ALL, previous.c_str());
}
} // namespace
} // namespace base::logging
