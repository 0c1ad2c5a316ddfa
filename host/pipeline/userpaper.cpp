#include "host/pipeline/userpaper.h"

#include <atomic>
#include <cstddef>

namespace host::pipeline
{
namespace
{
// '0' metric, '1' U.S.; 0 for that of the user's locale.
std::atomic<wchar_t> g_measurementSystem{0};

int WINAPI AnswerLocaleInfo(LCID locale, LCTYPE type, LPWSTR buffer, int size)
{
    const wchar_t system = g_measurementSystem;
    if (type != LOCALE_IMEASURE || system == 0 || buffer == nullptr || size < 2)
    {
        return GetLocaleInfoW(locale, type, buffer, size);
    }
    buffer[0] = system;
    buffer[1] = 0;
    return 2;
}

/// Puts a function in the place of another one that a module imports. Returns false if it imports neither.
bool Redirect(HMODULE module, FARPROC from, ULONG_PTR to)
{
    auto* const base = reinterpret_cast<std::byte*>(module);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const DWORD imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    bool isFound = false;
    for (auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports); library->Name != 0;
         ++library)
    {
        for (auto* place = reinterpret_cast<ULONG_PTR*>(base + library->FirstThunk); *place != 0; ++place)
        {
            isFound = isFound || *place == reinterpret_cast<ULONG_PTR>(from) || *place == to;
            DWORD access = 0;
            if (*place == reinterpret_cast<ULONG_PTR>(from) &&
                VirtualProtect(place, sizeof(*place), PAGE_READWRITE, &access))
            {
                *place = to;
                VirtualProtect(place, sizeof(*place), access, &access);
            }
        }
    }
    return isFound;
}
} // namespace

bool SetUserPaper(HMODULE module, const std::optional<std::string>& paper)
{
    g_measurementSystem = !paper ? L'\0' : *paper == "Letter" ? L'1' : L'0';
    return !paper || Redirect(module,
                              GetProcAddress(GetModuleHandleW(L"kernel32"), "GetLocaleInfoW"),
                              reinterpret_cast<ULONG_PTR>(&AnswerLocaleInfo));
}
} // namespace host::pipeline
