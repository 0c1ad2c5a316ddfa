#include "host/tickets/userticket.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/utf8.h"
#include "base/utility/variant.h"
#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/printablemediasizedata.h"
#include "base/xps/printschema/vocabulary/namespaceprefixes.h"
#include "base/xps/printschema/vocabulary/namespaceuris.h"
#include "host/opc/files.h"
#include "host/tickets/ticketfacts.h"
#include "host/xml/text.h"

namespace host::tickets
{
using base::exception::ThrowIfFailed;
using base::utility::Bstr;
using base::utility::ComPtr;
using base::utility::FromUtf8;
using base::utility::Variant;
namespace printschema = base::xps::printschema;

namespace
{
constexpr const char* kBuiltInTicket =
    R"(<?xml version="1.0" encoding="UTF-8"?>)"
    R"(<psf:PrintTicket version="1")"
    R"( xmlns:psf="http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework")"
    R"( xmlns:psk="http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords")"
    R"( xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance")"
    R"( xmlns:xsd="http://www.w3.org/2001/XMLSchema">)"
    R"(<psf:Feature name="psk:JobInputBin"><psf:Option name="psk:AutoSelect"/></psf:Feature>)"
    R"(<psf:Feature name="psk:PageOrientation"><psf:Option name="psk:Portrait"/></psf:Feature>)"
    R"(<psf:Feature name="psk:PageMediaSize"><psf:Option name="psk:NorthAmericaLetter">)"
    R"(<psf:ScoredProperty name="psk:MediaSizeWidth"><psf:Value xsi:type="xsd:integer">215900</psf:Value>)"
    R"(</psf:ScoredProperty>)"
    R"(<psf:ScoredProperty name="psk:MediaSizeHeight"><psf:Value xsi:type="xsd:integer">279400</psf:Value>)"
    R"(</psf:ScoredProperty>)"
    R"(</psf:Option></psf:Feature>)"
    R"(</psf:PrintTicket>)";

[[noreturn]] void Refuse(const std::string& option, const std::string& text, const std::string& wanted)
{
    throw std::runtime_error(option + " " + text + ": " + wanted);
}

/// The names of a feature's options by their ids; empty for one that is no public keyword.
std::vector<std::string> NamesOf(const printschema::PrintTicketFunctionOption& feature)
{
    std::vector<std::string> names;
    for (const printschema::Qname& known : feature.GetOptionSchema().GetQnames())
    {
        const bool isPublic = known.namespaceId == printschema::NamespaceId::Keywords;
        names.push_back(isPublic ? base::utility::ToUtf8(known.localName) : std::string());
    }
    return names;
}

/// Leaves the names that a user has a reason to choose.
void RemoveUnusual(std::vector<std::string>& names)
{
    std::erase_if(names, [](const std::string& each) { return each.empty() || each.starts_with("PS"); });
}

/// Names what would be taken: all names, if they are few, and the one that was meant most likely.
[[noreturn]] void RefuseName(const std::string& option,
                             const std::string& name,
                             std::vector<std::string> names,
                             const std::string& otherwise)
{
    RemoveUnusual(names);
    std::string wanted = "is no such option of the Print Schema" + otherwise;
    const std::string nearest = xml::FindNearest(name, names);
    wanted += nearest.empty() ? "" : "; did you mean " + nearest + "?";
    constexpr std::size_t few = 8;
    if (names.size() <= few)
    {
        std::string all;
        for (const std::string& each : names)
        {
            all += (all.empty() ? "; the names are " : ", ") + each;
        }
        wanted += all;
    }
    else if (nearest.empty())
    {
        wanted += "; run --list-media prints the names";
    }
    Refuse(option, name, wanted);
}

/// A number of millimetres at the start of `text`, which it is taken off; empty when there is none.
std::optional<std::int32_t> TakeMicrometres(std::string_view& text)
{
    double millimetres = 0.0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), millimetres, std::chars_format::fixed);
    constexpr double largest = 2'000'000.0;
    if (error != std::errc() || !(millimetres > 0.0) || millimetres > largest)
    {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return static_cast<std::int32_t>(std::lround(millimetres * 1000.0));
}

bool Take(std::string_view& text, std::string_view word)
{
    const bool isNext = text.starts_with(word);
    text.remove_prefix(isNext ? word.size() : 0);
    return isNext;
}

std::optional<printschema::MediaSize> TakeSize(std::string_view& text)
{
    const auto width = TakeMicrometres(text);
    if (!width || !(Take(text, "x") || Take(text, "X")))
    {
        return std::nullopt;
    }
    const auto height = TakeMicrometres(text);
    Take(text, "mm");
    return height ? std::optional(printschema::MediaSize{*width, *height}) : std::nullopt;
}

/// Whether a driver can have this prefix for its own names: XML allows it, and no ticket needs it for
/// something else. All characters beyond ASCII are accepted.
bool IsPrivatePrefix(std::string_view prefix)
{
    const auto isLetter = [](char c) {
        const char lower = static_cast<char>(c | 0x20);
        return c == '_' || (lower >= 'a' && lower <= 'z') || static_cast<unsigned char>(c) >= 0x80;
    };
    const auto isInner = [&](char c) {
        return isLetter(c) || c == '-' || c == '.' || (c >= '0' && c <= '9');
    };
    constexpr std::string_view taken[] = {"psf", "psk", "xsi", "xsd"};
    return !prefix.empty() && isLetter(prefix.front()) &&
           std::all_of(prefix.begin(), prefix.end(), isInner) &&
           xml::ToLowerAscii(prefix.substr(0, 3)) != "xml" &&
           std::find(std::begin(taken), std::end(taken), prefix) == std::end(taken);
}

/// A ticket that is to be edited.
class TicketEditor
{
public:
    explicit TicketEditor(ComPtr<IXMLDOMDocument2> ticket)
        : m_ticket(std::move(ticket)),
          m_handler(printschema::PrintSchemaDocumentHandler::ForPrintTicket(m_ticket))
    {
    }

    void SetOrientation(const std::string& name)
    {
        printschema::PageOrientationData orientation;
        orientation.SetOptionId(Find(orientation, "--orientation", name));
        Replace(orientation);
    }

    void SetMedia(const std::string& text)
    {
        printschema::MediaSizeData media;
        std::string_view rest = text;
        if (const auto size = TakeSize(rest); size && rest.empty())
        {
            media.SetSize(*size);
        }
        else
        {
            media.SetOptionId(Find(media, "--media", text, ", nor a size in millimetres, as 210x297"));
        }
        Replace(media);
    }

    void SetLimits(const std::string& text)
    {
        std::string_view rest = text;
        const auto minimum = TakeSize(rest);
        const auto maximum = minimum && Take(rest, "-") ? TakeSize(rest) : std::nullopt;
        if (!maximum || !rest.empty())
        {
            Refuse("--limits", text, "is not MINWxMINH-MAXWxMAXH in millimetres");
        }
        if (minimum->widthMicrometres > maximum->widthMicrometres ||
            minimum->heightMicrometres > maximum->heightMicrometres)
        {
            Refuse("--limits", text, "has a lower sheet that is wider or higher than the upper one");
        }
        DeclarePrivateNamespace();
        printschema::PrintableMediaSizeData limits;
        limits.SetFeatureId(limits.GetFeatureIdOfScope(printschema::Scope::Page));
        limits.SetLimits({*minimum, *maximum});
        Replace(limits);
    }

private:
    static std::int32_t Find(const printschema::PrintTicketFunctionOption& feature,
                             const std::string& option,
                             const std::string& name,
                             const std::string& otherwise = {})
    {
        std::vector<std::string> names = NamesOf(feature);
        const auto found = std::find_if(names.begin(), names.end(), [&](const std::string& each) {
            return !each.empty() && xml::ToLowerAscii(each) == xml::ToLowerAscii(name);
        });
        if (found == names.end())
        {
            RefuseName(option, name, std::move(names), otherwise);
        }
        return static_cast<std::int32_t>(found - names.begin());
    }

    void Replace(const printschema::PrintTicketFunctionOption& feature)
    {
        feature.Remove(m_handler);
        feature.Write(m_handler);
    }

    void DeclarePrivateNamespace()
    {
        const auto& prefix = m_handler.GetPrefix(printschema::NamespaceId::Private);
        const std::wstring name = L"xmlns:" + std::wstring(prefix.View().substr(0, prefix.View().size() - 1));
        ComPtr<IXMLDOMElement> root;
        ThrowIfFailed(m_ticket->get_documentElement(root.Receive()));
        ComPtr<IXMLDOMAttribute> declared;
        ThrowIfFailed(root->getAttributeNode(Bstr(name.c_str()).Get(), declared.Receive()));
        if (!declared)
        {
            ThrowIfFailed(
                root->setAttribute(Bstr(name.c_str()).Get(), Variant(Bstr(printschema::kPrivateUri)).Get()));
        }
    }

    ComPtr<IXMLDOMDocument2> m_ticket;
    printschema::PrintSchemaHandler m_handler;
};

std::string Override(const ComPtr<IXMLDOMDocument2>& ticket, const TicketOverrides& overrides)
{
    TicketEditor editor(ticket);
    if (overrides.orientation)
    {
        editor.SetOrientation(*overrides.orientation);
    }
    if (overrides.media)
    {
        editor.SetMedia(*overrides.media);
    }
    if (overrides.limits)
    {
        editor.SetLimits(*overrides.limits);
    }
    return SaveBytes(ticket.Get());
}

/// Throws for a document without the prefixes of a print ticket, even if nothing is to be overridden.
void RequirePrintTicket(const ComPtr<IXMLDOMDocument2>& ticket)
{
    const auto handler = printschema::PrintSchemaDocumentHandler::ForPrintTicket(ticket);
    static_cast<void>(handler.GetPrefix(printschema::NamespaceId::Keywords));
}
} // namespace

std::string MakeUserTicket(const std::optional<std::filesystem::path>& file,
                           const TicketOverrides& overrides,
                           const std::string& privatePrefix)
{
    if (!IsPrivatePrefix(privatePrefix))
    {
        Refuse("--ns-prefix", privatePrefix, "is no prefix that XML leaves to a driver");
    }
    std::string bytes = file ? opc::ReadFileBytes(*file) : std::string(kBuiltInTicket);
    printschema::SetPrivatePrefix(FromUtf8(privatePrefix).c_str());
    ComPtr<IXMLDOMDocument2> ticket;
    try
    {
        ticket = LoadBytes(bytes);
        RequirePrintTicket(ticket);
    }
    catch (const base::exception::HresultError&)
    {
        throw std::runtime_error(file ? opc::ToUtf8Path(*file) + ": is not a print ticket"
                                      : "the built-in ticket cannot be read");
    }
    if (!overrides.orientation && !overrides.media && !overrides.limits)
    {
        return bytes;
    }
    return Override(ticket, overrides);
}

std::string ListMediaNames()
{
    std::vector<std::string> names = NamesOf(printschema::MediaSizeData());
    RemoveUnusual(names);
    std::sort(names.begin(), names.end());
    std::string text;
    for (const std::string& name : names)
    {
        text += (text.empty() ? "" : "\n") + name;
    }
    return text;
}

std::string OverrideTicket(const std::string& ticket, const TicketOverrides& overrides)
{
    try
    {
        return Override(LoadBytes(ticket), overrides);
    }
    catch (const base::exception::HresultError&)
    {
        // The filter is to meet the fault.
        return ticket;
    }
}
} // namespace host::tickets
