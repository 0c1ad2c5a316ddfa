#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host::diff
{
/// Where two documents differ first, and how, on one line: "/FixedPage/Path[2]/@Data: M 0,0 -> M 1,0"; empty
/// when they are equal. Throws xml::MarkupError when one of them cannot be read.
///
/// The encoding, the prefixes, the order and quotes of attributes, comments, processing instructions and
/// blank text make no difference. Names in attributes of the Print Schema, such as "psk:ISOA4", are compared
/// by namespace too.
std::optional<std::string> FindMarkupDifference(std::string_view one, std::string_view other);
} // namespace host::diff
