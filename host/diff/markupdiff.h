#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host::diff
{
/// Where two documents differ first, and how, on one line: "/FixedPage/Path[2]/@Data: M 0,0 -> M 1,0"; empty
/// when they say the same. COM must be initialised on the thread. Throws xml::MarkupError when one of them
/// cannot be read.
///
/// They are compared as XML: whatever the encoding, the prefixes, the order and the quotes of attributes, and
/// without comments, processing instructions and text that is blank all through. Names in attributes of the
/// Print Schema, "psk:ISOA4", are compared by their namespaces, too.
std::optional<std::string> FindMarkupDifference(std::string_view one, std::string_view other);
} // namespace host::diff
