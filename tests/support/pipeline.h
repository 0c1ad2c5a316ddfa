#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <limits>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "base/utility/bstr.h"
#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "base/utility/utf8.h"
#include "host/pipeline/propertybags.h"
#include "platform/filterpipeline.h"
#include "support/printstreams.h"
#include "support/ticketplatform.h"

// A print filter pipeline of fakes that record their calls. The calls of one pipeline, and those of the
// platform's print ticket functions that are reported to it, are in one list in order. Any call can be made
// to fail.
namespace support
{
using base::utility::Bstr;
using base::utility::ComPtr;
using base::utility::MakeCom;

/// The platform's result for missing tickets and properties.
constexpr HRESULT kElementNotFound = static_cast<HRESULT>(0x80070490);

/// The calls of one pipeline. Can be read while an operation runs on another thread.
class PipelineRecord
{
public:
    struct Call
    {
        /// The method, followed by the object's name if there are several objects.
        std::string name;
        bool isImpersonating;
        DWORD threadId;
        /// The failure that replaced the call; else S_OK.
        HRESULT refusal;
    };

    /// Makes every call with this name return `result` and do nothing.
    void FailCall(std::string name, HRESULT result)
    {
        m_failingName = std::move(name);
        m_failure = result;
    }

    /// Makes provider and consumer refuse every call from now on, as in a cancelled job. On any thread.
    void Cancel() { m_isCancelled = true; }

    /// Records a call. Returns its failure if it is to fail.
    HRESULT Enter(const std::string& name)
    {
        if (onCall)
        {
            onCall(name);
            return S_OK;
        }
        const bool isRefused = m_isCancelled && (name == "GetXpsPart" || name.starts_with("Send"));
        const HRESULT refusal = name == m_failingName ? m_failure : isRefused ? E_ABORT : S_OK;
        const std::lock_guard lock(m_mutex);
        m_calls.push_back({name, IsThreadImpersonating(), GetCurrentThreadId(), refusal});
        return refusal;
    }
    template <typename Method>
    HRESULT Answer(const std::string& name, Method&& method)
    {
        const HRESULT hr = Enter(name);
        return FAILED(hr) ? hr : method();
    }

    std::vector<Call> Calls() const
    {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }
    std::size_t Size() const
    {
        const std::lock_guard lock(m_mutex);
        return m_calls.size();
    }
    /// Clears the recorded calls and streams.
    void Clear()
    {
        const std::lock_guard lock(m_mutex);
        m_calls.clear();
        writeStreams.clear();
    }
    /// The names of the calls, without those that read, write or seek a stream.
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (const Call& call : Calls())
        {
            if (!call.name.starts_with("Seek") && !call.name.starts_with("ReadBytes") &&
                !call.name.starts_with("WriteBytes"))
            {
                names.push_back(call.name);
            }
        }
        return names;
    }
    int Count(const std::string& name) const
    {
        int count = 0;
        for (const Call& call : Calls())
        {
            count += call.name == name ? 1 : 0;
        }
        return count;
    }

    /// Every write stream that was obtained.
    std::vector<ComPtr<MemoryWriteStream>> writeStreams;

    /// The most bytes that a stream created from now on reads or writes in one call.
    ULONG longestTransfer = std::numeric_limits<ULONG>::max();

    /// Receives every call instead of the record, for long jobs. No call fails then.
    std::function<void(const std::string& name)> onCall;

private:
    mutable std::mutex m_mutex;
    std::vector<Call> m_calls;
    std::atomic<bool> m_isCancelled{false};
    std::string m_failingName;
    HRESULT m_failure = E_FAIL;
};

/// An object of the pipeline; all live objects are counted together.
template <typename Interface>
class PipelineObject : public base::utility::ComObject<Interface>, LifeCounted
{
protected:
    explicit PipelineObject(PipelineRecord& record) : m_record(record) {}

    template <typename Object, typename Result>
    static HRESULT HandOut(ComPtr<Object> object, Result** result)
    {
        *result = object.Detach();
        return S_OK;
    }

    PipelineRecord& m_record;
};

/// A stream whose calls are recorded under its name; `arguments` are passed to the stream.
template <typename Stream, typename... Arguments>
ComPtr<Stream> MakeRecorded(PipelineRecord& record, const std::string& name, Arguments&&... arguments)
{
    auto stream = MakeCom<Stream>(std::forward<Arguments>(arguments)...);
    stream->longest = record.longestTransfer;
    stream->gate = [&record, name](const std::string& method) { return record.Enter(method + " " + name); };
    return stream;
}

/// Returns a write stream that the record keeps.
inline HRESULT HandOutWriteStream(PipelineRecord& record, const std::string& name, IPrintWriteStream** result)
{
    record.writeStreams.push_back(MakeRecorded<MemoryWriteStream>(record, name));
    *result = ComPtr<MemoryWriteStream>(record.writeStreams.back()).Detach();
    return S_OK;
}

/// A ticket part. All its readers share one position: pipelines do not guarantee more.
class TicketPart final : public PipelineObject<IPartPrintTicket>
{
public:
    TicketPart(PipelineRecord& record, std::string partName, std::string markup)
        : PipelineObject(record),
          name(std::move(partName)),
          bytes(MakeRecorded<MemoryReadStream>(record, "ticket", std::move(markup)))
    {
    }
    STDMETHODIMP GetUri(BSTR* uri) override
    {
        return m_record.Answer("GetUri ticket", [&] {
            *uri = Bstr(name.c_str()).Detach();
            return S_OK;
        });
    }
    STDMETHODIMP GetStream(IPrintReadStream** stream) override
    {
        return m_record.Answer("GetStream ticket", [&] { return HandOut(bytes, stream); });
    }
    STDMETHODIMP GetPartCompression(EXpsCompressionOptions*) override { return E_NOTIMPL; }
    STDMETHODIMP SetPartCompression(EXpsCompressionOptions) override { return E_NOTIMPL; }

    const std::string name;
    const ComPtr<MemoryReadStream> bytes;
};

/// A sequence or a document; the base of a page too.
template <typename Interface>
class TicketedPart : public PipelineObject<Interface>
{
public:
    TicketedPart(PipelineRecord& record, std::string partName, const std::string& ticketMarkup = {})
        : PipelineObject<Interface>(record), name(std::move(partName))
    {
        if (!ticketMarkup.empty())
        {
            ticket = ComPtr<IPartPrintTicket>(
                MakeCom<TicketPart>(record, "/Metadata/" + name + "_PT.xml", ticketMarkup).Get());
        }
    }
    STDMETHODIMP GetUri(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP GetPrintTicket(IPartPrintTicket** result) override
    {
        return this->m_record.Answer("GetPrintTicket " + name,
                                     [&] { return ticket ? this->HandOut(ticket, result) : withoutTicket; });
    }
    STDMETHODIMP SetPrintTicket(IPartPrintTicket* given) override
    {
        return this->m_record.Answer("SetPrintTicket " + name, [&] {
            ticket = ComPtr<IPartPrintTicket>(given);
            return S_OK;
        });
    }

    const std::string name;
    ComPtr<IPartPrintTicket> ticket;
    HRESULT withoutTicket = kElementNotFound;
};
using SequencePart = TicketedPart<IFixedDocumentSequence>;
using DocumentPart = TicketedPart<IFixedDocument>;

class PagePart final : public TicketedPart<IFixedPage>
{
public:
    PagePart(PipelineRecord& record,
             std::string partName,
             std::string markup,
             const std::string& ticketMarkup = {})
        : TicketedPart(record, std::move(partName), ticketMarkup),
          bytes(MakeRecorded<MemoryReadStream>(record, "page", std::move(markup)))
    {
    }
    STDMETHODIMP GetStream(IPrintReadStream** stream) override
    {
        return m_record.Answer("GetStream " + name, [&] { return HandOut(bytes, stream); });
    }
    STDMETHODIMP GetWriteStream(IPrintWriteStream** stream) override
    {
        return m_record.Answer("GetWriteStream " + name,
                               [&] { return HandOutWriteStream(m_record, name, stream); });
    }
    STDMETHODIMP DeleteResource(const wchar_t* uri) override
    {
        return m_record.Answer("DeleteResource " + base::utility::ToUtf8(uri), [&] {
            ticket = {};
            return S_OK;
        });
    }
    STDMETHODIMP GetPartCompression(EXpsCompressionOptions*) override { return E_NOTIMPL; }
    STDMETHODIMP SetPartCompression(EXpsCompressionOptions) override { return E_NOTIMPL; }
    STDMETHODIMP GetPagePart(const wchar_t*, IUnknown**) override { return E_NOTIMPL; }
    STDMETHODIMP SetPagePart(IUnknown*) override { return E_NOTIMPL; }
    STDMETHODIMP GetXpsPartIterator(IXpsPartIterator**) override { return E_NOTIMPL; }

    const ComPtr<MemoryReadStream> bytes;
};

class RootPart final : public PipelineObject<IXpsDocument>
{
public:
    explicit RootPart(PipelineRecord& record) : PipelineObject(record) {}
    STDMETHODIMP GetThumbnail(IPartThumbnail**) override { return E_NOTIMPL; }
    STDMETHODIMP SetThumbnail(IPartThumbnail*) override { return E_NOTIMPL; }
};

/// A part of no known kind, or of several: QueryInterface returns one of the parts in it.
class OtherPart final : public PipelineObject<IUnknown>
{
public:
    explicit OtherPart(PipelineRecord& record, std::vector<ComPtr<IUnknown>> parts = {})
        : PipelineObject(record), m_parts(std::move(parts))
    {
    }
    STDMETHODIMP QueryInterface(REFIID iid, void** result) override
    {
        for (const auto& part : m_parts)
        {
            if (iid != __uuidof(IUnknown) && SUCCEEDED(part->QueryInterface(iid, result)))
            {
                return S_OK;
            }
        }
        return ComObject::QueryInterface(iid, result);
    }

private:
    std::vector<ComPtr<IUnknown>> m_parts;
};

/// Returns its parts in order, then null.
class PartProvider : public PipelineObject<IXpsDocumentProvider>
{
public:
    explicit PartProvider(PipelineRecord& record) : PipelineObject(record) {}
    STDMETHODIMP GetXpsPart(IUnknown** part) override
    {
        return m_record.Answer("GetXpsPart", [&] {
            if (beforePart)
            {
                beforePart();
            }
            if (parts.empty())
            {
                return endResult;
            }
            *part = parts.front().Detach();
            parts.pop_front();
            return S_OK;
        });
    }

    std::deque<ComPtr<IUnknown>> parts;
    std::function<void()> beforePart;
    HRESULT endResult = S_OK;
};

/// Accepts parts and releases them.
class PartConsumer : public PipelineObject<IXpsDocumentConsumer>
{
public:
    explicit PartConsumer(PipelineRecord& record) : PipelineObject(record) {}
    STDMETHODIMP SendXpsUnknown(IUnknown*) override { return m_record.Enter("SendXpsUnknown"); }
    STDMETHODIMP SendXpsDocument(IXpsDocument*) override { return m_record.Enter("SendXpsDocument"); }
    STDMETHODIMP SendFixedDocumentSequence(IFixedDocumentSequence* sequence) override
    {
        return m_record.Enter("SendFixedDocumentSequence " + static_cast<SequencePart*>(sequence)->name);
    }
    STDMETHODIMP SendFixedDocument(IFixedDocument* document) override
    {
        return m_record.Enter("SendFixedDocument " + static_cast<DocumentPart*>(document)->name);
    }
    STDMETHODIMP SendFixedPage(IFixedPage* page) override
    {
        return m_record.Enter("SendFixedPage " + static_cast<PagePart*>(page)->name);
    }
    STDMETHODIMP CloseSender() override { return m_record.Enter("CloseSender"); }
    STDMETHODIMP GetNewEmptyPart(const wchar_t* uri,
                                 REFIID iid,
                                 void** newPart,
                                 IPrintWriteStream** stream) override
    {
        return m_record.Answer("GetNewEmptyPart", [&] {
            if (iid != __uuidof(IPartPrintTicket))
            {
                return E_NOINTERFACE;
            }
            newPartNames.push_back(base::utility::ToUtf8(uri));
            *newPart = MakeCom<TicketPart>(m_record, newPartNames.back(), std::string()).Detach();
            return HandOutWriteStream(m_record, "new ticket", stream);
        });
    }

    std::vector<std::string> newPartNames;
};

/// Connects the filter with provider and consumer, either of which may be null.
class Communicator final : public PipelineObject<IInterFilterCommunicator>
{
public:
    Communicator(PipelineRecord& record, ComPtr<PartProvider> provider, ComPtr<PartConsumer> consumer)
        : PipelineObject(record), reader(std::move(provider)), writer(std::move(consumer))
    {
    }
    STDMETHODIMP RequestReader(void** result) override
    {
        return m_record.Answer("RequestReader", [&] {
            return HandOut(reader, reinterpret_cast<IXpsDocumentProvider**>(result));
        });
    }
    STDMETHODIMP RequestWriter(void** result) override
    {
        return m_record.Answer("RequestWriter", [&] {
            return HandOut(writer, reinterpret_cast<IXpsDocumentConsumer**>(result));
        });
    }

    ComPtr<PartProvider> reader;
    ComPtr<PartConsumer> writer;
};

class ManagerControl final : public PipelineObject<IPrintPipelineManagerControl>
{
public:
    explicit ManagerControl(PipelineRecord& record) : PipelineObject(record) {}
    STDMETHODIMP RequestShutdown(HRESULT reason, IImgErrorInfo* errorInfo) override
    {
        reasons.push_back(reason);
        return errorInfo != nullptr ? E_INVALIDARG : m_record.Enter("RequestShutdown");
    }
    STDMETHODIMP FilterFinished() override { return m_record.Enter("FilterFinished"); }

    std::vector<HRESULT> reasons;
};

/// Returns streams of the user's ticket.
class TicketFactory final : public PipelineObject<IPrintReadStreamFactory>
{
public:
    TicketFactory(PipelineRecord& record, std::string markup)
        : PipelineObject(record),
          m_bytes(MakeRecorded<MemoryReadStream>(record, "user ticket", std::move(markup)))
    {
    }
    STDMETHODIMP GetStream(IPrintReadStream** stream) override
    {
        return m_record.Answer("GetStream user ticket", [&] { return HandOut(m_bytes, stream); });
    }

private:
    ComPtr<MemoryReadStream> m_bytes;
};

/// Everything that a filter receives, with every property that it reads. Outlives the filter.
class Pipeline
{
public:
    /// An empty `ticket` is a ticket without features. A stream reads or writes at most `longestTransfer`
    /// bytes in one call.
    explicit Pipeline(const std::string& userTicket,
                      ULONG longestTransfer = std::numeric_limits<ULONG>::max())
    {
        record.longestTransfer = longestTransfer;
        bag->SetObject(L"DriverPropertyBag", driverBag.Get());
        bag->SetObject(L"PerUserPrintTicket", MakeCom<TicketFactory>(record, userTicket).Get());
        bag->SetText(L"PrinterName", L"printer");
        bag->SetHandle(L"UserSecurityToken", UserToken());
    }

    /// The number of live objects and streams of all pipelines.
    static int CountObjects() { return LifeCounted::Alive(); }

    template <typename Part, typename... Arguments>
    ComPtr<Part> Add(Arguments&&... arguments)
    {
        auto part = MakeCom<Part>(record, std::forward<Arguments>(arguments)...);
        provider->parts.push_back(ComPtr<IUnknown>(part.Get()));
        return part;
    }

    [[nodiscard]] HRESULT Initialize(IPrintPipelineFilter& filter)
    {
        return filter.InitializeFilter(communicator.Get(), bag.Get(), control.Get());
    }

    /// What the driver says; nothing by default.
    void SetDriver(const wchar_t* prefix, LONG pageDescriptionType)
    {
        driverBag->SetText(L"QuellmarkNsPrefix", prefix);
        driverBag->SetNumber(L"QuellmarkTesselType", pageDescriptionType);
    }

    PipelineRecord record;
    // The property bags are the host's.
    host::pipeline::CallTrace trace{[this](const host::pipeline::TracedCall& call) {
        static_cast<void>(
            record.Enter(std::string(call.method.substr(call.method.find("::") + 2)) + " " + call.subject));
    }};
    const ComPtr<PartProvider> provider = MakeCom<PartProvider>(record);
    const ComPtr<PartConsumer> consumer = MakeCom<PartConsumer>(record);
    const ComPtr<Communicator> communicator = MakeCom<Communicator>(record, provider, consumer);
    const ComPtr<ManagerControl> control = MakeCom<ManagerControl>(record);
    const ComPtr<host::pipeline::PipelinePropertyBag> bag =
        MakeCom<host::pipeline::PipelinePropertyBag>(trace);
    const ComPtr<host::pipeline::DriverPropertyBag> driverBag =
        MakeCom<host::pipeline::DriverPropertyBag>(trace);
};
} // namespace support
