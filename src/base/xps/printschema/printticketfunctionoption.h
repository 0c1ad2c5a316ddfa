#pragma once

#include <cstdint>

#include "base/xps/printschema/printschema.h"
#include "base/xps/printschema/printschemahandler.h"
#include "base/xps/printschema/schemabase.h"

namespace base::xps::printschema
{
/// One feature of a ticket: which of its names was found and which of its options is selected, both as
/// indexes into the keyword lists that a derived class supplies; negative while not set. A plain value, free
/// to copy.
///
/// A handler is taken by value, as a copy shares the document.
class PrintTicketFunctionOption
{
public:
    /// Whether the ticket holds one of the feature's names with an option of the option list's namespaces.
    virtual bool Exists(PrintSchemaHandler handler) const;

    /// Loads feature, option and parameters from the ticket. A feature or an option that the lists do not
    /// know changes nothing. Throws what ReadParameters throws, and HresultError where the DOM fails.
    virtual void Read(PrintSchemaHandler handler);

    /// Appends feature, option and parameters to the ticket; one that is there already stays. Throws
    /// InvalidOptionIdError without an option, NotSupportedException for a scope that the feature does not
    /// serve, what WriteParameters throws, and HresultError where the DOM fails.
    virtual void Write(PrintSchemaHandler handler, Scope scope) const;

    /// Removes the feature under each of its names, up to the first removal that fails, which is not
    /// reported. Throws HresultError when memory runs out.
    virtual void Remove(PrintSchemaHandler handler) const;

    /// Writes at the accessor's own scope.
    virtual void Write(PrintSchemaHandler handler) const;

    virtual Qname GetFeatureQname() const;
    virtual Qname GetFeatureQname(Scope scope) const;
    virtual Qname GetOptionQname() const;

    /// Throws InvalidFeatureIdError while it is not set.
    virtual std::int32_t GetFeatureId() const;

    /// Throws InvalidOptionIdError while it, or the feature id, is not set.
    virtual std::int32_t GetOptionId() const;

    virtual void SetFeatureId(std::int32_t id);
    virtual void SetOptionId(std::int32_t id);

    /// The scope of the feature's name; None for an id outside the list or not set.
    virtual Scope GetScope() const = 0;

    /// Throws NotSupportedException for a scope that the feature does not serve.
    virtual std::int32_t GetFeatureIdOfScope(Scope scope) const = 0;

    virtual const SchemaBase& GetFeatureSchema() const = 0;
    virtual const SchemaBase& GetOptionSchema() const = 0;

    /// Reads what the selected option carries, under the name by which its feature was found.
    virtual void ReadParameters(PrintSchemaHandler handler, const Qname& feature);

    /// Appends what the selected option carries to its new element, or to the ticket's root.
    virtual void WriteParameters(PrintSchemaHandler handler, IXMLDOMElement* option, Scope scope) const;

    /// Sets the feature id to the name's index, which may be -1.
    void SetFeatureIdByQname(NamespaceId namespaceId, const std::wstring& localName);

protected:
    PrintTicketFunctionOption(std::int32_t featureId, std::int32_t optionId) noexcept
        : m_featureId(featureId), m_optionId(optionId)
    {
    }
    PrintTicketFunctionOption(const PrintTicketFunctionOption&) = default;
    PrintTicketFunctionOption& operator=(const PrintTicketFunctionOption&) = default;
    ~PrintTicketFunctionOption() = default;

    /// The feature id, or -1 while it is not set.
    std::int32_t FeatureIdOrNone() const;

    /// Reads an integer property of a feature with the handler's operation for its kind of property.
    [[nodiscard]] static HRESULT ReadInteger(const PrintSchemaHandler& handler,
                                             decltype(&PrintSchemaHandler::GetPropertyInteger) read,
                                             const Qname& feature,
                                             const Qname& property,
                                             std::int32_t& value);

    /// Appends a property with an integer value to the option. Throws HresultError.
    static void WriteInteger(const PrintSchemaHandler& handler,
                             IXMLDOMElement* option,
                             const Qname& name,
                             std::int32_t value);

private:
    std::int32_t m_featureId;
    std::int32_t m_optionId;
};

/// A feature with one name, which serves every scope and is the page's when it is read.
class SingleScopeFeature : public PrintTicketFunctionOption
{
public:
    Scope GetScope() const override;
    std::int32_t GetFeatureIdOfScope(Scope scope) const override;

protected:
    using PrintTicketFunctionOption::PrintTicketFunctionOption;
    SingleScopeFeature(const SingleScopeFeature&) = default;
    SingleScopeFeature& operator=(const SingleScopeFeature&) = default;
    ~SingleScopeFeature() = default;
};

/// A feature with a name each for job, document and page, in this order.
class ThreeScopeFeature : public PrintTicketFunctionOption
{
public:
    Scope GetScope() const override;
    std::int32_t GetFeatureIdOfScope(Scope scope) const override;

protected:
    using PrintTicketFunctionOption::PrintTicketFunctionOption;
    ThreeScopeFeature(const ThreeScopeFeature&) = default;
    ThreeScopeFeature& operator=(const ThreeScopeFeature&) = default;
    ~ThreeScopeFeature() = default;
};
} // namespace base::xps::printschema
