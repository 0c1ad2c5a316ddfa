#include "host/pipeline/partanswers.h"

#include <string>
#include <utility>

#include "base/utility/bstr.h"
#include "host/opc/files.h"
#include "host/xml/reader.h"

namespace host::pipeline
{
using base::utility::Bstr;
using base::utility::ComPtr;
using base::utility::MakeCom;

namespace
{
/// The content of a part for the filter's XML readers, which in Wine open files that a document type names.
std::string ReadMarkup(const PipelineJob& job, const opc::PartName& name, std::uint64_t limit)
{
    std::string markup = job.package.Read(name, limit);
    try
    {
        xml::RequireSafeMarkup(markup);
    }
    catch (const xml::MarkupError& fault)
    {
        throw opc::PackageError(job.package.Path(), name.Text(), fault.what());
    }
    return markup;
}
} // namespace

HRESULT CopyPartUri(const opc::PartName& name, BSTR* uri)
{
    if (uri == nullptr)
    {
        return E_POINTER;
    }
    *uri = nullptr;
    *uri = Bstr(name.Text().c_str()).Detach();
    return S_OK;
}

HRESULT OpenPartContent(const PipelineJob& job,
                        const opc::PartName& name,
                        IPrintReadStream** stream,
                        std::uint64_t limit,
                        const TicketEdit& edit)
{
    if (stream == nullptr)
    {
        return E_POINTER;
    }
    *stream = nullptr;
    std::string markup = ReadMarkup(job, name, limit);
    *stream = MakeCom<PartReadStream>(edit ? edit(markup) : std::move(markup)).Detach();
    return S_OK;
}

HRESULT CopyCompression(EXpsCompressionOptions kept, EXpsCompressionOptions* compression)
{
    if (compression == nullptr)
    {
        return E_POINTER;
    }
    *compression = kept;
    return S_OK;
}

ComPtr<PartWriteStream> MakeWriteStream(const PipelineJobPtr& job, const opc::PartName& part)
{
    return MakeCom<PartWriteStream>(job->writer->NewContent(), job->trace, [job, name = part.Text()] {
        job->trace.Record("IPrintWriteStream::Close", name, S_OK);
    });
}
} // namespace host::pipeline
