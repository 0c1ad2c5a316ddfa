#include "host/rewritejob.h"

#include <exception>
#include <stdexcept>
#include <string>

#include "base/utility/comptr.h"
#include "host/opc/package.h"
#include "host/opc/packageerror.h"
#include "host/opc/packagewriter.h"
#include "host/pipeline/printstreams.h"
#include "host/xml/elementreader.h"
#include "host/xml/markuptext.h"
#include "host/xps/xpsdocument.h"

namespace host
{
namespace
{
using base::utility::MakeCom;

opc::PartContent Rewrite(const std::string& markup, opc::PartContent output, const PageRewriter& rewrite)
{
    const auto reader = MakeCom<pipeline::PartReadStream>(markup);
    const auto writer = MakeCom<pipeline::PartWriteStream>(std::move(output));
    rewrite(reader.Get(), writer.Get());
    if (writer->CloseCount() != 1)
    {
        throw std::logic_error("its output was closed " + std::to_string(writer->CloseCount()) + " times");
    }
    return writer->DetachContent();
}

void RewritePage(const opc::Package& package,
                 opc::PackageWriter& writer,
                 const opc::PartName& page,
                 const PageRewriter& rewrite)
{
    const std::string markup = package.Read(page);
    try
    {
        xml::RefuseForeignMarkup(markup);
        writer.ReplacePart(page, Rewrite(markup, writer.NewContent(), rewrite));
    }
    catch (const std::exception& failure)
    {
        // The reader's own words about malformed markup do not survive a rewriter that speaks HRESULTs.
        const std::string fault = xml::FindMarkupFault(markup);
        throw opc::PackageError(page.Text(), fault.empty() ? failure.what() : fault);
    }
}
} // namespace

JobCount RewritePages(const std::filesystem::path& input,
                      const std::filesystem::path& output,
                      const PageRewriter& rewrite,
                      const JobListener& listener)
{
    const opc::Package package(input);
    opc::PackageWriter writer(package, output);
    xps::XpsDocument document(package);
    JobCount done;
    while (const auto part = document.Next())
    {
        if (part->kind == xps::JobPartKind::FixedDocument)
        {
            ++done.documents;
        }
        else if (part->kind == xps::JobPartKind::FixedPage)
        {
            RewritePage(package, writer, part->name, rewrite);
            ++done.pages;
            listener({JobStage::Rewriting, done, 0});
        }
    }
    writer.Commit([&](double fraction) { listener({JobStage::Writing, done, fraction}); });
    return done;
}
} // namespace host
