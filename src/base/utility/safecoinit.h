#pragma once

namespace base::utility
{
/// Initialises COM on the current thread, in the multithreaded apartment, while this object lives. A thread
/// that is already in another apartment stays there.
class SafeCoInit
{
public:
    /// Throws HresultError when COM cannot be initialised.
    SafeCoInit();
    SafeCoInit(const SafeCoInit&) = delete;
    SafeCoInit& operator=(const SafeCoInit&) = delete;
    ~SafeCoInit();

private:
    // Whether the destructor must call CoUninitialize.
    bool initialized = false;
};
} // namespace base::utility
