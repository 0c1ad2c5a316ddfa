// A filter module for the tests of the host: passes every part on, but for the fault that the driver's
// private prefix names.

#include <atomic>
#include <string>

#include "base/utility/bstr.h"
#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "base/utility/variant.h"
#include "platform/filterpipeline.h"
#include "platform/printerextension.h"
#include "tests/host/pipeline/sendpart.h"

using base::utility::Bstr;
using base::utility::ComObject;
using base::utility::ComPtr;
using base::utility::MakeCom;
using base::utility::Variant;

namespace
{
bool g_isInUse = false;

class MisbehavingFilter final : public ComObject<IPrintPipelineFilter>
{
public:
    STDMETHODIMP InitializeFilter(IInterFilterCommunicator* communicator,
                                  IPrintPipelinePropertyBag* bag,
                                  IPrintPipelineManagerControl* control) override
    {
        m_control = ComPtr<IPrintPipelineManagerControl>(control);
        Variant driver;
        Bstr fault;
        bag->GetProperty(L"DriverPropertyBag", driver.Receive());
        ComPtr<IPrinterPropertyBag> driverBag;
        static_cast<void>(driver.QueryHeld(driverBag));
        driverBag->GetString(Bstr(L"QuellmarkNsPrefix").Get(), fault.Receive());
        m_fault = fault.View();
        communicator->RequestReader(m_reader.ReceiveUntyped());
        communicator->RequestWriter(m_writer.ReceiveUntyped());
        return Has(L"uninitialised") ? E_OUTOFMEMORY : S_OK;
    }

    STDMETHODIMP ShutdownOperation() override
    {
        m_isStopped = true;
        return S_OK;
    }

    STDMETHODIMP StartOperation() override
    {
        for (;;)
        {
            ComPtr<IUnknown> part;
            if (const HRESULT got = m_reader->GetXpsPart(part.Receive()); FAILED(got) || !part)
            {
                return FAILED(got) ? got : Finish();
            }
            if (const HRESULT sent = Send(part); FAILED(sent))
            {
                return sent;
            }
            if (Has(L"stops"))
            {
                return Finish();
            }
        }
    }

private:
    bool Has(const wchar_t* fault) const { return m_fault == fault; }

    HRESULT Send(const ComPtr<IUnknown>& part)
    {
        const auto page = part.TryQuery<IFixedPage>();
        while (page && Has(L"waits") && !m_isStopped)
        {
            Sleep(10);
        }
        if (page && (Has(L"fails") || Has(L"drops")))
        {
            return Has(L"fails") ? E_ACCESSDENIED : S_OK;
        }
        ComPtr<IPrintWriteStream> unclosed;
        if (page && Has(L"unclosed"))
        {
            page->GetWriteStream(unclosed.Receive());
        }
        return host::pipeline::SendPart(*m_writer, part);
    }

    HRESULT Finish()
    {
        if (!Has(L"unended"))
        {
            m_writer->CloseSender();
        }
        if (Has(L"shutdown"))
        {
            m_control->RequestShutdown(E_ACCESSDENIED, nullptr);
        }
        if (Has(L"leaks"))
        {
            g_isInUse = true;
            static_cast<void>(m_reader.Detach());
        }
        return S_OK;
    }

    std::wstring m_fault;
    std::atomic<bool> m_isStopped{false};
    ComPtr<IPrintPipelineManagerControl> m_control;
    ComPtr<IXpsDocumentProvider> m_reader;
    ComPtr<IXpsDocumentConsumer> m_writer;
};

class Factory final : public ComObject<IClassFactory>
{
public:
    STDMETHODIMP CreateInstance(IUnknown*, REFIID iid, void** result) override
    {
        return MakeCom<MisbehavingFilter>()->QueryInterface(iid, result);
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }
};
} // namespace

STDAPI DllGetClassObject(REFCLSID, REFIID iid, void** result)
{
    return MakeCom<Factory>()->QueryInterface(iid, result);
}

STDAPI DllCanUnloadNow()
{
    return g_isInUse ? S_FALSE : S_OK;
}
