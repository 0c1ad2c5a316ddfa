#pragma once

namespace base::utility
{
/// COM for the current thread, in the multithreaded apartment, for as long as this object lives. A thread
/// that has another apartment already keeps it.
class SafeCoInit
{
public:
    /// Throws HresultError when COM cannot be initialised.
    SafeCoInit();
    SafeCoInit(const SafeCoInit&) = delete;
    SafeCoInit& operator=(const SafeCoInit&) = delete;
    ~SafeCoInit();

private:
    // Whether this object owes a CoUninitialize.
    bool initialized = false;
};
} // namespace base::utility
