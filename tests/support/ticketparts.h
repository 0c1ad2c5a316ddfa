#pragma once

#include <string>
#include <utility>

#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "platform/filterpipeline.h"
#include "support/printstreams.h"

// The parts of a document as far as print tickets go.
namespace support
{
/// What the pipeline answers for a part without a ticket.
constexpr HRESULT kNoTicket = __HRESULT_FROM_WIN32(ERROR_NOT_FOUND);

/// A ticket part over text.
class TicketPart final : public base::utility::ComObject<IPartPrintTicket>, LifeCounted<TicketPart>
{
public:
    using LifeCounted<TicketPart>::Alive;

    explicit TicketPart(std::string ticket) : m_ticket(std::move(ticket)) {}

    STDMETHODIMP GetStream(IPrintReadStream** stream) override
    {
        if (FAILED(streamResult))
        {
            return streamResult;
        }
        const auto created = base::utility::MakeCom<MemoryReadStream>(m_ticket);
        created->seekResult = seekResult;
        created->readResult = readResult;
        *stream = base::utility::ComPtr<MemoryReadStream>(created).Detach();
        return S_OK;
    }
    STDMETHODIMP GetUri(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP GetPartCompression(EXpsCompressionOptions*) override { return E_NOTIMPL; }
    STDMETHODIMP SetPartCompression(EXpsCompressionOptions) override { return E_NOTIMPL; }

    HRESULT streamResult = S_OK;
    HRESULT seekResult = S_OK;
    HRESULT readResult = S_OK;

private:
    std::string m_ticket;
};

/// A sequence or a document; a page with FakePage.
template <typename Interface>
class FakePart : public base::utility::ComObject<Interface>, LifeCounted<FakePart<Interface>>
{
public:
    using LifeCounted<FakePart<Interface>>::Alive;

    STDMETHODIMP GetPrintTicket(IPartPrintTicket** result) override
    {
        if (ticket)
        {
            *result = base::utility::ComPtr<IPartPrintTicket>(ticket.Get()).Detach();
            return S_OK;
        }
        return withoutTicket;
    }
    STDMETHODIMP GetUri(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP SetPrintTicket(IPartPrintTicket*) override { return E_NOTIMPL; }

    base::utility::ComPtr<TicketPart> ticket;
    HRESULT withoutTicket = kNoTicket;
};

using FakeSequence = FakePart<IFixedDocumentSequence>;
using FakeDocument = FakePart<IFixedDocument>;

class FakePage final : public FakePart<IFixedPage>
{
public:
    STDMETHODIMP GetStream(IPrintReadStream**) override { return E_NOTIMPL; }
    STDMETHODIMP GetPartCompression(EXpsCompressionOptions*) override { return E_NOTIMPL; }
    STDMETHODIMP SetPartCompression(EXpsCompressionOptions) override { return E_NOTIMPL; }
    STDMETHODIMP GetPagePart(const wchar_t*, IUnknown**) override { return E_NOTIMPL; }
    STDMETHODIMP GetWriteStream(IPrintWriteStream**) override { return E_NOTIMPL; }
    STDMETHODIMP SetPagePart(IUnknown*) override { return E_NOTIMPL; }
    STDMETHODIMP DeleteResource(const wchar_t*) override { return E_NOTIMPL; }
    STDMETHODIMP GetXpsPartIterator(IXpsPartIterator**) override { return E_NOTIMPL; }
};

/// The parts and streams that are alive.
inline int AliveParts()
{
    return MemoryReadStream::Alive() + TicketPart::Alive() + FakeSequence::Alive() + FakeDocument::Alive() +
           FakePart<IFixedPage>::Alive();
}
} // namespace support
