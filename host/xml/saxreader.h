#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/xml/markuptext.h"

namespace host::xml
{
struct Attribute
{
    std::string namespaceUri;
    std::string localName;
    std::string value;
};

/// Receives what a reader finds in markup, in document order and in UTF-8. What these throw ends the reading
/// and reaches the reader's caller.
class MarkupListener
{
public:
    virtual ~MarkupListener() = default;

    /// Whether anything more is to be told; from the first no on markup is only read to its end, which is
    /// faster.
    virtual bool WantsMore() const { return true; }

    /// A declaration, ahead of its element's start tag, and that it holds no more.
    virtual void OnPrefix(std::string /*prefix*/, std::string /*namespaceUri*/) {}
    virtual void OnPrefixEnd(const std::string& /*prefix*/) {}
    /// A start tag; `attributes` are those that declare no namespace.
    virtual void OnStart(std::string namespaceUri,
                         std::string localName,
                         std::vector<Attribute> attributes) = 0;
    virtual void OnEnd() {}
    virtual void OnText(const std::string& /*text*/) {}
};

/// Reads markup through the platform's SAX reader.
class SaxReader
{
public:
    /// Takes bytes in any encoding that the platform reads. Gives why they are not well-formed, with the
    /// place; empty when they are. COM must be initialised on the thread.
    std::string Read(std::string_view bytes, MarkupListener& listener);

    /// Where the listener's exception came from.
    MarkupPlace FailedAt() const noexcept { return m_failedAt; }

private:
    MarkupPlace m_failedAt;
};
} // namespace host::xml
