#include "host/app/interrupt.h"

#include <atomic>

#include "platform/win32.h"

namespace host::app
{
namespace
{
std::atomic<bool> raised{false};

// Called on a thread of the system.
BOOL WINAPI OnConsoleEvent(DWORD)
{
    raised = true;
    return TRUE;
}
} // namespace

Interrupt::Interrupt()
{
    raised = false;
    SetConsoleCtrlHandler(&OnConsoleEvent, TRUE);
}

Interrupt::~Interrupt()
{
    SetConsoleCtrlHandler(&OnConsoleEvent, FALSE);
}

bool Interrupt::IsRaised() const noexcept
{
    return raised;
}

void Interrupt::ThrowIfRaised() const
{
    if (raised)
    {
        throw InterruptedError();
    }
}
} // namespace host::app
