#pragma once

#include <compare>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace host::ticketservice
{
inline constexpr std::string_view kFrameworkNamespace =
    "http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework";
inline constexpr std::string_view kKeywordsNamespace =
    "http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords";
inline constexpr std::string_view kSchemaInstanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";
inline constexpr std::string_view kSchemaNamespace = "http://www.w3.org/2001/XMLSchema";
inline constexpr std::string_view kXmlNamespace = "http://www.w3.org/XML/1998/namespace";

/// A document breaks the rules of XML or of the Print Schema; the text, in UTF-8, says where.
class FormatError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// A name by its namespace, whatever prefix a document writes for it.
struct ExpandedName
{
    std::string namespaceUri = {};
    std::string local = {};

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
struct Element
{
    Kind kind = Kind::PrintTicket;
    /// Its `name` attribute; empty where there is none.
    ExpandedName name = {};
    /// All other attributes but the namespace declarations.
    std::vector<Attribute> attributes = {};
    /// Of a Value only.
    Content content = {};
    std::vector<Element> children = {};
};

/// The first child of a kind, or of a kind and a name; null when there is none. Lends.
const Element* FindChild(const Element& parent, Kind kind);
const Element* FindChild(const Element& parent, Kind kind, const ExpandedName& name);
Element* FindChild(Element& parent, Kind kind);
Element* FindChild(Element& parent, Kind kind, const ExpandedName& name);

/// The text of the Value that an element holds; none without a Value and for a QName.
std::optional<std::string> FindText(const Element& holder);

/// The whole of a text as a number, with blanks at the ends allowed as in XML Schema; none for anything else
/// and for an integer beyond 32 bits.
std::optional<int> ParseInteger(std::string_view text);
std::optional<double> ParseDecimal(std::string_view text);

struct PrefixBinding
{
    std::string prefix;
    std::string namespaceUri;
};

/// A print ticket or print capabilities.
struct Document
{
    Element root = {};
    /// What the root declared, in its order: the prefixes that names are preferably written with.
    std::vector<PrefixBinding> prefixes = {};
};
} // namespace host::ticketservice
