#pragma once

#include <functional>
#include <string>

#include "base/utility/comobject.h"
#include "host/opc/partcontent.h"
#include "host/pipeline/calltrace.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// The content of one part, held in memory, as the pipeline's filters read it.
class PartReadStream final : public base::utility::ComObject<IPrintReadStream>
{
public:
    explicit PartReadStream(std::string content) : m_content(std::move(content)) {}

    /// As IStream::Seek. Positions beyond the end are good, those before the start are not.
    STDMETHODIMP Seek(LONGLONG move, DWORD origin, ULONGLONG* newPosition) override;

    /// Tells the end of file together with the last bytes. Null pointers are E_POINTER.
    STDMETHODIMP ReadBytes(void* buffer, ULONG requested, ULONG* read, BOOL* endOfFile) override;

private:
    std::string m_content;
    ULONGLONG m_position = 0;
};

/// Takes the new content of one part from a filter, which closes the stream exactly once.
class PartWriteStream final : public base::utility::ComObject<IPrintWriteStream>
{
public:
    /// What the host cannot keep is a failure of the trace. `onClose` is called for each Close; it must not
    /// throw.
    PartWriteStream(
        opc::PartContent content, CallTrace& trace, std::function<void()> onClose = [] {})
        : m_content(std::move(content)), m_trace(trace), m_onClose(std::move(onClose))
    {
    }

    /// E_UNEXPECTED once the stream is closed.
    STDMETHODIMP WriteBytes(const void* buffer, ULONG count, ULONG* written) override;
    STDMETHODIMP_(void) Close() override;

    /// How often the filter has closed the stream. Anything but once is the filter's fault.
    int CloseCount() const noexcept { return m_closeCount; }

    const opc::PartContent& Content() const noexcept { return m_content; }

    /// Gives away the content. To be called once, after the stream was closed.
    opc::PartContent DetachContent() { return std::move(m_content); }

private:
    opc::PartContent m_content;
    CallTrace& m_trace;
    std::function<void()> m_onClose;
    int m_closeCount = 0;
};
} // namespace host::pipeline
