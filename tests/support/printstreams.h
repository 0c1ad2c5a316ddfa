#pragma once

#include <algorithm>
#include <atomic>
#include <functional>
#include <limits>
#include <string>
#include <utility>

#include "base/utility/comobject.h"
#include "platform/filterpipeline.h"

namespace support
{
/// Counts the live fakes of all kinds.
class LifeCounted
{
public:
    LifeCounted(const LifeCounted&) = delete;
    LifeCounted& operator=(const LifeCounted&) = delete;
    static int Alive() { return s_alive; }

protected:
    LifeCounted() { ++s_alive; }
    ~LifeCounted() { --s_alive; }

private:
    static inline std::atomic<int> s_alive{0};
};

/// Receives the name of every method call of a stream; a failing result replaces the call.
using StreamGate = std::function<HRESULT(const std::string& method)>;

inline StreamGate Answering(HRESULT hr)
{
    return [hr](const std::string&) { return hr; };
}

/// A print stream over bytes in memory. A call reads at most `longest` bytes.
class MemoryReadStream final : public base::utility::ComObject<IPrintReadStream>, LifeCounted
{
public:
    explicit MemoryReadStream(std::string bytes) : m_bytes(std::move(bytes)) {}

    STDMETHODIMP Seek(LONGLONG move, DWORD origin, ULONGLONG* newPosition) override
    {
        ++seeks;
        const HRESULT hr = gate("Seek");
        if (SUCCEEDED(hr))
        {
            const LONGLONG bases[] = {0, position, static_cast<LONGLONG>(m_bytes.size())};
            position = bases[origin] + move;
            *newPosition = static_cast<ULONGLONG>(position);
        }
        return hr;
    }
    STDMETHODIMP ReadBytes(void* buffer, ULONG requested, ULONG* read, BOOL* endOfFile) override
    {
        ++reads;
        const HRESULT hr = gate("ReadBytes");
        if (SUCCEEDED(hr))
        {
            const auto start = std::min(static_cast<std::size_t>(position), m_bytes.size());
            *read = static_cast<ULONG>(
                m_bytes.copy(static_cast<char*>(buffer), std::min(requested, longest), start));
            position += *read;
            *endOfFile = start + *read == m_bytes.size();
        }
        return hr;
    }

    LONGLONG position = 0;
    ULONG longest = std::numeric_limits<ULONG>::max();
    int seeks = 0;
    int reads = 0;
    StreamGate gate = Answering(S_OK);

private:
    std::string m_bytes;
};

/// A print stream that keeps what is written, at most `longest` bytes in one call, and returns `writeResult`.
class MemoryWriteStream final : public base::utility::ComObject<IPrintWriteStream>, LifeCounted
{
public:
    STDMETHODIMP WriteBytes(const void* buffer, ULONG count, ULONG* written) override
    {
        if (const HRESULT hr = gate("WriteBytes"); FAILED(hr))
        {
            return hr;
        }
        *written = std::min(longest, count);
        bytes.append(static_cast<const char*>(buffer), *written);
        return writeResult;
    }
    STDMETHODIMP_(void) Close() override
    {
        ++closes;
        static_cast<void>(gate("Close"));
    }

    std::string bytes;
    HRESULT writeResult = S_OK;
    ULONG longest = std::numeric_limits<ULONG>::max();
    int closes = 0;
    StreamGate gate = Answering(S_OK);
};
} // namespace support
