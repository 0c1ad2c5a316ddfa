#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "host/xml/reader.h"

namespace host::tickets
{
inline constexpr std::string_view kFrameworkNamespace =
    "http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework";
inline constexpr std::string_view kKeywordsNamespace =
    "http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords";
inline constexpr std::string_view kSchemaInstanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";
inline constexpr std::string_view kSchemaNamespace = "http://www.w3.org/2001/XMLSchema";

/// A name by its namespace, whatever prefix a document writes for it.
struct ExpandedName
{
    std::string namespaceUri = {};
    std::string local = {};

    // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy 14 takes the 0 of a comparison for a pointer.
    auto operator<=>(const ExpandedName&) const = default;
};

ExpandedName Keyword(std::string_view local);
ExpandedName Framework(std::string_view local);

/// Text, or a QName that stands in its place.
using Content = std::variant<std::string, ExpandedName>;

struct Attribute
{
    ExpandedName name;
    Content value;
};

enum class Kind
{
    PrintTicket,
    PrintCapabilities,
    Feature,
    Option,
    Property,
    ScoredProperty,
    ParameterInit,
    ParameterDef,
    ParameterRef,
    Value
};

std::string_view NameOf(Kind kind);
std::optional<Kind> FindKind(std::string_view localName);

/// Whether the Print Schema lets one kind of element stand directly below another.
bool MayHold(Kind parent, Kind child);

/// One element of a print ticket or of print capabilities.
struct Node
{
    Kind kind = Kind::PrintTicket;
    /// Its `name` attribute; empty where there is none.
    ExpandedName name = {};
    /// All other attributes but the namespace declarations.
    std::vector<Attribute> attributes = {};
    /// The content of a Value; empty for others.
    Content content = {};
    std::vector<Node> children = {};
};

/// The first child of a kind, or of a kind and a name; null when there is none, and for no parent. Lends.
const Node* FindChild(const Node* parent, Kind kind);
const Node* FindChild(const Node* parent, Kind kind, const ExpandedName& name);

/// What a ticket selects for a feature: its first option; null when there is none. Lends.
const Node* FindSelectedOption(const Node& ticket, const ExpandedName& feature);

/// The Value of an element's first Property of a name; null when there is none. Lends.
const Node* FindPropertyValue(const Node& element, const ExpandedName& name);

/// The text of the Value that an element holds; none without a Value, for a QName, and for no element.
std::optional<std::string> FindText(const Node* holder);

/// A print ticket or print capabilities.
struct Document
{
    Node root = {};
    /// What the root declared, in its order: the prefixes that names are preferably written with.
    std::vector<xml::PrefixBinding> prefixes = {};
};

/// Reads the bytes of a print ticket or of print capabilities, as `root` says, in UTF-8 or UTF-16, whichever
/// of the two their XML declaration names.
///
/// Names become independent of prefixes: `name` attributes, types and values of type xsd:QName are QNames in
/// content, resolved by the declarations in scope (Print Schema, "XML Attributes"). Comments, and elements
/// that the Print Schema does not have in their place, are left out. A missing version is taken to be 1.
///
/// Throws xml::MarkupError for what is no such document: not well-formed, a document type declaration,
/// another root or version, an element without the name it needs, a name with an undeclared prefix.
Document ReadDocument(std::string_view bytes, Kind root);

/// Writes a document as UTF-8 with an XML declaration and no white space between elements.
///
/// All prefixes are declared at the root: psf, psk, xsi and xsd for the schemas' own namespaces, then the
/// document's prefixes but for those already taken, then "ns0000", "ns0001" and so on for namespaces that
/// have none. Every name, in content too, is written with them.
std::string WriteDocument(const Document& document);

/// Formats the names of a ticket for people: keywords without prefix, other names with the prefix of the
/// ticket's root, or a made-up one where the root has none.
class NameDisplay
{
public:
    explicit NameDisplay(std::vector<xml::PrefixBinding> prefixes) : m_prefixes(std::move(prefixes)) {}

    std::string operator()(const ExpandedName& name) const;

    /// What the prefixes of all names so far stand for.
    const std::vector<xml::PrefixBinding>& Used() const noexcept { return m_used; }

private:
    const std::string& PrefixOf(const std::string& namespaceUri) const;

    std::vector<xml::PrefixBinding> m_prefixes;
    mutable std::vector<xml::PrefixBinding> m_used;
};
} // namespace host::tickets
