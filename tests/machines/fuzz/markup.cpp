#include <string>
#include <string_view>

#include "base/xml/prologscanner.h"
#include "base/xps/page/markuptext.h"
#include "host/xml/reader.h"
#include "host/xml/writer.h"
#include "machines/fuzz/bytes.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = fuzz::AsText(data, size);
    const std::string fault = host::xml::FindMarkupFault(bytes);
    const auto verdict = base::xml::PrologScanner().Take(bytes);
    if (fault.empty())
    {
        fuzz::Require(verdict == base::xml::PrologVerdict::Accepted);
    }
    if (fault == "declares a document type")
    {
        fuzz::Require(verdict == base::xml::PrologVerdict::Refused);
    }

    host::xml::ReadElements(
        "<a b=\"" + host::xml::Escape("<&\"\t\r\n>") + "\"/>",
        [](const host::xml::Element& element) { fuzz::Require(*element.Find("b") == "<&\"\t\r\n>"); });
    std::string text(bytes);
    base::xps::EscapeText(text);
    fuzz::Require(text.find_first_of("<>\"'") == std::string::npos);
    return 0;
}
