#include "pagevalidatefilter/module.h"

#include <gtest/gtest.h>

#include "support/filtermodule.h"
#include "support/pipelinetest.h"

// The built module, loaded as the pipeline loads it.
namespace pagevalidatefilter
{
namespace
{
using base::utility::ComPtr;

template <typename Function>
Function* Import(const char* name)
{
    // The module's import binds to the ticket library that is loaded already.
    static const HMODULE tickets = LoadLibraryW(OFFLINE_TICKET_LIBRARY);
    static const HMODULE module =
        tickets != nullptr ? LoadLibraryW(support::FilterModulePath().c_str()) : nullptr;
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(GetProcAddress(module, name)));
}

HRESULT CanUnload()
{
    return Import<decltype(DllCanUnloadNow)>("DllCanUnloadNow")();
}

HRESULT GetClass(REFCLSID classId, REFIID iid, void** result)
{
    return Import<decltype(DllGetClassObject)>("DllGetClassObject")(classId, iid, result);
}

class ModuleTest : public support::PipelineTest
{
protected:
    void SetUp() override { ASSERT_EQ(CanUnload(), S_OK); }
    void TearDown() override
    {
        EXPECT_EQ(CanUnload(), S_OK);
        PipelineTest::TearDown();
    }

    static ComPtr<IClassFactory> GetFactory()
    {
        ComPtr<IClassFactory> factory;
        EXPECT_EQ(GetClass(kPageValidateXpsFilter, __uuidof(IClassFactory), factory.ReceiveUntyped()), S_OK);
        return factory;
    }
};

TEST_F(ModuleTest, HandsOutOneClassAndItsFilterOnly)
{
    const auto factory = GetFactory();
    void* result = this;
    const auto refused = [&](HRESULT hr, HRESULT expected) {
        EXPECT_EQ(hr, expected);
        EXPECT_EQ(result, nullptr);
        result = this;
    };
    refused(GetClass(__uuidof(IClassFactory), __uuidof(IClassFactory), &result), CLASS_E_CLASSNOTAVAILABLE);
    refused(GetClass(kPageValidateXpsFilter, __uuidof(IXpsDocument), &result), E_NOINTERFACE);
    refused(factory->CreateInstance(nullptr, __uuidof(IXpsDocument), &result), E_NOINTERFACE);
    EXPECT_EQ(GetClass(kPageValidateXpsFilter, __uuidof(IClassFactory), nullptr), E_POINTER);
    EXPECT_EQ(factory->QueryInterface(__uuidof(IUnknown), nullptr), E_POINTER);
    EXPECT_EQ(factory->CreateInstance(nullptr, __uuidof(IUnknown), nullptr), E_POINTER);
    EXPECT_EQ(factory->CreateInstance(factory.Get(), __uuidof(IUnknown), nullptr), CLASS_E_NOAGGREGATION);
    ComPtr<IUnknown> unknown;
    EXPECT_EQ(factory->QueryInterface(__uuidof(IUnknown), unknown.ReceiveUntyped()), S_OK);
    EXPECT_EQ(unknown.Get(), factory.Get());
    EXPECT_EQ(factory->AddRef(), 3U);
    EXPECT_EQ(factory->Release(), 2U);
}

/// Records, when it is destroyed, whether the module can be unloaded.
class LastWitness final : public base::utility::ComObject<IPrintPipelineManagerControl>
{
public:
    explicit LastWitness(HRESULT& seen) : m_seen(seen) {}
    ~LastWitness() override { m_seen = CanUnload(); }
    STDMETHODIMP RequestShutdown(HRESULT, IImgErrorInfo*) override { return S_OK; }
    STDMETHODIMP FilterFinished() override { return S_OK; }

private:
    HRESULT& m_seen;
};

TEST_F(ModuleTest, StaysUntilAFilterHasLetGoOfEverything)
{
    HRESULT seen = E_PENDING;
    auto factory = GetFactory();
    EXPECT_EQ(CanUnload(), S_FALSE);
    ComPtr<IPrintPipelineFilter> filter;
    ASSERT_EQ(factory->CreateInstance(nullptr, __uuidof(IPrintPipelineFilter), filter.ReceiveUntyped()),
              S_OK);
    factory = {};
    EXPECT_EQ(CanUnload(), S_FALSE);
    auto witness = base::utility::MakeCom<LastWitness>(seen);
    ASSERT_EQ(filter->InitializeFilter(pipeline->communicator.Get(), pipeline->bag.Get(), witness.Get()),
              S_OK);
    witness = {};
    filter = {};
    EXPECT_EQ(seen, S_FALSE);
}
} // namespace
} // namespace pagevalidatefilter
