#include "host/xml/reader.h"

#include <algorithm>
#include <exception>
#include <limits>
#include <memory>
#include <new>
#include <tuple>
#include <type_traits>
#include <utility>

#include <expat.h>

#include "host/xml/text.h"

namespace host::xml
{
namespace
{
// No name can hold it, and the parser refuses a namespace that does.
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

/// One pass over a document. No exception may cross the parser's frames: the first one is kept and stops it.
class Pass
{
public:
    explicit Pass(Listener& listener)
        : m_listener(listener), m_parser(XML_ParserCreateNS("UTF-8", kSeparator))
    {
        if (!m_parser)
        {
            throw std::bad_alloc();
        }
        XML_SetUserData(m_parser.get(), this);
        XML_SetElementHandler(m_parser.get(), &Pass::Start, &Pass::End);
        XML_SetStartNamespaceDeclHandler(m_parser.get(), &Pass::Declare);
        XML_SetXmlDeclHandler(m_parser.get(), &Pass::CheckDeclaration);
        XML_SetStartDoctypeDeclHandler(m_parser.get(), &Pass::RefuseDocumentType);
        if (listener.WantsText())
        {
            XML_SetCharacterDataHandler(m_parser.get(), &Pass::Text);
        }
    }

    bool Parse(std::string_view text)
    {
        return XML_Parse(m_parser.get(), text.data(), static_cast<int>(text.size()), XML_TRUE) ==
               XML_STATUS_OK;
    }

    const std::exception_ptr& Kept() const noexcept { return m_kept; }
    MarkupPlace KeptAt() const noexcept { return m_keptAt; }
    MarkupPlace Place() const
    {
        return {static_cast<int>(XML_GetCurrentLineNumber(m_parser.get())),
                static_cast<int>(XML_GetCurrentColumnNumber(m_parser.get())) + 1};
    }
    std::string Fault() const
    {
        const XML_Error code = XML_GetErrorCode(m_parser.get());
        return code == XML_ERROR_NO_ELEMENTS && !m_hasRoot
                   ? "is empty"
                   : "is not well-formed: " + FormatPlace(Place()) + ": " + XML_ErrorString(code);
    }

private:
    template <typename Action>
    static void Forward(void* state, Action&& act) noexcept
    {
        Pass& pass = *static_cast<Pass*>(state);
        try
        {
            act(pass);
            if (!pass.m_listener.WantsMore())
            {
                pass.StopForwarding();
            }
        }
        catch (...)
        {
            pass.m_kept = std::current_exception();
            pass.m_keptAt = pass.Place();
            pass.StopForwarding();
            XML_StopParser(pass.m_parser.get(), XML_FALSE);
        }
    }

    static void CheckDeclaration(void* state, const char*, const char* encoding, int) noexcept
    {
        // As much as the module takes, and far more than a declaration needs.
        constexpr int longest = 1024;
        Forward(state, [&](Pass& pass) {
            const std::string name = ToLowerAscii(TextOf(encoding));
            if (!name.empty() && name != "utf-8" && name != "utf-16")
            {
                throw MarkupError("is encoded in " + name + ", neither in UTF-8 nor in UTF-16");
            }
            if (XML_GetCurrentByteCount(pass.m_parser.get()) > longest)
            {
                throw MarkupError("has an XML declaration of more than " + std::to_string(longest) +
                                  " bytes");
            }
        });
    }

    static void RefuseDocumentType(void* state, const char*, const char*, const char*, int) noexcept
    {
        Forward(state, [](Pass&) { throw MarkupError("declares a document type"); });
    }

    static void Declare(void* state, const char* prefix, const char* uri) noexcept
    {
        Forward(state, [&](Pass& pass) { pass.m_prefixes.push_back({TextOf(prefix), TextOf(uri)}); });
    }

    static void Start(void* state, const char* name, const char** attributes) noexcept
    {
        Forward(state, [&](Pass& pass) {
            pass.m_hasRoot = true;
            pass.ForwardText();
            Element element{{}, {}, {}, pass.m_depth++, std::exchange(pass.m_prefixes, {})};
            std::tie(element.namespaceUri, element.localName) = SplitName(name);
            for (; *attributes != nullptr; attributes += 2)
            {
                auto [namespaceUri, localName] = SplitName(attributes[0]);
                element.attributes.push_back({std::move(namespaceUri), std::move(localName), attributes[1]});
            }
            pass.m_listener.OnStart(std::move(element));
        });
    }

    static void End(void* state, const char*) noexcept
    {
        Forward(state, [](Pass& pass) {
            pass.ForwardText();
            --pass.m_depth;
            pass.m_listener.OnEnd();
        });
    }

    static void Text(void* state, const char* text, int length) noexcept
    {
        Forward(state, [&](Pass& pass) { pass.m_text.append(text, static_cast<std::size_t>(length)); });
    }

    void ForwardText()
    {
        if (!m_text.empty())
        {
            m_listener.OnText(m_text);
            m_text.clear();
        }
    }

    void StopForwarding()
    {
        XML_SetElementHandler(m_parser.get(), nullptr, nullptr);
        XML_SetStartNamespaceDeclHandler(m_parser.get(), nullptr);
        XML_SetCharacterDataHandler(m_parser.get(), nullptr);
    }

    Listener& m_listener;
    Parser m_parser;
    bool m_hasRoot = false;
    int m_depth = 0;
    // Those of the tag that comes next.
    std::vector<PrefixBinding> m_prefixes;
    // Since the last tag: the parser hands text out in pieces.
    std::string m_text;
    std::exception_ptr m_kept;
    MarkupPlace m_keptAt;
};

/// Forwards start tags.
class ElementListener final : public Listener
{
public:
    explicit ElementListener(const std::function<void(const Element&)>& onElement) : m_onElement(onElement) {}

    void OnStart(Element element) override { m_onElement(element); }

private:
    const std::function<void(const Element&)>& m_onElement;
};
} // namespace

const std::string* Element::Find(std::string_view attributeName) const
{
    const auto found = std::find_if(attributes.begin(), attributes.end(), [&](const Attribute& attribute) {
        return attribute.namespaceUri.empty() && attribute.localName == attributeName;
    });
    return found == attributes.end() ? nullptr : &found->value;
}

void PrefixScope::Enter(const Element& element)
{
    std::vector<std::string>& declared = m_declared.emplace_back();
    for (const PrefixBinding& binding : element.prefixes)
    {
        m_namespaces[binding.prefix].push_back(binding.namespaceUri);
        declared.push_back(binding.prefix);
    }
}

void PrefixScope::Leave()
{
    for (const std::string& prefix : m_declared.back())
    {
        m_namespaces[prefix].pop_back();
    }
    m_declared.pop_back();
}

const std::string* PrefixScope::Find(std::string_view prefix) const
{
    const auto found = m_namespaces.find(prefix);
    return found == m_namespaces.end() || found->second.empty() ? nullptr : &found->second.back();
}

void Reader::Read(std::string_view markup, Listener& listener)
{
    const std::string text = DecodeMarkup(markup);
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    {
        throw MarkupError("is too long");
    }
    Pass pass(listener);
    const bool isRead = pass.Parse(text);
    if (pass.Kept() != nullptr)
    {
        m_failedAt = pass.KeptAt();
        std::rethrow_exception(pass.Kept());
    }
    if (!isRead)
    {
        throw MarkupError(pass.Fault());
    }
}

void ReadElements(std::string_view markup, const std::function<void(const Element&)>& onElement)
{
    ElementListener listener(onElement);
    Reader().Read(markup, listener);
}

void RequireSafeMarkup(std::string_view markup)
{
    struct RootFound
    {
    };
    const std::function<void(const Element&)> stop = [](const Element&) { throw RootFound(); };
    ElementListener listener(stop);
    const std::string text = DecodeMarkup(markup);
    Pass pass(listener);
    static_cast<void>(pass.Parse(text));
    try
    {
        if (pass.Kept() != nullptr)
        {
            std::rethrow_exception(pass.Kept());
        }
    }
    catch (const RootFound&)
    {
        return;
    }
    // Where this reader stops before the root, another one may read on.
    if (text.find("<!DOCTYPE") != text.npos)
    {
        throw MarkupError("declares a document type");
    }
}

std::string FindMarkupFault(std::string_view markup)
{
    try
    {
        ReadElements(markup, [](const Element&) {});
        return {};
    }
    catch (const MarkupError& fault)
    {
        return fault.what();
    }
}
} // namespace host::xml
