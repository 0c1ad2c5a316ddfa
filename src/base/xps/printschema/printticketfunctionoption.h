#pragma once

#include <cstdint>

#include "base/xps/printschema/printschema.h"
#include "base/xps/printschema/printschemahandler.h"
#include "base/xps/printschema/schemabase.h"

namespace base::xps::printschema
{
/// The accessor of one feature of a ticket. It holds the feature's name and the selected option as indexes
/// into the keyword lists of a derived class, negative if not set. It is a value that can be copied.
///
/// Handlers are passed by value and share the document; that, and the order of the virtual functions, is
/// fixed: docs/surface.md.
class PrintTicketFunctionOption
{
public:
    /// Whether the ticket has the feature under one of its names, with an option in a namespace of the option
    /// list.
    virtual bool Exists(PrintSchemaHandler handler) const;

    /// Reads feature, option and parameters from the ticket. Keeps everything if the ticket lacks the feature
    /// or its option is not in the list. Throws what ReadParameters throws, and HresultError if the DOM
    /// fails.
    virtual void Read(PrintSchemaHandler handler);

    /// Appends feature, option and parameters to the ticket, even if it already has the feature. Throws
    /// InvalidOptionIdError without an option, NotSupportedException for a scope that the feature does not
    /// support, what WriteParameters throws, and HresultError if the DOM fails.
    virtual void Write(PrintSchemaHandler handler, Scope scope) const;

    /// Removes the feature under each of its names. Stops at the first failure and does not report it. Throws
    /// HresultError if memory runs out.
    virtual void Remove(PrintSchemaHandler handler) const;

    /// Writes at the accessor's own scope.
    virtual void Write(PrintSchemaHandler handler) const;

    virtual Qname GetFeatureQname() const;
    virtual Qname GetFeatureQname(Scope scope) const;
    virtual Qname GetOptionQname() const;

    /// Throws InvalidFeatureIdError if it is not set.
    virtual std::int32_t GetFeatureId() const;

    /// Throws InvalidOptionIdError if it or the feature id is not set.
    virtual std::int32_t GetOptionId() const;

    virtual void SetFeatureId(std::int32_t id);
    virtual void SetOptionId(std::int32_t id);

    /// The scope of the feature's name; None if the id is not set or out of range.
    virtual Scope GetScope() const = 0;

    /// Throws NotSupportedException for a scope that the feature does not support.
    virtual std::int32_t GetFeatureIdOfScope(Scope scope) const = 0;

    virtual const SchemaBase& GetFeatureSchema() const = 0;
    virtual const SchemaBase& GetOptionSchema() const = 0;

    /// Reads the parameters of the selected option. `feature` is the name under which the feature was found.
    virtual void ReadParameters(PrintSchemaHandler handler, const Qname& feature);

    /// Appends the parameters of the selected option to its element, or to the ticket's root.
    virtual void WriteParameters(PrintSchemaHandler handler, IXMLDOMElement* option, Scope scope) const;

    /// Sets the feature id to the index of the name, or to -1.
    void SetFeatureIdByQname(NamespaceId namespaceId, const std::wstring& localName);

protected:
    PrintTicketFunctionOption(std::int32_t featureId, std::int32_t optionId) noexcept
        : m_featureId(featureId), m_optionId(optionId)
    {
    }
    PrintTicketFunctionOption(const PrintTicketFunctionOption&) = default;
    PrintTicketFunctionOption& operator=(const PrintTicketFunctionOption&) = default;
    ~PrintTicketFunctionOption() = default;

    /// The feature id, or -1 if it is not set.
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

/// A feature with one name for all scopes. After reading its scope is Page.
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

/// A feature with three names, for job, document and page, in this order.
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
