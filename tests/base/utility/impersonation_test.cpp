#include "base/utility/impersonation.h"

#include <gtest/gtest.h>

#include "support/ticketplatform.h"

namespace base::utility
{
namespace
{
using support::IsThreadImpersonating;

/// A token that was valid once.
HANDLE ClosedToken()
{
    HANDLE token = support::OpenUserToken();
    EXPECT_TRUE(CloseHandle(token));
    return token;
}

TEST(Impersonation, LastsAsLongAsItsObject)
{
    {
        const Impersonation user(support::UserToken());
        EXPECT_EQ(user.GetResult(), S_OK);
        EXPECT_TRUE(IsThreadImpersonating());
    }
    EXPECT_FALSE(IsThreadImpersonating());
}

TEST(Impersonation, FailsWithoutAUsableToken)
{
    for (HANDLE token : {HANDLE{nullptr}, INVALID_HANDLE_VALUE, ClosedToken()})
    {
        const Impersonation user(token);
        EXPECT_EQ(user.GetResult(), HRESULT_FROM_WIN32(ERROR_INVALID_HANDLE)) << token;
        EXPECT_FALSE(IsThreadImpersonating()) << token;
    }
}

TEST(Impersonation, ThatFailedLeavesTheThreadAsItIs)
{
    const Impersonation user(support::UserToken());
    {
        const Impersonation nobody(nullptr);
    }
    EXPECT_TRUE(IsThreadImpersonating());
}
} // namespace
} // namespace base::utility
