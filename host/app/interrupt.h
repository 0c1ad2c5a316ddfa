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

/// Catches Ctrl-C and the closing of the console during its lifetime, so that a job ends as after any failure
/// and leaves no temporary file. One at a time.
class Interrupt
{
public:
    Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;
    ~Interrupt();

    bool IsRaised() const noexcept;

    /// Throws InterruptedError after Ctrl-C.
    void ThrowIfRaised() const;
};
} // namespace host::app
