#include "pagevalidatefilter/module.h"

#include <gtest/gtest.h>

#include "support/pipelinetest.h"

// The built module, as the pipeline loads it.
namespace pagevalidatefilter
{
namespace
{
using base::utility::ComPtr;

template <typename Function>
Function* Import(HMODULE library, const char* name)
{
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(GetProcAddress(library, name)));
}

struct Module
{
    static const Module& Get()
    {
        static const Module module;
        return module;
    }

    // The module's import binds to the ticket library that is there already.
    const HMODULE ticketLibrary = LoadLibraryW(OFFLINE_TICKET_LIBRARY);
    const HMODULE library = LoadLibraryW(FILTER_MODULE);
    decltype(DllGetClassObject)* const getClassObject =
        Import<decltype(DllGetClassObject)>(library, "DllGetClassObject");
    decltype(DllCanUnloadNow)* const canUnloadNow =
        Import<decltype(DllCanUnloadNow)>(library, "DllCanUnloadNow");
};

class ModuleTest : public support::PipelineTest
{
protected:
    void SetUp() override
    {
        ASSERT_NE(Module::Get().canUnloadNow, nullptr);
        ASSERT_NE(Module::Get().getClassObject, nullptr);
        ASSERT_EQ(CanUnload(), S_OK);
    }
    void TearDown() override
    {
        EXPECT_EQ(CanUnload(), S_OK);
        PipelineTest::TearDown();
    }

    static HRESULT CanUnload() { return Module::Get().canUnloadNow(); }

    static ComPtr<IClassFactory> GetFactory()
    {
        ComPtr<IClassFactory> factory;
        EXPECT_EQ(Module::Get().getClassObject(
                      kPageValidateXpsFilter, __uuidof(IClassFactory), factory.ReceiveUntyped()),
                  S_OK);
        return factory;
    }
};

TEST_F(ModuleTest, HandsOutOneClassAndItsFilterOnly)
{
    const auto getClassObject = Module::Get().getClassObject;
    const auto factory = GetFactory();
    void* result = this;
    const auto refused = [&](HRESULT hr, HRESULT expected) {
        EXPECT_EQ(hr, expected);
        EXPECT_EQ(result, nullptr);
        result = this;
    };
    refused(getClassObject(__uuidof(IClassFactory), __uuidof(IClassFactory), &result),
            CLASS_E_CLASSNOTAVAILABLE);
    refused(getClassObject(kPageValidateXpsFilter, __uuidof(IXpsDocument), &result), E_NOINTERFACE);
    refused(factory->QueryInterface(__uuidof(IXpsDocument), &result), E_NOINTERFACE);
    refused(factory->CreateInstance(nullptr, __uuidof(IXpsDocument), &result), E_NOINTERFACE);
    EXPECT_EQ(getClassObject(kPageValidateXpsFilter, __uuidof(IClassFactory), nullptr), E_POINTER);
    EXPECT_EQ(factory->QueryInterface(__uuidof(IUnknown), nullptr), E_POINTER);
    EXPECT_EQ(factory->CreateInstance(nullptr, __uuidof(IUnknown), nullptr), E_POINTER);
    EXPECT_EQ(factory->CreateInstance(factory.Get(), __uuidof(IUnknown), nullptr), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(factory->CreateInstance(factory.Get(), __uuidof(IUnknown), &result), CLASS_E_NOAGGREGATION);
    ComPtr<IUnknown> unknown;
    EXPECT_EQ(factory->QueryInterface(__uuidof(IUnknown), unknown.ReceiveUntyped()), S_OK);
    EXPECT_EQ(unknown.Get(), factory.Get());
    EXPECT_EQ(factory->AddRef(), 3U);
    EXPECT_EQ(factory->Release(), 2U);
}

/// Takes note, as it goes, of whether the module says that it may be unloaded.
class LastWitness final : public base::utility::ComObject<IPrintPipelineManagerControl>
{
public:
    explicit LastWitness(HRESULT& seen) : m_seen(seen) {}
    ~LastWitness() override { m_seen = Module::Get().canUnloadNow(); }
    STDMETHODIMP RequestShutdown(HRESULT, IImgErrorInfo*) override { return S_OK; }
    STDMETHODIMP FilterFinished() override { return S_OK; }

private:
    HRESULT& m_seen;
};

TEST_F(ModuleTest, StaysUntilAFilterHasLetGoOfEverything)
{
    HRESULT seen = E_PENDING;
    ComPtr<IPrintPipelineFilter> filter;
    ASSERT_EQ(GetFactory()->CreateInstance(nullptr, __uuidof(IPrintPipelineFilter), filter.ReceiveUntyped()),
              S_OK);
    ASSERT_EQ(filter->InitializeFilter(pipeline->communicator.Get(),
                                       pipeline->bag.Get(),
                                       base::utility::MakeCom<LastWitness>(seen).Get()),
              S_OK);
    filter = {};
    EXPECT_EQ(seen, S_FALSE);
}

TEST_F(ModuleTest, StaysWhileAFactoryOrAFilterIsAliveAndRunsAJobWithTheTicketLibraryThatIsLoaded)
{
    auto factory = GetFactory();
    EXPECT_EQ(CanUnload(), S_FALSE);
    ComPtr<IPrintPipelineFilter> filter;
    ASSERT_EQ(factory->CreateInstance(nullptr, __uuidof(IPrintPipelineFilter), filter.ReceiveUntyped()),
              S_OK);
    factory = {};
    EXPECT_EQ(CanUnload(), S_FALSE);
    EXPECT_EQ(filter->AddRef(), 2U);
    EXPECT_EQ(filter->Release(), 1U);
    pipeline->Add<support::SequencePart>("sequence",
                                         support::Ticket(support::Feature("PageOrientation", "Landscape")));
    pipeline->Add<support::PagePart>("page", R"(<FixedPage Width="10" Height="20"/>)");
    ASSERT_EQ(pipeline->Initialize(*filter.Get()), S_OK);
    EXPECT_EQ(filter->StartOperation(), S_OK);
    EXPECT_EQ(pipeline->record.Count("Close page"), 1);
    EXPECT_EQ(pipeline->record.Count("SendFixedPage page"), 1);
}
} // namespace
} // namespace pagevalidatefilter
