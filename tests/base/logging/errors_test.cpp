#include "base/logging/errors.h"

#include <clocale>
#include <new>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "base/logging/boundary.h"
#include "base/logging/log.h"
#include "support/thrown.h"

namespace base
{
namespace
{
using exception::AtBoundary;
using exception::GetErrorText;
using exception::HresultError;
using logging::FormatString;
using logging::FormatStringV;
using logging::FormatWString;
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
    ASSERT_NE(std::setlocale(LC_ALL, "German_Germany.1252"), nullptr);
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    EXPECT_EQ(FormatString("%.2f", 816.5), "816.50");
    EXPECT_EQ(FormatWString(L"%.2f", 816.5), L"816.50");
    std::setlocale(LC_ALL, previous.c_str());
}

TEST(GetErrorText, GivesTheSystemsTextOrTheValue)
{
    EXPECT_NE(GetErrorText(E_FAIL), "");
    EXPECT_EQ(GetErrorText(E_FAIL).find("Unknown error"), std::string::npos);
    EXPECT_EQ(GetErrorText(static_cast<HRESULT>(0xA1234567)), "Unknown error 0xa1234567\n");
    EXPECT_EQ(GetErrorText(0x0ABCDEF0), "Unknown error 0xabcdef0\n");
}

TEST(HresultError, JoinsPathLineAndTextAndSurvivesACopy)
{
    const HresultError error(E_OUTOFMEMORY, "base\\utility\\safecoinit", 36);
    const std::string expected = "base\\utility\\safecoinit(36) : " + GetErrorText(E_OUTOFMEMORY) + "\n";
    EXPECT_EQ(error.what(), expected);

    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the copy is what is tested.
    const HresultError copy = error;
    EXPECT_EQ(copy.what(), expected);
    EXPECT_NE(copy.what(), static_cast<const char*>(error.what()));
    EXPECT_EQ(copy.GetHresult(), E_OUTOFMEMORY);

    // An unknown code's text ends in a line feed of its own, which the format doubles.
    EXPECT_EQ(std::string(HresultError(static_cast<HRESULT>(0xA1234567), "p", 1).what()),
              "p(1) : Unknown error 0xa1234567\n\n");
}

TEST(ThrowIfFailed, PassesEverySuccessAndLocatesAFailureAtTheCaller)
{
    EXPECT_NO_THROW(exception::ThrowIfFailed(S_FALSE));
    EXPECT_NO_THROW(exception::ThrowIfFailed(0x00040002));
    const int line = __LINE__ + 1;
    const std::string message = MessageOf<HresultError>([] { exception::ThrowIfFailed(E_ACCESSDENIED); });
    EXPECT_NE(message.find("tests\\base\\logging\\errors_test(" + std::to_string(line) + ") : "),
              std::string::npos)
        << message;
}

TEST(AtBoundary, MapsEachKindOfExceptionInItsOrder)
{
    EXPECT_EQ(AtBoundary([] { return S_FALSE; }), S_FALSE);
    EXPECT_EQ(AtBoundary([]() -> HRESULT { throw std::bad_alloc(); }), E_OUTOFMEMORY);
    EXPECT_EQ(AtBoundary([]() -> HRESULT { throw HresultError(E_ACCESSDENIED, "p", 1); }), E_ACCESSDENIED);
    EXPECT_EQ(AtBoundary([]() -> HRESULT { throw std::length_error("l"); }), E_FAIL);
    EXPECT_EQ(AtBoundary([]() -> HRESULT { throw exception::NotSupportedException(); }), E_FAIL);
    EXPECT_EQ(AtBoundary([]() -> HRESULT { throw 5; }), E_UNEXPECTED);
}
} // namespace
} // namespace base
