#include "base/logging/errors.h"

#include <new>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "base/logging/boundary.h"
#include "support/thrown.h"

namespace base
{
namespace
{
using exception::AtBoundary;
using exception::GetErrorText;
using exception::HresultError;
using support::MessageOf;

TEST(GetErrorText, GivesTheSystemsTextOrTheValue)
{
    EXPECT_NE(GetErrorText(E_FAIL), "");
    EXPECT_EQ(GetErrorText(E_FAIL).find("Unknown error"), std::string::npos);
    EXPECT_EQ(GetErrorText(static_cast<HRESULT>(0xA1234567)), "Unknown error 0xa1234567\n");
    EXPECT_EQ(GetErrorText(0x0ABCDEF0), "Unknown error 0xabcdef0\n");
}

TEST(HresultError, JoinsPathLineAndTextAndSurvivesACopy)
{
    const std::string expected = "base\\utility\\safecoinit(36) : " + GetErrorText(E_OUTOFMEMORY) + "\n";
    const HresultError error(E_OUTOFMEMORY, "base\\utility\\safecoinit", 36);
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the copy is what is tested.
    const HresultError copy = error;
    EXPECT_EQ(copy.what(), expected);
    EXPECT_NE(copy.what(), static_cast<const char*>(error.what()));
    EXPECT_EQ(copy.GetHresult(), E_OUTOFMEMORY);

    // The text of an unknown code ends in a line feed, to which the format adds one.
    EXPECT_EQ(std::string(HresultError(static_cast<HRESULT>(0xA1234567), "p", 1).what()),
              "p(1) : Unknown error 0xa1234567\n\n");
}

TEST(ThrowIfFailed, PassesEverySuccessAndLocatesAFailureAtTheCaller)
{
    EXPECT_NO_THROW(exception::ThrowIfFailed(S_FALSE));
    EXPECT_NO_THROW(exception::ThrowIfFailed(0x00040002));
    EXPECT_EQ(MessageOf<HresultError>([] { exception::ThrowIfFailed(E_ACCESSDENIED); }),
              "tests\\base\\logging\\errors_test(...) : " + GetErrorText(E_ACCESSDENIED) + "\n");
    EXPECT_EQ(exception::SourceLocation::Current().line, __LINE__);
}

TEST(GetLastFailure, FailsWhereNoErrorWasSet)
{
    SetLastError(ERROR_ACCESS_DENIED);
    EXPECT_EQ(exception::GetLastFailure(), E_ACCESSDENIED);
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(exception::GetLastFailure(), E_FAIL);
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
