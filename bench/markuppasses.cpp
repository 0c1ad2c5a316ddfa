#include "bench/markuppasses.h"

#include <sstream>
#include <string_view>
#include <utility>

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

void Write(std::string_view markup, support::MemoryWriteStream& target)
{
    base::io::PrintStreamBuffer buffer(&target);
    buffer.sputn(markup.data(), static_cast<std::streamsize>(markup.size()));
}

void Rewrite(const std::string& page, support::MemoryWriteStream& target)
{
    constexpr float turnDegrees = 270.0F;
    std::ostringstream output;
    const auto convertor = MakeCom<base::xps::FixedPageSaxConvertor>(output, turnDegrees, 1.0F);
    base::xps::ParseMarkup(*Open(page).Get(), *convertor);
    Write(output.view(), target);
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
    Write(page.turned, *MakeTarget(page));
}

void RunRewrite(const MarkupPage& page)
{
    Rewrite(page.markup, *MakeTarget(page));
}
} // namespace

MarkupPage::MarkupPage(std::string source) : markup(std::move(source))
{
    const auto stream = MakeCom<support::MemoryWriteStream>();
    Rewrite(markup, *stream);
    turned = stream->bytes;
}

const std::vector<MarkupPass> kMarkupPasses = {
    {"parse", RunParse}, {"attributes", RunAttributes}, {"floor", RunFloor}, {"rewrite", RunRewrite}};
} // namespace bench
