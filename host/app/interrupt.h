#pragma once

#include <stdexcept>

namespace host::app
{
/// The user has pressed Ctrl-C.
class InterruptedError : public std::runtime_error
{
public:
    InterruptedError() : std::runtime_error("interrupted") {}
};

/// Catches Ctrl-C and the closing of the console while it lives, so that a job can end as after any failure
/// and leaves no temporary file. One at a time.
class Interrupt
{
public:
    Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;
    ~Interrupt();

    bool IsRaised() const noexcept;

    /// Throws InterruptedError once there was one.
    void ThrowIfRaised() const;
};
} // namespace host::app
