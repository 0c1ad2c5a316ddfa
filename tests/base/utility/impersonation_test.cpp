#include "base/utility/impersonation.h"

#include <gtest/gtest.h>

#include "support/ticketplatform.h"

namespace base::utility
{
namespace
{
using support::IsThreadImpersonating;

TEST(Impersonation, LastsAsLongAsItsObjectAndWithoutAUsableTokenLeavesTheThreadAsItIs)
{
    HANDLE closed = support::OpenUserToken();
    ASSERT_TRUE(CloseHandle(closed));
    for (HANDLE token : {HANDLE{nullptr}, INVALID_HANDLE_VALUE, closed})
    {
        EXPECT_EQ(Impersonation(token).GetResult(), HRESULT_FROM_WIN32(ERROR_INVALID_HANDLE)) << token;
        EXPECT_FALSE(IsThreadImpersonating()) << token;
    }
    {
        const Impersonation user(support::UserToken());
        EXPECT_EQ(user.GetResult(), S_OK);
        EXPECT_TRUE(FAILED(Impersonation(nullptr).GetResult()));
        EXPECT_TRUE(IsThreadImpersonating());
    }
    EXPECT_FALSE(IsThreadImpersonating());
}
} // namespace
} // namespace base::utility
