#include "host/pipeline/part.h"

#include <string>

#include "host/opc/files.h"
#include "host/xml/reader.h"

namespace host::pipeline
{
using base::utility::ComPtr;
using base::utility::MakeCom;

ComPtr<PartReadStream> OpenPartContent(const PipelineJob& job,
                                       const opc::PartName& name,
                                       std::uint64_t limit,
                                       const TicketEdit& edit)
{
    std::string markup = job.package.Read(name, limit);
    try
    {
        // In Wine the filter's readers open files that a document type names.
        xml::RequireSafeMarkup(markup);
    }
    catch (const xml::MarkupError& fault)
    {
        throw opc::PackageError(job.package.Path(), name.Text(), fault.what());
    }
    return MakeCom<PartReadStream>(edit ? edit(markup) : std::move(markup));
}

ComPtr<PartWriteStream> MakeWriteStream(const PipelineJobPtr& job, const opc::PartName& part)
{
    return MakeCom<PartWriteStream>(job->writer->NewContent(), job->trace, [job, name = part.Text()] {
        job->trace.Record("IPrintWriteStream::Close", name, S_OK);
    });
}
} // namespace host::pipeline
