#include "bench/markuppasses.h"

#include <ostream>
#include <utility>

#include "base/io/piecebuffer.h"
#include "base/io/printreadstreamtoistream.h"
#include "base/io/printstreambuffer.h"
#include "base/logging/errors.h"
#include "base/utility/variant.h"
#include "base/xps/fixedpagesaxconvertor.h"
#include "base/xps/markupreader.h"
#include "support/printstreams.h"

namespace bench
{
namespace
{
using base::exception::ThrowIfFailed;
using base::utility::ComPtr;
using base::utility::MakeCom;

/// Reads what a handler can read of each attribute.
class AttributeReader final : public base::xps::FixedPageSaxHandlerBase
{
public:
    STDMETHODIMP startElement(
        const wchar_t*, int, const wchar_t*, int, const wchar_t*, int, ISAXAttributes* attributes) override
    {
        int count = 0;
        ThrowIfFailed(attributes->getLength(&count));
        for (int index = 0; index < count; ++index)
        {
            const wchar_t* texts[4];
            int lengths[4];
            ThrowIfFailed(attributes->getName(
                index, &texts[0], &lengths[0], &texts[1], &lengths[1], &texts[2], &lengths[2]));
            ThrowIfFailed(attributes->getValue(index, &texts[3], &lengths[3]));
        }
        return S_OK;
    }
};

/// Takes a page in the pieces in which it was written.
class PieceStream final : public base::utility::ComObject<IPrintWriteStream>
{
public:
    STDMETHODIMP WriteBytes(const void* buffer, ULONG count, ULONG* written) override
    {
        pieces.emplace_back(static_cast<const char*>(buffer), count);
        *written = count;
        return S_OK;
    }
    STDMETHODIMP_(void) Close() override {}

    std::vector<std::string> pieces;
};

ComPtr<IStream> Open(const std::string& page)
{
    const auto bytes = MakeCom<support::MemoryReadStream>(page);
    return ComPtr<IStream>::Adopt(MakeCom<base::io::PrintReadStreamToIStream>(bytes.Get()).Detach());
}

/// With nothing between the reader and the handler.
void Parse(const std::string& page, ISAXContentHandler& handler)
{
    ComPtr<ISAXXMLReader> reader;
    ThrowIfFailed(CoCreateInstance(
        platform::kSaxXmlReader60, nullptr, CLSCTX_ALL, __uuidof(ISAXXMLReader), reader.ReceiveUntyped()));
    ThrowIfFailed(reader->putFeature(L"http://xml.org/sax/features/namespace-prefixes", VARIANT_TRUE));
    ThrowIfFailed(reader->putContentHandler(&handler));
    ThrowIfFailed(reader->parse(base::utility::Variant(Open(page).Get()).Get()));
}

void Rewrite(const std::string& page, IPrintWriteStream* target)
{
    constexpr float turnDegrees = 270.0F;
    base::io::PrintStreamBuffer buffer(target);
    base::io::PieceBuffer pieces(buffer);
    std::ostream output(&pieces);
    {
        const auto convertor = MakeCom<base::xps::FixedPageSaxConvertor>(output, turnDegrees, 1.0F);
        base::xps::ParseMarkup(*Open(page).Get(), *convertor);
    }
    output.flush();
}

void RunParse(const MarkupPage& page)
{
    Parse(page.markup, *MakeCom<base::xps::FixedPageSaxHandlerBase>());
}

void RunAttributes(const MarkupPage& page)
{
    Parse(page.markup, *MakeCom<AttributeReader>());
}

ComPtr<support::MemoryWriteStream> MakeTarget(const MarkupPage& page)
{
    auto target = MakeCom<support::MemoryWriteStream>();
    target->bytes.reserve(page.markup.size() * 2);
    return target;
}

void RunFloor(const MarkupPage& page)
{
    RunAttributes(page);
    base::io::PrintStreamBuffer buffer(MakeTarget(page).Get());
    std::ostream output(&buffer);
    for (const std::string& piece : page.turned)
    {
        output << piece;
    }
}

void RunRewrite(const MarkupPage& page)
{
    Rewrite(page.markup, MakeTarget(page).Get());
}
} // namespace

MarkupPage::MarkupPage(std::string source) : markup(std::move(source))
{
    const auto stream = MakeCom<PieceStream>();
    Rewrite(markup, stream.Get());
    turned = stream->pieces;
}

const std::vector<MarkupPass> kMarkupPasses = {
    {"parse", RunParse}, {"attributes", RunAttributes}, {"floor", RunFloor}, {"rewrite", RunRewrite}};
} // namespace bench
