#include "base/xps/filterpipeline/xpsfilterbase.h"

#include <functional>
#include <new>
#include <ostream>
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
using support::Pipeline;
using support::ResultOf;
using utility::ComPtr;
using utility::MakeCom;
using Names = std::vector<std::string>;

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
        m_record.Enter(name, false);
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

    /// The calls since the filter was initialised.
    Names NamesAfterInitialize() const
    {
        Names names = pipeline->record.Names();
        names.erase(names.begin(), names.begin() + 2);
        return names;
    }

    ComPtr<ProbeFilter> Initialized()
    {
        EXPECT_EQ(pipeline->Initialize(*filter), S_OK);
        return filter;
    }

    ComPtr<ProbeFilter> filter = MakeCom<ProbeFilter>(pipeline->record);
};

TEST_F(XpsFilterBaseTest, AnswersToItsTwoInterfacesOnly)
{
    for (const IID& iid : {__uuidof(IUnknown), __uuidof(IPrintPipelineFilter)})
    {
        ComPtr<IPrintPipelineFilter> same;
        EXPECT_EQ(filter->QueryInterface(iid, same.ReceiveUntyped()), S_OK);
        EXPECT_EQ(same.Get(), filter.Get());
    }
    void* other = this;
    EXPECT_EQ(filter->QueryInterface(__uuidof(IXpsDocumentConsumer), &other), E_NOINTERFACE);
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(filter->QueryInterface(__uuidof(IUnknown), nullptr), E_POINTER);
    EXPECT_EQ(filter->AddRef(), 2U);
    EXPECT_EQ(filter->Release(), 1U);
}

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
    EXPECT_EQ(pipeline->record.Names(), Names{"CancelOperation"});
}

TEST_F(XpsFilterBaseTest, HandsOnThePrefixOfTheDriver)
{
    using Change = std::function<void(Pipeline&)>;
    const wchar_t* const key = L"DriverPropertyBag";
    const wchar_t* const fallback = L"ns0000:";
    const std::pair<Change, const wchar_t*> cases[] = {
        {[](Pipeline& given) { given.driverBag->prefix = utility::Bstr(L"qm"); }, L"qm:"},
        {[](Pipeline&) {}, fallback},
        {[](Pipeline& given) { given.record.FailCall("GetString QuellmarkNsPrefix", E_FAIL); }, fallback},
        {[](Pipeline& given) { given.record.FailCall("GetProperty DriverPropertyBag", E_FAIL); }, fallback},
        {[&](Pipeline& given) { given.bag->SetText(key, L"qm"); }, fallback},
        {[&](Pipeline& given) { given.bag->SetObject(key, ComPtr<IUnknown>()); }, fallback},
        {[&](Pipeline& given) { given.bag->SetObject(key, ComPtr<IUnknown>(given.control.Get())); },
         fallback},
        {[&](Pipeline& given) { given.bag->SetHandle(key, given.driverBag.Get()); }, fallback},
    };
    for (const auto& [change, prefix] : cases)
    {
        SCOPED_TRACE(&change - &cases[0].first);
        filter = {};
        Renew();
        filter = MakeCom<ProbeFilter>(pipeline->record);
        printschema::SetPrivatePrefix(L"of an earlier job");
        change(*pipeline);
        EXPECT_EQ(pipeline->Initialize(*filter), S_OK);
        // As every handler of a ticket does it before it asks.
        printschema::ProvideFallbackPrefixes();
        EXPECT_EQ(printschema::GetPrivatePrefix().View(), prefix);
    }
    printschema::SetPrivatePrefix(nullptr);
}

struct Failure
{
    const char* name;
    std::function<void()> raise;
    HRESULT result;
};

void PrintTo(const Failure& given, std::ostream* output)
{
    *output << given.name;
}

class XpsFilterBaseFailure : public XpsFilterBaseTest, public ::testing::WithParamInterface<Failure>
{
};

TEST_P(XpsFilterBaseFailure, OfTheWorkIsReturnedAndReportedOnceAfterTheEnd)
{
    Initialized()->run = GetParam().raise;
    EXPECT_EQ(filter->StartOperation(), GetParam().result);
    EXPECT_EQ(NamesAfterInitialize(), (Names{"RunOperation", "EndOperation", "RequestShutdown"}));
    EXPECT_EQ(pipeline->control->reasons, std::vector<HRESULT>{GetParam().result});
}

TEST_P(XpsFilterBaseFailure, OfTheEndIsReturnedAndNotReported)
{
    Initialized()->end = GetParam().raise;
    for (const bool worked : {true, false})
    {
        filter->run = [&] { exception::ThrowIfFailed(worked ? S_OK : E_NOTIMPL); };
        EXPECT_EQ(filter->StartOperation(), GetParam().result);
    }
    EXPECT_TRUE(pipeline->control->reasons.empty());
}

TEST_P(XpsFilterBaseFailure, OfTheCancellationIsReducedAndDoesNotKeepTheEndFromBeingReported)
{
    Initialized()->cancel = GetParam().raise;
    EXPECT_EQ(filter->ShutdownOperation(), E_FAIL);
    EXPECT_EQ(NamesAfterInitialize(), (Names{"CancelOperation", "FilterFinished"}));
}

INSTANTIATE_TEST_SUITE_P(
    Kinds,
    XpsFilterBaseFailure,
    ::testing::Values(Failure{"Memory", [] { throw std::bad_alloc(); }, E_OUTOFMEMORY},
                      Failure{"Hresult", [] { exception::ThrowIfFailed(E_ACCESSDENIED); }, E_ACCESSDENIED},
                      Failure{"Standard", [] { throw std::length_error("long"); }, E_FAIL},
                      Failure{"Other", [] { throw 1; }, E_UNEXPECTED}),
    [](const auto& given) { return std::string(given.param.name); });

TEST_F(XpsFilterBaseTest, ReportsNothingWhenTheWorkSucceeds)
{
    EXPECT_EQ(Initialized()->StartOperation(), S_OK);
    EXPECT_EQ(NamesAfterInitialize(), (Names{"RunOperation", "EndOperation"}));
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
    EXPECT_NE(support::MessageOf<std::logic_error>([&] {
                  filter->GetDriverInfo();
              }).find("invalid function call sequence."),
              std::string::npos);
    Initialized();
    EXPECT_EQ(ResultOf([&] { filter->GetDriverInfo(); }), support::kElementNotFound);
    pipeline->bag->SetHandle(L"PrinterHandle", nullptr);
    EXPECT_EQ(ResultOf([&] { filter->GetDriverInfo(); }), E_FAIL);

    pipeline->bag->SetHandle(L"PrinterHandle", reinterpret_cast<HANDLE>(4711));
    const auto before = pipeline->record.Count("GetProperty PrinterHandle");
    const utility::DriverInfo* const info = filter->GetDriverInfo();
    EXPECT_NE(info, nullptr);
    EXPECT_EQ(filter->GetDriverInfo(), info);
    EXPECT_EQ(pipeline->record.Count("GetProperty PrinterHandle"), before + 1);
    EXPECT_EQ(g_spoolerAnswers, 1);
}

TEST_F(XpsFilterBaseTest, NeedsAnAddressAndACommunicatorForItsEnds)
{
    ComPtr<IXpsDocumentProvider> reader;
    ComPtr<IXpsDocumentConsumer> writer;
    const std::string early = "This function must be called after SetUp() call.";
    EXPECT_EQ(support::MessageOf<std::logic_error>([&] { filter->GetReader(&reader); }), early);
    EXPECT_EQ(support::MessageOf<std::logic_error>([&] { filter->GetWriter(&writer); }), early);
    Initialized();
    const auto nowhere = [&](auto&& get) { return support::MessageOf<std::invalid_argument>(get); };
    EXPECT_NE(nowhere([&] { filter->GetReader(nullptr); }).find("ppStream is null."), std::string::npos);
    EXPECT_NE(nowhere([&] { filter->GetWriter(nullptr); }).find("ppStream is null."), std::string::npos);
}

TEST_F(XpsFilterBaseTest, TakesItsEndsFromTheCommunicator)
{
    ComPtr<IXpsDocumentProvider> reader;
    ComPtr<IXpsDocumentConsumer> writer;
    Initialized();
    pipeline->record.FailCall("RequestReader", E_ACCESSDENIED);
    EXPECT_EQ(ResultOf([&] { filter->GetReader(&reader); }), E_ACCESSDENIED);
    pipeline->record.FailCall("RequestWriter", E_ABORT);
    EXPECT_EQ(ResultOf([&] { filter->GetWriter(&writer); }), E_ABORT);
    pipeline->record.FailCall("", S_OK);
    filter->GetReader(&reader);
    filter->GetWriter(&writer);
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
    pipeline->communicator->reader =
        ComPtr<support::PartProvider>::Adopt(new Stranger<support::PartProvider>(pipeline->record));
    pipeline->communicator->writer =
        ComPtr<support::PartConsumer>::Adopt(new Stranger<support::PartConsumer>(pipeline->record));
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
