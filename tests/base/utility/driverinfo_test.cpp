#include "base/utility/driverinfo.h"

#include <cstring>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "support/thrown.h"

namespace
{
/// The spooler as this program has it: one driver, behind one printer handle.
struct Spooler
{
    DWORD needed = 0;
    bool answers = true;
    /// The level and the size of every call.
    std::string calls;
};

Spooler g_spooler;
} // namespace

// Takes the place of the import.
BOOL WINAPI
GetPrinterDriverW(HANDLE printer, LPWSTR environment, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed)
{
    g_spooler.calls += std::to_string(level) + ":" + std::to_string(size) + " ";
    *needed = printer == &g_spooler && environment == nullptr ? g_spooler.needed : 0;
    if (*needed == 0 || buffer == nullptr || size < *needed || !g_spooler.answers)
    {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    constexpr wchar_t name[] = L"driver";
    auto* const text = reinterpret_cast<wchar_t*>(buffer + size - sizeof(name));
    std::memcpy(text, name, sizeof(name));
    reinterpret_cast<DRIVER_INFO_3W*>(buffer)->pName = text;
    return TRUE;
}

namespace base::utility
{
namespace
{
constexpr DWORD kSize = sizeof(DRIVER_INFO_3W) + 7 * sizeof(wchar_t);
const std::string kBothCalls = "3:0 3:" + std::to_string(kSize) + " ";

TEST(DriverInfo, HoldsExactlyWhatTheSpoolerNeeds)
{
    g_spooler = {.needed = kSize, .answers = true, .calls = {}};
    const DriverInfo driver(&g_spooler);
    EXPECT_EQ(g_spooler.calls, kBothCalls);
    EXPECT_EQ(std::wstring(driver.GetInfo().pName), L"driver");
}

TEST(DriverInfo, FailsWhereTheSpoolerDoes)
{
    for (const DWORD needed : {DWORD{0}, kSize})
    {
        g_spooler = {.needed = needed, .answers = false, .calls = {}};
        const std::string message =
            support::MessageOf<std::runtime_error>([] { const DriverInfo driver(&g_spooler); });
        EXPECT_TRUE(message.starts_with("base\\utility\\driverinfo(")) << message;
        EXPECT_TRUE(message.ends_with(") : GetPrinterDriver was failed.\n")) << message;
        EXPECT_EQ(g_spooler.calls, needed == 0 ? "3:0 " : kBothCalls);
    }
}
} // namespace
} // namespace base::utility
