#pragma once

#include <atomic>
#include <memory>

#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "base/utility/driverinfo.h"
#include "platform/filterpipeline.h"

namespace base::xps::filterpipeline
{
/// The frame of a filter in the print filter pipeline: takes what the pipeline hands over, runs the derived
/// filter's work under COM on the pipeline's thread, and answers with the HRESULT of whatever it throws.
///
/// The pipeline owns the filter. StartOperation runs on one thread; ShutdownOperation may come from another
/// at any moment.
class XpsFilterBase : public utility::ComObject<IPrintPipelineFilter>
{
public:
    /// E_FAIL, and nothing kept, for a null argument. Also tells the print-ticket queries the driver's
    /// private namespace prefix; a driver that names none is no error.
    STDMETHODIMP InitializeFilter(IInterFilterCommunicator* communicator,
                                  IPrintPipelinePropertyBag* propertyBag,
                                  IPrintPipelineManagerControl* pipelineControl) override;

    /// E_FAIL for any failure. The pipeline hears of the end whether or not the work could be cancelled.
    STDMETHODIMP ShutdownOperation() override;

    /// The outcome of the work; E_FAIL before InitializeFilter has succeeded. A failure also asks the
    /// pipeline to shut down.
    STDMETHODIMP StartOperation() override;

protected:
    XpsFilterBase() noexcept;
    ~XpsFilterBase() override;

    /// Asked of the spooler once. Throws std::logic_error before InitializeFilter, and what reading the
    /// printer handle or asking the spooler fails with.
    virtual utility::DriverInfo* GetDriverInfo();

    /// The filter's work.
    virtual void RunOperation() = 0;
    /// Called once after RunOperation, whether it succeeded or not.
    virtual void EndOperation() = 0;
    /// Called by ShutdownOperation, on its thread.
    virtual void CancelOperation() = 0;

    /// Fills the empty reference with the pipeline's source of parts, or its sink. Throws
    /// std::invalid_argument for a null address, std::logic_error before InitializeFilter, HresultError when
    /// the communicator fails. An object of the wrong interface is handed out as it is, and the pipeline is
    /// asked to shut down, with a success code.
    void GetReader(utility::ComPtr<IXpsDocumentProvider>* reader) const;
    void GetWriter(utility::ComPtr<IXpsDocumentConsumer>* writer) const;

    /// Null before InitializeFilter.
    IPrintPipelinePropertyBag* GetPropertyBag() const noexcept { return m_pPropertyBag.Get(); }

private:
    utility::ComPtr<IInterFilterCommunicator> m_pCommunicator;
    utility::ComPtr<IPrintPipelinePropertyBag> m_pPropertyBag;
    utility::ComPtr<IPrintPipelineManagerControl> m_pPipelineControl;
    std::unique_ptr<utility::DriverInfo> m_pDriverInfo;

    // For a debugger only.
    static inline std::atomic<ULONG> s_liveFilters{0};
};
} // namespace base::xps::filterpipeline
