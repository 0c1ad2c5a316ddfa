#include "host/pipeline/printstreams.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace host::pipeline
{
STDMETHODIMP PartReadStream::Seek(LONGLONG move, DWORD origin, ULONGLONG* newPosition)
{
    LONGLONG base = 0;
    switch (origin)
    {
    case STREAM_SEEK_SET:
        break;
    case STREAM_SEEK_CUR:
        base = static_cast<LONGLONG>(m_position);
        break;
    case STREAM_SEEK_END:
        base = static_cast<LONGLONG>(m_content.size());
        break;
    default:
        return E_INVALIDARG;
    }
    if (move > std::numeric_limits<LONGLONG>::max() - base)
    {
        return E_INVALIDARG;
    }
    if (base + move < 0)
    {
        return HRESULT_FROM_WIN32(ERROR_NEGATIVE_SEEK);
    }
    m_position = static_cast<ULONGLONG>(base + move);
    if (newPosition != nullptr)
    {
        *newPosition = m_position;
    }
    return S_OK;
}

STDMETHODIMP PartReadStream::ReadBytes(void* buffer, ULONG requested, ULONG* read, BOOL* endOfFile)
{
    if (buffer == nullptr || read == nullptr || endOfFile == nullptr)
    {
        return E_POINTER;
    }
    const auto position = static_cast<std::size_t>(std::min<ULONGLONG>(m_position, m_content.size()));
    const std::size_t count = m_content.copy(static_cast<char*>(buffer), requested, position);
    m_position += count;
    *read = static_cast<ULONG>(count);
    *endOfFile = m_position >= m_content.size() ? TRUE : FALSE;
    return S_OK;
}

STDMETHODIMP PartWriteStream::WriteBytes(const void* buffer, ULONG count, ULONG* written)
{
    if (buffer == nullptr || written == nullptr)
    {
        return E_POINTER;
    }
    *written = 0;
    if (m_closeCount != 0)
    {
        return E_UNEXPECTED;
    }
    return m_trace.Attempt([&] {
        m_content.Append(std::string_view(static_cast<const char*>(buffer), count));
        *written = count;
        return S_OK;
    });
}

STDMETHODIMP_(void) PartWriteStream::Close()
{
    ++m_closeCount;
    m_onClose();
}
} // namespace host::pipeline
