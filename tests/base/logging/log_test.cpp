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
    std::string message = MessageOf<std::invalid_argument>([&] { FormatStringV(format, arguments); });
    va_end(arguments);
    return message;
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
    const std::string message = "base\\logging\\log(...) : pMessage is null";
    EXPECT_EQ(MessageOf<std::invalid_argument>([&] { FormatString(none); }), message + "\n");
    EXPECT_EQ(MessageOf<std::invalid_argument>([&] { FormatWString(wideNone); }), message + "\n");
    EXPECT_EQ(ForwardToList(none), message + ".\n");
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
