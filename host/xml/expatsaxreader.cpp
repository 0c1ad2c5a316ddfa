// SaxReader where there is no MSXML: the logic above it then builds for the build machine and its sanitizers.
#include "host/xml/saxreader.h"

#include <exception>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

#include <expat.h>

namespace host::xml
{
namespace
{
// No name and no namespace can hold it.
constexpr char kSeparator = '\n';

struct ParserCloser
{
    void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
};
using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserCloser>;

/// The namespace and the local name.
std::pair<std::string, std::string> SplitName(std::string_view name)
{
    const std::size_t separator = name.rfind(kSeparator);
    if (separator == std::string_view::npos)
    {
        return {"", std::string(name)};
    }
    return {std::string(name.substr(0, separator)), std::string(name.substr(separator + 1))};
}

std::string TextOf(const char* text)
{
    return text == nullptr ? std::string() : std::string(text);
}

/// Hands the parser's events on. No exception may cross the parser's frames: the first one is kept and stops
/// it.
class Reading
{
public:
    explicit Reading(MarkupListener& listener)
        : m_listener(listener), m_parser(XML_ParserCreateNS("UTF-8", kSeparator))
    {
        XML_SetUserData(m_parser.get(), this);
        XML_SetElementHandler(m_parser.get(), &Reading::Start, &Reading::End);
        XML_SetNamespaceDeclHandler(m_parser.get(), &Reading::StartPrefix, &Reading::EndPrefix);
        XML_SetCharacterDataHandler(m_parser.get(), &Reading::Text);
    }

    bool Parse(std::string_view bytes)
    {
        return XML_Parse(m_parser.get(), bytes.data(), static_cast<int>(bytes.size()), XML_TRUE) ==
               XML_STATUS_OK;
    }

    const std::exception_ptr& Kept() const noexcept { return m_kept; }
    MarkupPlace Place() const
    {
        return {static_cast<int>(XML_GetCurrentLineNumber(m_parser.get())),
                static_cast<int>(XML_GetCurrentColumnNumber(m_parser.get())) + 1};
    }
    std::string Fault() const { return XML_ErrorString(XML_GetErrorCode(m_parser.get())); }

private:
    template <typename Action>
    static void Forward(void* state, Action&& act) noexcept
    {
        auto& reading = *static_cast<Reading*>(state);
        try
        {
            if (reading.m_listener.WantsMore())
            {
                act(reading.m_listener);
            }
        }
        catch (...)
        {
            reading.m_kept = std::current_exception();
            XML_StopParser(reading.m_parser.get(), XML_FALSE);
        }
    }

    static void Start(void* state, const char* name, const char** attributes) noexcept
    {
        Forward(state, [&](MarkupListener& listener) {
            std::vector<Attribute> handed;
            for (; *attributes != nullptr; attributes += 2)
            {
                auto [attributeUri, attributeName] = SplitName(attributes[0]);
                handed.push_back({std::move(attributeUri), std::move(attributeName), attributes[1]});
            }
            auto [namespaceUri, localName] = SplitName(name);
            listener.OnStart(std::move(namespaceUri), std::move(localName), std::move(handed));
        });
    }
    static void End(void* state, const char*) noexcept
    {
        Forward(state, [](MarkupListener& listener) { listener.OnEnd(); });
    }
    static void StartPrefix(void* state, const char* prefix, const char* uri) noexcept
    {
        Forward(state, [&](MarkupListener& listener) { listener.OnPrefix(TextOf(prefix), TextOf(uri)); });
    }
    static void EndPrefix(void* state, const char* prefix) noexcept
    {
        Forward(state, [&](MarkupListener& listener) { listener.OnPrefixEnd(TextOf(prefix)); });
    }
    static void Text(void* state, const char* text, int length) noexcept
    {
        Forward(state, [&](MarkupListener& listener) {
            listener.OnText(std::string(text, static_cast<std::size_t>(length)));
        });
    }

    MarkupListener& m_listener;
    Parser m_parser;
    std::exception_ptr m_kept;
};
} // namespace

std::string SaxReader::Read(std::string_view bytes, MarkupListener& listener)
{
    if (bytes.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    {
        return "it is too long";
    }
    Reading reading(listener);
    const bool isRead = reading.Parse(bytes);
    if (reading.Kept() != nullptr)
    {
        m_failedAt = reading.Place();
        std::rethrow_exception(reading.Kept());
    }
    return isRead ? "" : FormatPlace(reading.Place()) + ": " + reading.Fault();
}
} // namespace host::xml
