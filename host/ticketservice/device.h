#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/tickets/parameters.h"
#include "host/tickets/ticketdocument.h"

namespace host::ticketservice
{
using base::xps::printschema::MediaSize;
using tickets::Content;
using tickets::Document;
using tickets::ExpandedName;
using tickets::FindChild;
using tickets::FindPropertyValue;
using tickets::FindText;
using tickets::Framework;
using tickets::Keyword;
using tickets::Kind;
using tickets::Node;

/// The edges of a sheet that cannot be printed on, the sheet standing upright.
struct Margins
{
    int leftMicrometres = 0;
    int topMicrometres = 0;
    int rightMicrometres = 0;
    int bottomMicrometres = 0;

    bool operator==(const Margins&) const = default;
};

/// One option of PageMediaSize. A custom one takes every size from the smallest to the largest; for any other
/// these two are its size.
struct Medium
{
    ExpandedName name;
    bool isCustom = false;
    MediaSize smallest;
    MediaSize largest;
    Margins margins;

    bool Takes(MediaSize size) const;
};

struct Limit
{
    double number;
    /// The number as the description writes it.
    std::string text;
};

/// A ParameterDef. The limits of a parameter that is no number are not looked at.
struct Parameter
{
    enum class Type
    {
        Integer,
        Decimal,
        Other
    };

    ExpandedName name;
    Type type = Type::Other;
    std::optional<Limit> minimum = {};
    std::optional<Limit> maximum = {};
    /// A Value element; of a number, one that the limits allow.
    Node defaultValue = {};

    /// What a text means for a parameter that is a number; none when it is no number of the parameter's type.
    std::optional<double> ReadNumber(const std::string& text) const;
    /// The limit that a number is beyond; null when it is within them.
    const Limit* FindBrokenLimit(double value) const;
};

/// The names that a description has beyond the Print Schema; docs/devicedescription.md says what they are
/// for.
inline constexpr std::string_view kDeviceNamespace = "urn:offline-device-description";

/// The capabilities of the simulated printer. Immutable, so threads may share it.
class Device
{
public:
    /// From the bytes of a print capabilities document. Throws xml::MarkupError with the reason when it
    /// cannot serve as a description.
    explicit Device(std::string_view description);

    const Document& GetCapabilities() const { return m_capabilities; }
    const std::vector<Medium>& GetMedia() const { return m_media; }

    /// Null when the device has none of the name; lent.
    const Node* FindFeature(const ExpandedName& name) const;
    const Medium* FindMedium(const ExpandedName& option) const;
    const Parameter* FindParameter(const ExpandedName& name) const;

    /// The medium that is used where none is asked for; never a custom one.
    const Medium& GetDefaultMedium() const;

private:
    /// From the shortest to the longest; the same for a medium of one size.
    struct Range
    {
        int shortest = 0;
        int longest = 0;
        bool isCustom = false;
    };

    void ReadParameters();
    void ReadMedia();
    Medium ReadMedium(const Node& option, const Margins& deviceMargins) const;
    Range ReadEdge(const Node& option, std::string_view edge) const;

    Document m_capabilities;
    std::vector<Parameter> m_parameters;
    std::vector<Medium> m_media;
};

/// The option of a described feature that is used where none is asked for: the one that the feature's
/// DefaultOption names, else the first.
const Node& GetDefaultOption(const Node& feature);
} // namespace host::ticketservice
