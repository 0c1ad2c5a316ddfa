#include "base/xps/printschema/vocabulary/namespaceprefixes.h"

#include <atomic>
#include <string_view>
#include <thread>

#include <gtest/gtest.h>

namespace base::xps::printschema
{
namespace
{
TEST(NamespacePrefixes, StayGoodForWhomeverReadsThem)
{
    ProvideFallbackPrefixes();
    SetPrivatePrefix(L"ven");
    const utility::Bstr& lent = GetPrivatePrefix();
    SetPrivatePrefix(L"dor");
    EXPECT_EQ(lent.View(), L"ven:");
    EXPECT_EQ(GetPrivatePrefix().View(), L"dor:");
    SetPrivatePrefix(nullptr);
    EXPECT_EQ(GetPrivatePrefix().View(), L"ns0000:");
    EXPECT_EQ(GetFallbackPrefix().View(), L"ns0000:");
}

// Initialising a filter for a driver without prefix used to leave another running job without any prefix for
// a moment.
TEST(NamespacePrefixes, AreNeverMissingWhileAnotherFilterStarts)
{
    ProvideFallbackPrefixes();
    std::atomic<bool> isDone{false};
    std::jthread starter([&] {
        while (!isDone)
        {
            SetPrivatePrefix(L"");
            SetPrivatePrefix(L"ns0000");
        }
    });
    for (int round = 0; round < 100'000; ++round)
    {
        ASSERT_EQ(GetPrivatePrefix().View(), L"ns0000:");
    }
    isDone = true;
    starter.join();
    SetPrivatePrefix(nullptr);
}
} // namespace
} // namespace base::xps::printschema
