#pragma once

#include <string>

#include "base/utility/comptr.h"
#include "platform/msxml6.h"

namespace host::tickets
{
/// Throws HresultError when the bytes are no well-formed XML.
base::utility::ComPtr<IXMLDOMDocument2> LoadBytes(const std::string& bytes);

/// The document as UTF-8.
std::string SaveBytes(IXMLDOMDocument2* document);
} // namespace host::tickets
