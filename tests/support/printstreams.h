#pragma once

#include <algorithm>
#include <atomic>
#include <functional>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "base/utility/comobject.h"
#include "platform/filterpipeline.h"

namespace support
{
/// Counts the objects of one kind that are alive.
template <typename Owner>
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

/// Sees a stream's calls, by the method's name, and may answer a failing code in the place of one.
using StreamGate = std::function<HRESULT(const std::string& method)>;

/// A print stream over bytes in memory. Reads come in pieces of at most `longestRead` bytes.
class MemoryReadStream final : public base::utility::ComObject<IPrintReadStream>,
                               LifeCounted<MemoryReadStream>
{
public:
    using LifeCounted<MemoryReadStream>::Alive;

    explicit MemoryReadStream(std::string bytes) : m_bytes(std::move(bytes)) {}

    STDMETHODIMP Seek(LONGLONG move, DWORD origin, ULONGLONG* newPosition) override
    {
        ++seeks;
        const HRESULT own = origin >= failingOrigin ? seekResult : S_OK;
        if (const HRESULT hr = gate ? gate("Seek") : own; FAILED(hr))
        {
            return hr;
        }
        const LONGLONG bases[] = {0, position, static_cast<LONGLONG>(m_bytes.size())};
        position = bases[origin] + move;
        *newPosition = static_cast<ULONGLONG>(position);
        return S_OK;
    }

    STDMETHODIMP ReadBytes(void* buffer, ULONG requested, ULONG* read, BOOL* endOfFile) override
    {
        ++reads;
        if (const HRESULT hr = gate ? gate("ReadBytes") : readResult; FAILED(hr))
        {
            return hr;
        }
        const auto start = std::min(static_cast<std::size_t>(position), m_bytes.size());
        const std::size_t count = std::min({m_bytes.size() - start, std::size_t{requested}, longestRead});
        std::copy_n(m_bytes.begin() + static_cast<std::ptrdiff_t>(start), count, static_cast<char*>(buffer));
        position += static_cast<LONGLONG>(count);
        *read = static_cast<ULONG>(count);
        *endOfFile = start + count == m_bytes.size();
        return S_OK;
    }

    LONGLONG position = 0;
    std::size_t longestRead = std::numeric_limits<std::size_t>::max();
    int seeks = 0;
    int reads = 0;
    HRESULT seekResult = S_OK;
    DWORD failingOrigin = STREAM_SEEK_SET;
    HRESULT readResult = S_OK;
    StreamGate gate;

private:
    std::string m_bytes;
};

/// A print stream that keeps what it is given, at most `longestWrite` bytes at a time. A failing write takes
/// `takenOnFailure` bytes.
class MemoryWriteStream final : public base::utility::ComObject<IPrintWriteStream>,
                                LifeCounted<MemoryWriteStream>
{
public:
    using LifeCounted<MemoryWriteStream>::Alive;

    STDMETHODIMP WriteBytes(const void* buffer, ULONG count, ULONG* written) override
    {
        if (const HRESULT hr = gate ? gate("WriteBytes") : S_OK; FAILED(hr))
        {
            return hr;
        }
        const ULONG taken = std::min(FAILED(writeResult) ? takenOnFailure : longestWrite, count);
        bytes.append(static_cast<const char*>(buffer), taken);
        *written = taken;
        return writeResult;
    }
    STDMETHODIMP_(void) Close() override
    {
        ++closes;
        if (gate)
        {
            static_cast<void>(gate("Close"));
        }
    }

    std::string bytes;
    HRESULT writeResult = S_OK;
    ULONG takenOnFailure = 0;
    ULONG longestWrite = std::numeric_limits<ULONG>::max();
    int closes = 0;
    StreamGate gate;
};
} // namespace support
