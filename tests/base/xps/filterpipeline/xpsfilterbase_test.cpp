#include "base/xps/filterpipeline/xpsfilterbase.h"

#include <functional>
#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/logging/errors.h"
#include "base/utility/safecoinit.h"
#include "base/xps/printschema/namespaceprefixes.h"
#include "support/pipelinetest.h"
#include "support/thrown.h"

namespace
{
int g_spoolerAnswers = 0;
} // namespace

/// In the place of the spooler's: knows one printer, by the handle 4711.
extern "C" BOOL WINAPI
GetPrinterDriverW(HANDLE printer, LPWSTR, DWORD, LPBYTE info, DWORD size, LPDWORD needed)
{
    *needed = printer == reinterpret_cast<HANDLE>(4711) ? sizeof(DRIVER_INFO_3W) : 0;
    if (*needed == 0 || info == nullptr || size < *needed)
    {
        return FALSE;
    }
    *reinterpret_cast<DRIVER_INFO_3W*>(info) = {};
    ++g_spoolerAnswers;
    return TRUE;
}

namespace base::xps::filterpipeline
{
namespace
{
using support::MessageOf;
using support::Pipeline;
using support::ResultOf;
using utility::ComPtr;
using utility::MakeCom;

/// A filter whose work the test makes up.
class ProbeFilter final : public XpsFilterBase
{
public:
    explicit ProbeFilter(support::PipelineRecord& record) : m_record(record) {}
    using XpsFilterBase::GetDriverInfo;
    using XpsFilterBase::GetReader;
    using XpsFilterBase::GetWriter;

    std::function<void()> run = [] {};
    std::function<void()> end = [] {};
    std::function<void()> cancel = [] {};

protected:
    void RunOperation() override { Step("RunOperation", run); }
    void EndOperation() override { Step("EndOperation", end); }
    void CancelOperation() override { Step("CancelOperation", cancel); }

private:
    void Step(const char* name, const std::function<void()>& act)
    {
        m_record.Enter(name);
        act();
    }

    support::PipelineRecord& m_record;
};

class XpsFilterBaseTest : public support::PipelineTest
{
protected:
    void TearDown() override
    {
        filter = {};
        PipelineTest::TearDown();
    }

    /// A pipeline anew, with a filter that is not initialised.
    void RenewAll()
    {
        filter = {};
        Renew();
        filter = MakeCom<ProbeFilter>(pipeline->record);
    }

    ComPtr<ProbeFilter> Initialized()
    {
        EXPECT_EQ(pipeline->Initialize(*filter), S_OK);
        return filter;
    }

    ComPtr<ProbeFilter> filter = MakeCom<ProbeFilter>(pipeline->record);
};

TEST_F(XpsFilterBaseTest, KeepsNothingWithoutEveryArgument)
{
    for (int missing = 0; missing < 3; ++missing)
    {
        EXPECT_EQ(filter->InitializeFilter(missing == 0 ? nullptr : pipeline->communicator.Get(),
                                           missing == 1 ? nullptr : pipeline->bag.Get(),
                                           missing == 2 ? nullptr : pipeline->control.Get()),
                  E_FAIL);
    }
    EXPECT_EQ(filter->StartOperation(), E_FAIL);
    EXPECT_EQ(filter->ShutdownOperation(), S_OK);
    EXPECT_EQ(pipeline->record.Names(), std::vector<std::string>{"CancelOperation"});
}

TEST_F(XpsFilterBaseTest, HandsOnThePrefixOfTheDriver)
{
    const std::pair<std::function<void(Pipeline&)>, const wchar_t*> cases[] = {
        {[](Pipeline& given) { given.driverBag->prefix = utility::Bstr(L"qm"); }, L"qm:"},
        {[](Pipeline&) {}, L"ns0000:"},
        {[](Pipeline& given) { given.record.FailCall("GetString QuellmarkNsPrefix", E_FAIL); }, L"ns0000:"},
        {[](Pipeline& given) { given.record.FailCall("GetProperty DriverPropertyBag", E_FAIL); }, L"ns0000:"},
    };
    for (const auto& [change, prefix] : cases)
    {
        SCOPED_TRACE(&change - &cases[0].first);
        RenewAll();
        printschema::SetPrivatePrefix(L"of an earlier job");
        change(*pipeline);
        Initialized();
        // As every handler of a ticket does it before it asks.
        printschema::ProvideFallbackPrefixes();
        EXPECT_EQ(printschema::GetPrivatePrefix().View(), prefix);
    }
    printschema::SetPrivatePrefix(nullptr);
}

TEST_F(XpsFilterBaseTest, ReportsAFailureOfTheWorkOnceAfterTheEndAndNoOther)
{
    const std::pair<std::function<void()>, HRESULT> failures[] = {
        {[] { throw std::bad_alloc(); }, E_OUTOFMEMORY},
        {[] { exception::ThrowIfFailed(E_ACCESSDENIED); }, E_ACCESSDENIED},
        {[] { throw std::length_error("long"); }, E_FAIL},
        {[] { throw 1; }, E_UNEXPECTED},
    };
    for (const auto& [raise, result] : failures)
    {
        SCOPED_TRACE(result);
        RenewAll();
        Initialized()->run = raise;
        EXPECT_EQ(filter->StartOperation(), result);
        EXPECT_EQ(CallsFrom("RunOperation"), "RunOperation, EndOperation, RequestShutdown");
        EXPECT_EQ(pipeline->control->reasons, std::vector<HRESULT>{result});

        // A failing end is returned in its place.
        RenewAll();
        Initialized()->end = raise;
        for (const bool worked : {true, false})
        {
            filter->run = [&] { exception::ThrowIfFailed(worked ? S_OK : E_NOTIMPL); };
            EXPECT_EQ(filter->StartOperation(), result);
        }
        EXPECT_TRUE(pipeline->control->reasons.empty());

        // That of a cancellation is reduced.
        filter->cancel = raise;
        EXPECT_EQ(filter->ShutdownOperation(), E_FAIL);
        EXPECT_EQ(CallsFrom("CancelOperation"), "CancelOperation, FilterFinished");
    }
    RenewAll();
    EXPECT_EQ(Initialized()->StartOperation(), S_OK);
    EXPECT_EQ(CallsFrom("RunOperation"), "RunOperation, EndOperation");
    EXPECT_EQ(filter->ShutdownOperation(), S_OK);
}

TEST_F(XpsFilterBaseTest, ReturnsWhatThePipelineAnswersToItsReports)
{
    Initialized()->run = [] { throw std::bad_alloc(); };
    pipeline->record.FailCall("RequestShutdown", E_ABORT);
    EXPECT_EQ(filter->StartOperation(), E_ABORT);
    EXPECT_EQ(pipeline->control->reasons, std::vector<HRESULT>{E_OUTOFMEMORY});
    pipeline->record.FailCall("FilterFinished", E_ABORT);
    EXPECT_EQ(filter->ShutdownOperation(), E_FAIL);
}

TEST_F(XpsFilterBaseTest, AsksForTheDriverOnce)
{
    const auto get = [&] { filter->GetDriverInfo(); };
    EXPECT_TRUE(MessageOf<std::logic_error>(get).ends_with("invalid function call sequence.\n"));
    Initialized();
    EXPECT_EQ(ResultOf(get), support::kElementNotFound);
    pipeline->bag->SetHandle(L"PrinterHandle", nullptr);
    EXPECT_EQ(ResultOf(get), E_FAIL);

    pipeline->bag->SetHandle(L"PrinterHandle", reinterpret_cast<HANDLE>(4711));
    const auto before = pipeline->record.Count("GetProperty PrinterHandle");
    const utility::DriverInfo* const info = filter->GetDriverInfo();
    EXPECT_NE(info, nullptr);
    EXPECT_EQ(filter->GetDriverInfo(), info);
    EXPECT_EQ(pipeline->record.Count("GetProperty PrinterHandle"), before + 1);
    EXPECT_EQ(g_spoolerAnswers, 1);
}

TEST_F(XpsFilterBaseTest, TakesItsEndsFromTheCommunicator)
{
    ComPtr<IXpsDocumentProvider> reader;
    ComPtr<IXpsDocumentConsumer> writer;
    const std::string early = "This function must be called after SetUp() call.";
    EXPECT_EQ(MessageOf<std::logic_error>([&] { filter->GetReader(&reader); }), early);
    EXPECT_EQ(MessageOf<std::logic_error>([&] { filter->GetWriter(&writer); }), early);
    Initialized();
    const auto nowhere = [&](auto&& get) { return MessageOf<std::invalid_argument>(get); };
    EXPECT_TRUE(nowhere([&] { filter->GetReader(nullptr); }).ends_with("ppStream is null.\n"));
    EXPECT_TRUE(nowhere([&] { filter->GetWriter(nullptr); }).ends_with("ppStream is null.\n"));
    pipeline->record.FailCall("RequestReader", E_ACCESSDENIED);
    EXPECT_EQ(ResultOf([&] { filter->GetReader(&reader); }), E_ACCESSDENIED);
    filter->GetWriter(&writer);
    pipeline->record.FailCall("", S_OK);
    filter->GetReader(&reader);
    EXPECT_EQ(reader.Get(), pipeline->provider.Get());
    EXPECT_EQ(writer.Get(), pipeline->consumer.Get());
    EXPECT_TRUE(pipeline->control->reasons.empty());
}

/// Does not own up to being what it is.
template <typename End>
class Stranger final : public End
{
public:
    using End::End;
    STDMETHODIMP QueryInterface(REFIID, void** result) override
    {
        *result = nullptr;
        return E_NOINTERFACE;
    }
};

TEST_F(XpsFilterBaseTest, KeepsAWrongEndAndAsksForShutdownWithSuccess)
{
    using support::PartConsumer;
    using support::PartProvider;
    pipeline->communicator->reader =
        ComPtr<PartProvider>::Adopt(new Stranger<PartProvider>(pipeline->record));
    pipeline->communicator->writer =
        ComPtr<PartConsumer>::Adopt(new Stranger<PartConsumer>(pipeline->record));
    // Whether the pipeline shuts down is not asked.
    pipeline->record.FailCall("RequestShutdown", E_FAIL);
    Initialized();
    ComPtr<IXpsDocumentProvider> reader;
    ComPtr<IXpsDocumentConsumer> writer;
    filter->GetReader(&reader);
    filter->GetWriter(&writer);
    EXPECT_EQ(reader.Get(), pipeline->communicator->reader.Get());
    EXPECT_EQ(writer.Get(), pipeline->communicator->writer.Get());
    EXPECT_EQ(pipeline->control->reasons, (std::vector<HRESULT>{S_OK, S_OK}));
}

/// The current thread's apartment, or the failing code.
HRESULT ApartmentOfThread()
{
    APTTYPE type = APTTYPE_CURRENT;
    APTTYPEQUALIFIER qualifier = APTTYPEQUALIFIER_NONE;
    const HRESULT hr = CoGetApartmentType(&type, &qualifier);
    return FAILED(hr) ? hr : HRESULT{type == APTTYPE_MAINSTA ? APTTYPE_STA : type};
}

TEST_F(XpsFilterBaseTest, RunsInTheApartmentOfItsThreadOrElseInTheMultithreadedOne)
{
    HRESULT inside = E_FAIL;
    HRESULT outside = E_FAIL;
    Initialized()->run = [&] { inside = ApartmentOfThread(); };
    const auto runOn = [&](auto&& prepare) {
        std::thread([&] {
            prepare();
            EXPECT_EQ(filter->StartOperation(), S_OK);
            outside = ApartmentOfThread();
        }).join();
    };
    runOn([] {});
    EXPECT_EQ(inside, APTTYPE_MTA);
    EXPECT_EQ(outside, CO_E_NOTINITIALIZED);
    for (const auto& [mode, apartment] :
         {std::pair(COINIT_MULTITHREADED, APTTYPE_MTA), std::pair(COINIT_APARTMENTTHREADED, APTTYPE_STA)})
    {
        runOn([mode = mode] { EXPECT_EQ(CoInitializeEx(nullptr, mode), S_OK); });
        EXPECT_EQ(inside, apartment);
        EXPECT_EQ(outside, apartment);
    }
}
} // namespace
} // namespace base::xps::filterpipeline
