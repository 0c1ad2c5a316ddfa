#include "host/pipeline/propertybags.h"

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "host/pipeline/endpoints.h"
#include "host/pipeline/jobparts.h"
#include "tests/host/testpackages.h"

namespace host::pipeline
{
namespace
{
using base::utility::Bstr;
using base::utility::ComPtr;
using base::utility::MakeCom;
using base::utility::Variant;

TEST(PipelinePropertyBag, GivesEachValueInTheTypeOfThePlatform)
{
    CallTrace trace;
    const auto bag = MakeCom<PipelinePropertyBag>(trace);
    HANDLE token = GetCurrentProcess();
    const auto factory = MakeCom<TicketStreamFactory>(trace, "ticket");
    bag->SetText(L"PrinterName", L"\u00e9 printer");
    bag->SetObject(L"PerUserPrintTicket", factory.Get());
    bag->SetHandle(L"UserSecurityToken", token);
    bag->SetNumber(L"PrintJobId", 7);
    for (int round = 0; round < 2; ++round)
    {
        Variant name;
        ASSERT_EQ(bag->GetProperty(L"PrinterName", name.Receive()), S_OK);
        ASSERT_EQ(name.Get().vt, VT_BSTR);
        EXPECT_STREQ(name.Get().bstrVal, L"\u00e9 printer");
        Variant ticket;
        ASSERT_EQ(bag->GetProperty(L"PerUserPrintTicket", ticket.Receive()), S_OK);
        ASSERT_EQ(ticket.Get().vt, VT_UNKNOWN);
        ComPtr<IPrintReadStream> stream;
        ASSERT_EQ(ticket.QueryHeld<IPrintReadStreamFactory>()->GetStream(stream.Receive()), S_OK);
        char bytes[8] = {};
        ULONG count = 0;
        BOOL isEnd = FALSE;
        EXPECT_EQ(stream->ReadBytes(bytes, sizeof(bytes), &count, &isEnd), S_OK);
        EXPECT_STREQ(bytes, "ticket") << "a fresh stream each time";
        Variant handle;
        ASSERT_EQ(bag->GetProperty(L"UserSecurityToken", handle.Receive()), S_OK);
        EXPECT_EQ(handle.Get().vt, VT_BYREF) << "and no other bit";
        EXPECT_EQ(handle.Get().byref, token);
        Variant number;
        ASSERT_EQ(bag->GetProperty(L"PrintJobId", number.Receive()), S_OK);
        EXPECT_EQ(number.Get().vt, VT_UI4);
        EXPECT_EQ(number.Get().ulVal, 7U);
    }
    Variant none;
    EXPECT_EQ(bag->GetProperty(L"PrinterHandle", none.Receive()), kElementNotFound);
    EXPECT_EQ(bag->GetProperty(nullptr, none.Receive()), E_POINTER);
    EXPECT_EQ(bag->GetProperty(L"PrinterName", nullptr), E_POINTER);
}

TEST(PipelinePropertyBag, TakesAndGivesUpWhatAFilterAdds)
{
    CallTrace trace;
    const auto bag = MakeCom<PipelinePropertyBag>(trace);
    const Variant added(LONG{5});
    EXPECT_EQ(bag->AddProperty(L"Company-Setting", &added.Get()), S_OK);
    Variant value;
    EXPECT_EQ(bag->GetProperty(L"Company-Setting", value.Receive()), S_OK);
    EXPECT_EQ(value.Get().lVal, 5);
    VARIANT bad{};
    bad.vt = 0x0FFF;
    EXPECT_TRUE(FAILED(bag->AddProperty(L"Bad", &bad)));
    EXPECT_EQ(bag->GetProperty(L"Bad", value.Receive()), kElementNotFound);
    EXPECT_TRUE(bag->DeleteProperty(L"Company-Setting"));
    EXPECT_FALSE(bag->DeleteProperty(L"Company-Setting"));
    EXPECT_EQ(bag->GetProperty(L"Company-Setting", value.Receive()), kElementNotFound);
}

TEST(DriverPropertyBag, FailsForWhatItLacksAndForEveryChange)
{
    CallTrace trace;
    const auto bag = MakeCom<DriverPropertyBag>(trace);
    bag->SetText(L"QuellmarkNsPrefix", L"quell");
    bag->SetNumber(L"QuellmarkTesselType", 76);
    Bstr text;
    EXPECT_EQ(bag->GetString(Bstr(L"QuellmarkNsPrefix").Get(), text.Receive()), S_OK);
    EXPECT_EQ(text.View(), L"quell");
    LONG number = 0;
    EXPECT_EQ(bag->GetInt32(Bstr(L"QuellmarkTesselType").Get(), &number), S_OK);
    EXPECT_EQ(number, 76);
    BSTR none = text.Get();
    EXPECT_EQ(bag->GetString(Bstr(L"QuellmarkTesselType").Get(), &none), kElementNotFound)
        << "of another type";
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(bag->GetInt32(Bstr(L"none").Get(), &number), kElementNotFound);
    EXPECT_EQ(bag->SetInt32(Bstr(L"QuellmarkTesselType").Get(), 1), E_ACCESSDENIED);
    EXPECT_EQ(bag->SetString(Bstr(L"QuellmarkNsPrefix").Get(), text.Get()), E_ACCESSDENIED);
}

TEST(ManagerControl, KeepsTheFirstFailureThatIsGivenAsAReason)
{
    CallTrace trace;
    const opc::Package package(TestPackage("plain"));
    const auto job = std::make_shared<PipelineJob>(package, nullptr, trace);
    const auto control = MakeCom<ManagerControl>(job);
    EXPECT_EQ(control->RequestShutdown(S_OK, nullptr), S_OK);
    EXPECT_EQ(job->shutdownReason, S_OK);
    EXPECT_EQ(control->RequestShutdown(E_ACCESSDENIED, nullptr), S_OK);
    EXPECT_EQ(control->RequestShutdown(E_FAIL, nullptr), S_OK);
    EXPECT_EQ(control->FilterFinished(), S_OK);
    EXPECT_EQ(job->shutdownReason, E_ACCESSDENIED);
}
} // namespace
} // namespace host::pipeline
