#include "ticketservice/documentreader.h"

#include <string>
#include <utility>
#include <vector>

#include "host/xml/markuptext.h"
#include "host/xml/saxreader.h"
#include "ticketservice/treebuilder.h"

namespace host::ticketservice
{
namespace
{
/// Hands what a reader finds on to the builder.
class DocumentListener final : public xml::MarkupListener
{
public:
    explicit DocumentListener(TreeBuilder& builder) : m_builder(builder) {}

    void OnPrefix(std::string prefix, std::string namespaceUri) override
    {
        m_builder.StartPrefix(std::move(prefix), std::move(namespaceUri));
    }
    void OnPrefixEnd(const std::string& prefix) override { m_builder.EndPrefix(prefix); }
    void OnStart(std::string namespaceUri,
                 std::string localName,
                 std::vector<xml::Attribute> attributes) override
    {
        m_builder.StartElement({std::move(namespaceUri), std::move(localName)}, attributes);
    }
    void OnEnd() override { m_builder.EndElement(); }
    void OnText(const std::string& text) override { m_builder.AddText(text); }

private:
    TreeBuilder& m_builder;
};
} // namespace

Document ReadDocument(std::string_view bytes, Kind root)
{
    TreeBuilder builder(root);
    DocumentListener listener(builder);
    xml::SaxReader reader;
    std::string fault;
    try
    {
        // A writer may save in UTF-8 what came in UTF-16, and keep the declaration.
        fault = reader.Read(xml::DecodeMarkup(bytes), listener);
    }
    catch (const FormatError& error)
    {
        throw FormatError(xml::FormatPlace(reader.FailedAt()) + ": " + error.what());
    }
    catch (const xml::MarkupError& error)
    {
        throw FormatError(error.what());
    }
    if (!fault.empty())
    {
        throw FormatError(fault);
    }
    return builder.Take();
}
} // namespace host::ticketservice
