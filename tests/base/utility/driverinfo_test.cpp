#include "base/utility/driverinfo.h"

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/thrown.h"

namespace
{
/// The spooler as this program has it: one driver, behind one printer handle.
struct Spooler
{
    struct Call
    {
        HANDLE printer;
        bool hasEnvironment;
        DWORD level;
        bool hasBuffer;
        DWORD size;

        bool operator==(const Call&) const = default;
    };

    DWORD needed = 0;
    bool answers = true;
    std::vector<Call> calls;
};

Spooler g_spooler;
} // namespace

// Takes the place of the import.
BOOL WINAPI
GetPrinterDriverW(HANDLE printer, LPWSTR environment, DWORD level, LPBYTE buffer, DWORD size, LPDWORD needed)
{
    g_spooler.calls.push_back({printer, environment != nullptr, level, buffer != nullptr, size});
    *needed = g_spooler.needed;
    if (buffer == nullptr || size < g_spooler.needed || !g_spooler.answers)
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
void* const kPrinter = &g_spooler;
constexpr DWORD kSize = sizeof(DRIVER_INFO_3W) + 7 * sizeof(wchar_t);

TEST(DriverInfo, HoldsExactlyWhatTheSpoolerNeeds)
{
    g_spooler = {.needed = kSize, .answers = true, .calls = {}};
    const DriverInfo driver(kPrinter);
    const std::vector<Spooler::Call> expected = {{kPrinter, false, 3, false, 0},
                                                 {kPrinter, false, 3, true, kSize}};
    EXPECT_EQ(g_spooler.calls, expected);
    EXPECT_EQ(std::wstring(driver.GetInfo().pName), L"driver");
}

TEST(DriverInfo, FailsWhereTheSpoolerDoes)
{
    for (const DWORD needed : {DWORD{0}, kSize})
    {
        g_spooler = {.needed = needed, .answers = false, .calls = {}};
        const std::string message =
            support::MessageOf<std::runtime_error>([] { const DriverInfo driver(kPrinter); });
        EXPECT_TRUE(message.starts_with("base\\utility\\driverinfo(")) << message;
        EXPECT_TRUE(message.ends_with(") : GetPrinterDriver was failed.\n")) << message;
        EXPECT_EQ(g_spooler.calls.size(), needed == 0 ? 1U : 2U);
    }
}
} // namespace
} // namespace base::utility
