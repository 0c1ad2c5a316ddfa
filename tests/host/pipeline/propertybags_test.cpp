#include "host/pipeline/propertybags.h"

#include <optional>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "host/pipeline/endpoints.h"
#include "host/pipeline/part.h"
#include "tests/host/testpackages.h"

namespace host::pipeline
{
namespace
{
using base::utility::Bstr;
using base::utility::ComPtr;
using base::utility::MakeCom;
using base::utility::Variant;

struct PropertyBagTest : testing::Test
{
    /// The type of what `value` receives; VT_EMPTY where the bag has none.
    VARTYPE Get(const wchar_t* name)
    {
        const HRESULT got = bag->GetProperty(name, value.emplace().Receive());
        EXPECT_TRUE(got == S_OK || got == kElementNotFound);
        return value->Get().vt;
    }

    CallTrace trace;
    ComPtr<PipelinePropertyBag> bag = MakeCom<PipelinePropertyBag>(trace);
    std::optional<Variant> value;
};

TEST_F(PropertyBagTest, GivesEachValueInTheTypeOfThePlatform)
{
    bag->SetText(L"PrinterName", L"\u00e9 printer");
    ASSERT_EQ(Get(L"PrinterName"), VT_BSTR);
    EXPECT_STREQ(value->Get().bstrVal, L"\u00e9 printer");
    bag->SetNumber(L"PrintJobId", 7);
    EXPECT_EQ(Get(L"PrintJobId"), VT_UI4);
    EXPECT_EQ(value->Get().ulVal, 7U);
    EXPECT_EQ(Get(L"PrinterHandle"), VT_EMPTY);
    EXPECT_EQ(bag->GetProperty(nullptr, value.emplace().Receive()), E_POINTER);
    EXPECT_EQ(bag->GetProperty(L"PrinterName", nullptr), E_POINTER);

    const Variant added(LONG{5});
    VARIANT bad{};
    bad.vt = 0x0FFF;
    EXPECT_EQ(bag->AddProperty(L"Company-Setting", &added.Get()), S_OK);
    EXPECT_EQ(Get(L"Company-Setting"), VT_I4);
    EXPECT_TRUE(FAILED(bag->AddProperty(L"Bad", &bad)));
    EXPECT_EQ(Get(L"Bad"), VT_EMPTY);
    EXPECT_TRUE(bag->DeleteProperty(L"Company-Setting"));
    EXPECT_FALSE(bag->DeleteProperty(L"Company-Setting"));
    EXPECT_EQ(Get(L"Company-Setting"), VT_EMPTY);
}

TEST(DriverPropertyBag, FailsForWhatIsOfAnotherTypeAndForEveryChange)
{
    CallTrace trace;
    const auto bag = MakeCom<DriverPropertyBag>(trace);
    const Bstr prefix(L"QuellmarkNsPrefix");
    const Bstr type(L"QuellmarkTesselType");
    bag->SetText(L"QuellmarkNsPrefix", L"quell");
    bag->SetNumber(L"QuellmarkTesselType", 76);
    BSTR text = prefix.Get();
    EXPECT_EQ(bag->GetString(type.Get(), &text), kElementNotFound);
    EXPECT_EQ(text, nullptr);
    LONG number = 0;
    EXPECT_EQ(bag->GetInt32(prefix.Get(), &number), kElementNotFound);
    EXPECT_EQ(bag->SetInt32(type.Get(), 1), E_ACCESSDENIED);
    EXPECT_EQ(bag->SetString(prefix.Get(), prefix.Get()), E_ACCESSDENIED);
}

TEST(ManagerControl, KeepsTheFirstFailureThatIsGivenAsAReason)
{
    CallTrace trace;
    const opc::Package package(TestPackage("plain"));
    const auto job = std::make_shared<PipelineJob>(package, nullptr, trace);
    const auto control = MakeCom<ManagerControl>(job);
    constexpr std::pair<HRESULT, HRESULT> reasons[] = {
        {S_OK, S_OK}, {E_ACCESSDENIED, E_ACCESSDENIED}, {E_FAIL, E_ACCESSDENIED}};
    for (const auto& [reason, kept] : reasons)
    {
        EXPECT_EQ(control->RequestShutdown(reason, nullptr), S_OK);
        EXPECT_EQ(control->FilterFinished(), S_OK);
        EXPECT_EQ(job->shutdownReason, kept);
    }
}
} // namespace
} // namespace host::pipeline
