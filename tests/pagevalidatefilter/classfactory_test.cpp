#include "pagevalidatefilter/classfactory.h"

#include <vector>

#include <gtest/gtest.h>

#include "base/utility/comptr.h"

namespace pagevalidatefilter
{
namespace
{
using base::utility::ComPtr;
using base::utility::MakeCom;

TEST(ClassFactory, CountsItselfItsFiltersAndOneLock)
{
    std::vector<ULONG> counts;
    const auto count = [&](HRESULT hr) {
        EXPECT_EQ(hr, S_OK);
        counts.push_back(g_moduleCount);
    };
    auto factory = MakeCom<ClassFactory>();
    count(S_OK);
    count(factory->LockServer(TRUE));
    count(factory->LockServer(TRUE));
    ComPtr<IUnknown> filter;
    count(factory->CreateInstance(nullptr, __uuidof(IUnknown), filter.ReceiveUntyped()));
    count(factory->LockServer(FALSE));
    count(factory->LockServer(FALSE));
    count(factory->LockServer(TRUE));
    count(factory->LockServer(FALSE));
    factory = {};
    count(S_OK);
    filter = {};
    count(S_OK);
    EXPECT_EQ(counts, (std::vector<ULONG>{1, 2, 2, 3, 3, 2, 3, 2, 1, 0}));
}
} // namespace
} // namespace pagevalidatefilter
