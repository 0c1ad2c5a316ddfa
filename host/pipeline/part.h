#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "base/utility/bstr.h"
#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "host/opc/package.h"
#include "host/opc/partname.h"
#include "host/pipeline/pipelinejob.h"
#include "host/pipeline/printstreams.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// The pipeline's HRESULT for an element that does not exist.
inline constexpr HRESULT kElementNotFound = __HRESULT_FROM_WIN32(ERROR_NOT_FOUND);

/// The body of a method that hands something out: what `make` gives is detached into `out`, which is cleared
/// before anything can fail. E_POINTER if it is null.
template <typename Out, typename Make>
[[nodiscard]] HRESULT HandOut(Out** out, Make&& make)
{
    if (out == nullptr)
    {
        return E_POINTER;
    }
    *out = nullptr;
    *out = make().Detach();
    return S_OK;
}

/// The same for a value that is copied.
template <typename Value>
[[nodiscard]] HRESULT CopyOut(Value value, Value* out)
{
    if (out == nullptr)
    {
        return E_POINTER;
    }
    *out = value;
    return S_OK;
}

/// The content of a part of the package, or what an edit makes of it, for the filter's XML readers. Throws
/// PackageError for a part that cannot be read, and for markup that is not safe for them.
base::utility::ComPtr<PartReadStream> OpenPartContent(const PipelineJob& job,
                                                      const opc::PartName& name,
                                                      std::uint64_t limit = opc::Package::kPartLimit,
                                                      const TicketEdit& edit = {});

/// A stream for new content of a part; closing it is recorded in the job's trace.
base::utility::ComPtr<PartWriteStream> MakeWriteStream(const PipelineJobPtr& job, const opc::PartName& part);

/// The private id of OwnObject.
inline constexpr IID kOwnObject = {
    0x6B1F0C52, 0x0D0A, 0x4C55, {0x9E, 0x0B, 0x51, 0x1C, 0x2F, 0x6D, 0x83, 0xA4}};

/// An object of this pipeline, which a private interface id finds behind the interface that a filter passes
/// in.
template <typename Interface>
class OwnObject : public base::utility::ComObject<Interface>
{
public:
    STDMETHODIMP QueryInterface(REFIID iid, void** result) override
    {
        const bool isBase = std::is_base_of_v<IPartBase, Interface> && iid == __uuidof(IPartBase);
        return base::utility::ComObject<Interface>::QueryInterface(
            isBase || iid == kOwnObject ? __uuidof(Interface) : iid, result);
    }
};

/// The part behind an interface that a filter hands back; null for one that is not of this pipeline and this
/// class.
template <typename Part>
base::utility::ComPtr<Part> Recognise(IUnknown* object)
{
    base::utility::ComPtr<IUnknown> own;
    if (object != nullptr)
    {
        static_cast<void>(object->QueryInterface(kOwnObject, own.ReceiveUntyped()));
    }
    return base::utility::ComPtr<Part>(dynamic_cast<Part*>(own.Get()));
}

template <typename Interface>
inline constexpr const char* kInterfaceName = nullptr;
template <>
inline constexpr const char* kInterfaceName<IFixedDocumentSequence> = "IFixedDocumentSequence::";
template <>
inline constexpr const char* kInterfaceName<IFixedDocument> = "IFixedDocument::";
template <>
inline constexpr const char* kInterfaceName<IFixedPage> = "IFixedPage::";
template <>
inline constexpr const char* kInterfaceName<IPartPrintTicket> = "IPartPrintTicket::";

/// A part of the package, or a new one, as the pipeline hands it out.
template <typename Interface>
class NamedPart : public OwnObject<Interface>
{
public:
    NamedPart(PipelineJobPtr job, opc::PartName name) : m_pJob(std::move(job)), m_name(std::move(name)) {}

    STDMETHODIMP GetUri(BSTR* uri) override
    {
        return Answer("GetUri", [&] {
            return HandOut(uri, [&] { return base::utility::Bstr(m_name.Text().c_str()); });
        });
    }

    const opc::PartName& Name() const noexcept { return m_name; }

protected:
    /// Answers a call of this interface.
    template <typename Body>
    HRESULT Answer(const char* method, Body&& body)
    {
        return AnswerAbout(m_name.Text(), method, std::forward<Body>(body));
    }

    /// The same for a call about something else than the part itself.
    template <typename Body>
    HRESULT AnswerAbout(std::string_view subject, const char* method, Body&& body)
    {
        return m_pJob->trace.Answer(kInterfaceName<Interface> + std::string(method), subject, body);
    }

    const PipelineJobPtr m_pJob;
    const opc::PartName m_name;
};
} // namespace host::pipeline
