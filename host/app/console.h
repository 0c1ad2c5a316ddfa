#pragma once

#include <chrono>
#include <cstdio>
#include <mutex>
#include <string>
#include <string_view>

#include "platform/win32.h"

namespace host::app
{
/// The program's two output streams, in UTF-8, and the progress line on stderr.
///
/// The progress line is shown on a terminal only. It is erased before anything else is written and on
/// destruction. May be used on any thread.
class Console
{
public:
    Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console();

    /// A text that cannot be written is dropped; the job goes on.
    void PrintOut(std::string_view text);
    void PrintError(std::string_view text);

    /// Whether a text could not be written to stdout.
    bool HasLostText();

    /// The columns of the terminal that stdout is, or that COLUMNS gives; 0 if neither says it.
    static std::size_t Width();

    /// Replaces the progress line, at most about ten times a second.
    void ShowProgress(std::string_view text);

private:
    void WipeProgress();

    std::mutex m_lock;
    bool m_isTerminal;
    UINT m_formerCodePage;
    bool m_hasLostText = false;
    std::size_t m_shownLength = 0;
    std::chrono::steady_clock::time_point m_shownAt{};
};
} // namespace host::app
