#include "host/app/console.h"

#include <cstdlib>

#include <io.h>

#include "host/xml/text.h"

namespace host::app
{
namespace
{
/// Writes in one call if the system allows it, because a console cannot join the bytes of a character that
/// come one by one. Returns false when the text could not be written.
bool Write(std::FILE* stream, std::string_view text)
{
    while (!text.empty())
    {
        const int written = _write(_fileno(stream), text.data(), static_cast<unsigned>(text.size()));
        if (written <= 0)
        {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}
} // namespace

Console::Console() : m_isTerminal(_isatty(_fileno(stderr)) != 0), m_formerCodePage(GetConsoleOutputCP())
{
    SetConsoleOutputCP(CP_UTF8);
}

Console::~Console()
{
    WipeProgress();
    SetConsoleOutputCP(m_formerCodePage);
}

void Console::PrintOut(std::string_view text)
{
    const std::lock_guard lock(m_lock);
    WipeProgress();
    m_hasLostText = !Write(stdout, text) || m_hasLostText;
}

void Console::PrintError(std::string_view text)
{
    const std::lock_guard lock(m_lock);
    WipeProgress();
    Write(stderr, text);
}

bool Console::HasLostText()
{
    const std::lock_guard lock(m_lock);
    return m_hasLostText;
}

std::size_t Console::Width()
{
    CONSOLE_SCREEN_BUFFER_INFO screen{};
    if (GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &screen) != 0)
    {
        return static_cast<std::size_t>(screen.srWindow.Right - screen.srWindow.Left + 1);
    }
    const char* const columns = std::getenv("COLUMNS");
    return columns == nullptr ? 0 : xml::ParseNumber<std::size_t>(columns, 10).value_or(0);
}

void Console::ShowProgress(std::string_view text)
{
    const std::lock_guard lock(m_lock);
    constexpr std::chrono::milliseconds interval(100);
    const auto now = std::chrono::steady_clock::now();
    if (!m_isTerminal || now - m_shownAt < interval)
    {
        return;
    }
    WipeProgress();
    Write(stderr, text);
    m_shownLength = text.size();
    m_shownAt = now;
}

void Console::WipeProgress()
{
    if (m_shownLength > 0)
    {
        std::string blanks(m_shownLength + 2, ' ');
        blanks.front() = blanks.back() = '\r';
        Write(stderr, blanks);
        m_shownLength = 0;
    }
}
} // namespace host::app
