#pragma once

#include <optional>
#include <string_view>

#include "ticketservice/printschema.h"

namespace host::ticketservice
{
struct Size
{
    int widthMicrometres = 0;
    int heightMicrometres = 0;

    bool operator==(const Size&) const = default;
};

/// The scored property by which a media option tells one edge, "Width" or "Height": MediaSizeWidth and so on,
/// PSWidth for PostScript's custom media; null when there is none. Lends.
const Element* FindEdge(const Element& option, std::string_view edge);

/// The size that a ticket asks for with a media option of its own: in the option, or in the parameters that
/// it refers to; none when it is not complete.
std::optional<Size> FindRequestedSize(const Element& ticket, const Element& option);
} // namespace host::ticketservice
