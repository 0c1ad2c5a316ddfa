#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "base/utility/comptr.h"
#include "host/pipeline/calltrace.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// A DLL that was loaded by its path; freed on destruction.
class LoadedLibrary
{
public:
    /// Throws std::runtime_error, naming the file and the system's reason.
    explicit LoadedLibrary(const std::filesystem::path& path);

    /// Throws std::runtime_error when the library does not export it.
    template <typename Function>
    Function* Find(const char* name) const
    {
        return reinterpret_cast<Function*>(FindAddress(name));
    }
    template <typename Function>
    Function* Find(WORD ordinal) const
    {
        return reinterpret_cast<Function*>(FindAddress(MAKEINTRESOURCEA(ordinal)));
    }

    HMODULE Handle() const noexcept { return m_module.get(); }

    /// Leaves the library loaded for the life of the process.
    void Abandon() noexcept { static_cast<void>(m_module.release()); }

private:
    struct Closer
    {
        using pointer = HMODULE;
        void operator()(HMODULE module) const noexcept { FreeLibrary(module); }
    };

    void (*FindAddress(const char* name) const)();

    std::filesystem::path m_path;
    std::unique_ptr<HMODULE, Closer> m_module;
};

/// A filter's DLL, loaded as the pipeline loads it: by its path, without registration.
class FilterModule
{
public:
    /// Throws std::runtime_error for what is no filter module.
    explicit FilterModule(const std::filesystem::path& path);
    FilterModule(const FilterModule&) = delete;
    FilterModule& operator=(const FilterModule&) = delete;
    ~FilterModule();

    /// Creates the page-validation filter through its class factory. Throws std::runtime_error, naming the
    /// file, when the module cannot.
    base::utility::ComPtr<IPrintPipelineFilter> CreateFilter(CallTrace& trace) const;

    /// "Letter" or "A4", or the paper of the locale: see SetUserPaper.
    void SetUserPaper(const std::optional<std::string>& paper) const;

    /// Whether the module reports that it is not in use. A module in use is never unloaded.
    bool CanUnload() const noexcept;

private:
    std::filesystem::path m_path;
    LoadedLibrary m_library;
    decltype(DllGetClassObject)* m_getClassObject;
    decltype(DllCanUnloadNow)* m_canUnloadNow;
};
} // namespace host::pipeline
