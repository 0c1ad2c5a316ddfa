#include "base/xps/filterpipeline/xpsfilterbase.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/logging/errors.h"
#include "base/xps/printschema/vocabulary/namespaceprefixes.h"
#include "support/failures.h"
#include "support/pipelinetest.h"
#include "support/thrown.h"

namespace
{
const HANDLE kPrinter = reinterpret_cast<HANDLE>(4711);
const HANDLE kSilentPrinter = reinterpret_cast<HANDLE>(4712);
} // namespace

/// Replaces the spooler's function. It has a driver for every printer but one.
extern "C" BOOL WINAPI
GetPrinterDriverW(HANDLE printer, LPWSTR, DWORD level, LPBYTE, DWORD size, LPDWORD needed)
{
    *needed = printer == nullptr ? 0 : 1000;
    return printer != kSilentPrinter && level == 3 && size == *needed;
}

namespace base::xps::filterpipeline
{
namespace
{
using support::HresultOf;
using support::MessageOf;
using support::Pipeline;
using utility::ComPtr;
using utility::MakeCom;
using Reasons = std::vector<HRESULT>;

/// A filter whose work is a function of the test.
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
        reader = {};
        writer = {};
        PipelineTest::TearDown();
    }

    ComPtr<ProbeFilter> Initialized()
    {
        EXPECT_EQ(pipeline->Initialize(*filter), S_OK);
        return filter;
    }

    ComPtr<ProbeFilter> filter = MakeCom<ProbeFilter>(pipeline->record);
    ComPtr<IXpsDocumentProvider> reader;
    ComPtr<IXpsDocumentConsumer> writer;
};

TEST_F(XpsFilterBaseTest, KeepsNothingWithoutEveryArgument)
{
    auto* const communicator = pipeline->communicator.Get();
    auto* const bag = pipeline->bag.Get();
    auto* const control = pipeline->control.Get();
    EXPECT_EQ(filter->InitializeFilter(nullptr, bag, control), E_FAIL);
    EXPECT_EQ(filter->InitializeFilter(communicator, nullptr, control), E_FAIL);
    EXPECT_EQ(filter->InitializeFilter(communicator, bag, nullptr), E_FAIL);
    EXPECT_EQ(filter->StartOperation(), E_FAIL);
    EXPECT_EQ(filter->ShutdownOperation(), S_OK);
    EXPECT_EQ(pipeline->record.Names(), std::vector<std::string>{"CancelOperation"});
}

TEST_F(XpsFilterBaseTest, HandsOnThePrefixOfTheDriver)
{
    const std::pair<std::function<void(Pipeline&)>, const wchar_t*> cases[] = {
        {[](Pipeline& given) { given.SetDriver(L"qm", 7); }, L"qm:"},
        {[](Pipeline& given) { given.SetDriver(L"", 7); }, L"ns0000:"},
        {[](Pipeline&) {}, L"ns0000:"},
        {[](Pipeline& given) { given.bag->DeleteProperty(L"DriverPropertyBag"); }, L"ns0000:"},
    };
    for (const auto& [change, prefix] : cases)
    {
        filter = {};
        Renew();
        filter = MakeCom<ProbeFilter>(pipeline->record);
        printschema::SetPrivatePrefix(L"of an earlier job");
        change(*pipeline);
        Initialized();
        // Every handler of a ticket does so before it reads the prefix.
        printschema::ProvideFallbackPrefixes();
        EXPECT_EQ(printschema::GetPrivatePrefix().View(), prefix) << &change - &cases[0].first;
    }
    printschema::SetPrivatePrefix(nullptr);
}

TEST_F(XpsFilterBaseTest, ReportsAFailureOfTheWorkOnceAfterTheEndAndNoOther)
{
    Initialized();
    EXPECT_EQ(filter->StartOperation(), S_OK);
    EXPECT_EQ(filter->ShutdownOperation(), S_OK);
    const auto raise = [] { throw 1; };
    filter->run = raise;
    EXPECT_EQ(filter->StartOperation(), E_UNEXPECTED);
    pipeline->record.FailCall("RequestShutdown", E_ABORT);
    EXPECT_EQ(filter->StartOperation(), E_ABORT);
    EXPECT_EQ(pipeline->control->reasons, (Reasons{E_UNEXPECTED, E_UNEXPECTED}));

    // A failure at the end replaces the result; a failing cancellation gives E_FAIL.
    filter->end = [] { exception::ThrowIfFailed(E_ACCESSDENIED); };
    EXPECT_EQ(filter->StartOperation(), E_ACCESSDENIED);
    filter->cancel = raise;
    EXPECT_EQ(filter->ShutdownOperation(), E_FAIL);
    filter->cancel = [] {};
    pipeline->record.FailCall("FilterFinished", E_ABORT);
    EXPECT_EQ(filter->ShutdownOperation(), E_FAIL);
    EXPECT_EQ(CallsFrom("RunOperation"),
              "RunOperation, EndOperation, CancelOperation, FilterFinished, "
              "RunOperation, EndOperation, RequestShutdown, RunOperation, EndOperation, RequestShutdown, "
              "RunOperation, EndOperation, CancelOperation, FilterFinished, CancelOperation, FilterFinished");
}

TEST_F(XpsFilterBaseTest, AsksForTheDriverOnce)
{
    const auto get = [&] { filter->GetDriverInfo(); };
    EXPECT_EQ(MessageOf<std::logic_error>(get),
              "base\\xps\\filterpipeline\\xpsfilterbase(...) : invalid function call sequence.\n");
    Initialized();
    EXPECT_EQ(HresultOf(get), support::kElementNotFound);
    for (HANDLE printer : {HANDLE{nullptr}, kSilentPrinter})
    {
        pipeline->bag->SetHandle(L"PrinterHandle", printer);
        EXPECT_EQ(MessageOf<std::runtime_error>(get),
                  "base\\utility\\driverinfo(...) : GetPrinterDriver was failed.\n");
    }
    pipeline->bag->SetHandle(L"PrinterHandle", kPrinter);
    const utility::DriverInfo* const info = filter->GetDriverInfo();
    EXPECT_EQ(info->GetInfo().cVersion, 0U);
    EXPECT_EQ(filter->GetDriverInfo(), info);
    EXPECT_EQ(pipeline->record.Count("GetProperty PrinterHandle"), 4);
}

TEST_F(XpsFilterBaseTest, TakesItsEndsFromTheCommunicator)
{
    const std::string early = "This function must be called after SetUp() call.";
    EXPECT_EQ(MessageOf<std::logic_error>([&] { filter->GetReader(&reader); }), early);
    EXPECT_EQ(MessageOf<std::invalid_argument>([&] { filter->GetWriter(nullptr); }),
              "base\\xps\\filterpipeline\\xpsfilterbase(...) : ppStream is null.\n");
    Initialized();
    pipeline->record.FailCall("RequestReader", E_ACCESSDENIED);
    EXPECT_EQ(HresultOf([&] { filter->GetReader(&reader); }), E_ACCESSDENIED);
    filter->GetWriter(&writer);
    pipeline->record.FailCall("", S_OK);
    filter->GetReader(&reader);
    EXPECT_EQ(reader.Get(), pipeline->provider.Get());
    EXPECT_EQ(writer.Get(), pipeline->consumer.Get());
    EXPECT_TRUE(pipeline->control->reasons.empty());
}

/// QueryInterface does not know its own interface.
template <typename End>
class Stranger final : public End
{
public:
    using End::End;
    STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
};

TEST_F(XpsFilterBaseTest, KeepsAWrongEndAndAsksForShutdownWithSuccess)
{
    using support::PartConsumer;
    using support::PartProvider;
    pipeline->communicator->reader =
        ComPtr<PartProvider>::Adopt(new Stranger<PartProvider>(pipeline->record));
    pipeline->communicator->writer =
        ComPtr<PartConsumer>::Adopt(new Stranger<PartConsumer>(pipeline->record));
    // A failure of the shutdown is ignored.
    pipeline->record.FailCall("RequestShutdown", E_FAIL);
    Initialized()->GetReader(&reader);
    filter->GetWriter(&writer);
    EXPECT_EQ(reader.Get(), pipeline->communicator->reader.Get());
    EXPECT_EQ(writer.Get(), pipeline->communicator->writer.Get());
    EXPECT_EQ(pipeline->control->reasons, (Reasons{S_OK, S_OK}));
}

/// The apartment of the current thread, or the failure.
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
    Initialized()->run = [&] { inside = ApartmentOfThread(); };
    const auto runOn = [&](auto&& prepare) {
        HRESULT outside = E_FAIL;
        std::thread([&] {
            prepare();
            EXPECT_EQ(filter->StartOperation(), S_OK);
            outside = ApartmentOfThread();
        }).join();
        return outside;
    };
    EXPECT_EQ(runOn([] {}), CO_E_NOTINITIALIZED);
    EXPECT_EQ(inside, APTTYPE_MTA);
    EXPECT_EQ(runOn([] { EXPECT_EQ(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK); }), APTTYPE_STA);
    EXPECT_EQ(inside, APTTYPE_STA);
}
} // namespace
} // namespace base::xps::filterpipeline
