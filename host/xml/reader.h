#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/xml/markup.h"

namespace host::xml
{
struct Attribute
{
    std::string namespaceUri;
    std::string localName;
    std::string value;
};

/// A namespace declaration. The empty prefix is that of names without one.
struct PrefixBinding
{
    std::string prefix;
    std::string namespaceUri;
};

/// A start tag. Names and values are UTF-8.
struct Element
{
    std::string namespaceUri;
    std::string localName;
    /// Without the namespace declarations.
    std::vector<Attribute> attributes;
    /// 0 for the root.
    int depth;
    /// The namespaces that the tag itself declares.
    std::vector<PrefixBinding> prefixes;

    /// The value of an attribute without namespace; null when the element does not have it.
    const std::string* Find(std::string_view attributeName) const;
};

inline constexpr std::string_view kXmlNamespace = "http://www.w3.org/XML/1998/namespace";

/// The namespaces that prefixes stand for where a reading is, for names in attributes and in text, which the
/// reader does not resolve.
class PrefixScope
{
public:
    /// To be called at each start tag.
    void Enter(const Element& element);
    /// To be called at each end tag.
    void Leave();

    /// Null for a prefix that is not declared. The empty prefix always is.
    const std::string* Find(std::string_view prefix) const;

private:
    // For each prefix the namespaces of the open elements that declare it; the last one counts.
    std::map<std::string, std::vector<std::string>, std::less<>> m_namespaces = {
        {"", {""}}, {"xml", {std::string(kXmlNamespace)}}};
    // The prefixes that each open element declares.
    std::vector<std::vector<std::string>> m_declared;
};

/// Receives what a reader finds, in document order. An exception ends the reading and reaches the reader's
/// caller.
class Listener
{
public:
    virtual ~Listener() = default;

    /// After the first false the rest of the markup is only checked, which is faster.
    virtual bool WantsMore() const { return true; }
    /// Whether OnText is to be called at all.
    virtual bool WantsText() const { return false; }

    virtual void OnStart(Element element) = 0;
    virtual void OnEnd() {}
    /// All character data between two tags, comments left out.
    virtual void OnText(const std::string& /*text*/) {}
};

/// Reads the markup of parts and of files.
class Reader
{
public:
    /// Throws MarkupError for markup that is empty or not well-formed, for an XML declaration that names
    /// another encoding than UTF-8 and UTF-16 and for a document type declaration, which neither OPC nor XPS
    /// allows, and what DecodeMarkup throws.
    void Read(std::string_view markup, Listener& listener);

    /// The start of the tag or text at which the listener threw.
    MarkupPlace FailedAt() const noexcept { return m_failedAt; }

private:
    MarkupPlace m_failedAt;
};

/// Calls `onElement` for each start tag. Throws as Reader::Read does.
void ReadElements(std::string_view markup, const std::function<void(const Element&)>& onElement);

/// Throws MarkupError for an encoding, a document type or an excess that a Reader refuses. For markup that
/// goes to a reader which takes document types, and with them the files that they name. That reader finds all
/// other faults.
void RequireSafeMarkup(std::string_view markup);

/// Why markup cannot be read, with the line; empty when it can.
std::string FindMarkupFault(std::string_view markup);
} // namespace host::xml
