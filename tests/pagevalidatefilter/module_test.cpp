#include "pagevalidatefilter/module.h"

#include <set>
#include <string>

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

TEST_F(ModuleTest, ExportsItsTwoFunctionsFromAHardenedImageWithAVersion)
{
    const HMODULE library = Module::Get().library;
    const auto* const image = reinterpret_cast<const BYTE*>(library);
    const auto* const dosHeader = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto& header =
        reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dosHeader->e_lfanew)->OptionalHeader;
    const auto* const exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(
        image + header.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress);
    const auto* const names = reinterpret_cast<const DWORD*>(image + exports->AddressOfNames);
    std::set<std::string> exported;
    for (DWORD i = 0; i < exports->NumberOfNames; ++i)
    {
        exported.insert(reinterpret_cast<const char*>(image + names[i]));
    }
    EXPECT_EQ(exported, (std::set<std::string>{"DllCanUnloadNow", "DllGetClassObject"}));
    EXPECT_EQ(exports->NumberOfFunctions, 2U);

    constexpr WORD hardened = IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE | IMAGE_DLLCHARACTERISTICS_NX_COMPAT |
                              IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA;
    EXPECT_EQ(header.DllCharacteristics & hardened, hardened);
    EXPECT_NE(FindResourceW(library, MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION), nullptr);
}

TEST_F(ModuleTest, HandsOutItsOneClassOnly)
{
    const auto getClassObject = Module::Get().getClassObject;
    void* result = this;
    EXPECT_EQ(getClassObject(kPageValidateXpsFilter, __uuidof(IClassFactory), nullptr), E_POINTER);
    EXPECT_EQ(getClassObject(__uuidof(IClassFactory), __uuidof(IClassFactory), &result),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(result, nullptr);
    result = this;
    EXPECT_EQ(getClassObject(kPageValidateXpsFilter, __uuidof(IPrintPipelineFilter), &result), E_NOINTERFACE);
    EXPECT_EQ(result, nullptr);
}

TEST_F(ModuleTest, AnswersAsFactoryToTwoInterfaces)
{
    const auto factory = GetFactory();
    ComPtr<IUnknown> unknown;
    EXPECT_EQ(factory->QueryInterface(__uuidof(IUnknown), unknown.ReceiveUntyped()), S_OK);
    EXPECT_EQ(unknown.Get(), factory.Get());
    EXPECT_EQ(factory->QueryInterface(__uuidof(IUnknown), nullptr), E_POINTER);
    void* result = this;
    EXPECT_EQ(factory->QueryInterface(__uuidof(IPrintPipelineFilter), &result), E_NOINTERFACE);
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(factory->AddRef(), 3U);
    EXPECT_EQ(factory->Release(), 2U);
}

TEST_F(ModuleTest, CreatesNothingThatItCannotHandOut)
{
    const auto factory = GetFactory();
    void* result = this;
    EXPECT_EQ(factory->CreateInstance(factory.Get(), __uuidof(IUnknown), nullptr), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(factory->CreateInstance(factory.Get(), __uuidof(IUnknown), &result), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(factory->CreateInstance(nullptr, __uuidof(IUnknown), nullptr), E_POINTER);
    EXPECT_EQ(factory->CreateInstance(nullptr, __uuidof(IXpsDocumentConsumer), &result), E_NOINTERFACE);
    EXPECT_EQ(result, nullptr);
}

TEST_F(ModuleTest, StaysWhileAFactoryOrAFilterIsAlive)
{
    auto factory = GetFactory();
    EXPECT_EQ(CanUnload(), S_FALSE);
    ComPtr<IPrintPipelineFilter> filter;
    EXPECT_EQ(factory->CreateInstance(nullptr, __uuidof(IPrintPipelineFilter), filter.ReceiveUntyped()),
              S_OK);
    factory = {};
    EXPECT_EQ(CanUnload(), S_FALSE);
    EXPECT_EQ(filter->AddRef(), 2U);
    EXPECT_EQ(filter->Release(), 1U);
    filter = {};
    EXPECT_EQ(CanUnload(), S_OK);
}

TEST_F(ModuleTest, RunsAJobWithTheTicketLibraryThatIsLoaded)
{
    const auto factory = GetFactory();
    ComPtr<IPrintPipelineFilter> filter;
    ASSERT_EQ(factory->CreateInstance(nullptr, __uuidof(IPrintPipelineFilter), filter.ReceiveUntyped()),
              S_OK);
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
