#include "host/pipeline/filtermodule.h"

#include <stdexcept>
#include <string>

#include "host/opc/files.h"
#include "host/pipeline/resulttext.h"
#include "host/pipeline/userpaper.h"

namespace host::pipeline
{
using base::utility::ComPtr;

namespace
{
// As packaging/ names it to the pipeline.
constexpr CLSID kFilterClass = {0xD79DCE9B, 0x5F31, 0x4A6C, {0xA1, 0x60, 0xA3, 0x4B, 0x2A, 0x81, 0x2B, 0xF8}};

[[noreturn]] void Fail(const std::filesystem::path& library, const std::string& what)
{
    throw std::runtime_error(opc::ToUtf8Path(library) + ": " + what);
}
} // namespace

LoadedLibrary::LoadedLibrary(const std::filesystem::path& path)
    : m_path(path), m_module(LoadLibraryW(path.c_str()))
{
    if (!m_module)
    {
        Fail(path, "cannot be loaded: " + DescribeResult(HRESULT_FROM_WIN32(GetLastError())));
    }
}

void (*LoadedLibrary::FindAddress(const char* name) const)()
{
    const FARPROC address = GetProcAddress(m_module.get(), name);
    if (address == nullptr)
    {
        Fail(m_path, "does not export what the host calls");
    }
    return reinterpret_cast<void (*)()>(address);
}

FilterModule::FilterModule(const std::filesystem::path& path)
    : m_path(std::filesystem::absolute(path)),
      m_library(m_path),
      m_getClassObject(m_library.Find<decltype(DllGetClassObject)>("DllGetClassObject")),
      m_canUnloadNow(m_library.Find<decltype(DllCanUnloadNow)>("DllCanUnloadNow"))
{
}

FilterModule::~FilterModule()
{
    if (!CanUnload())
    {
        m_library.Abandon();
    }
}

ComPtr<IPrintPipelineFilter> FilterModule::CreateFilter(CallTrace& trace) const
{
    ComPtr<IClassFactory> factory;
    HRESULT result = trace.Answer("DllGetClassObject", "", [&] {
        return m_getClassObject(kFilterClass, __uuidof(IClassFactory), factory.ReceiveUntyped());
    });
    ComPtr<IPrintPipelineFilter> filter;
    if (SUCCEEDED(result))
    {
        result = trace.Answer("IClassFactory::CreateInstance", "", [&] {
            return factory->CreateInstance(nullptr, __uuidof(IPrintPipelineFilter), filter.ReceiveUntyped());
        });
    }
    if (FAILED(result))
    {
        Fail(m_path, "creates no filter: " + DescribeResult(result));
    }
    return filter;
}

void FilterModule::SetUserPaper(const std::optional<std::string>& paper) const
{
    if (!pipeline::SetUserPaper(m_library.Handle(), paper))
    {
        Fail(m_path, "does not import GetLocaleInfoW, so --paper has no effect on it");
    }
}

bool FilterModule::CanUnload() const noexcept
{
    return m_canUnloadNow() == S_OK;
}
} // namespace host::pipeline
