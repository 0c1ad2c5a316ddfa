#pragma once

#include <span>
#include <string>

#include "base/xps/printschema/printticketfunctionoption.h"

namespace base::xps::printschema
{
/// Replaces features of a ticket by those of the accessors. Everything else stays, including parameters that
/// no feature refers to, such as the number of copies. Parameters that only the replaced features refer to
/// are removed. The ticket's root gets a declaration of every prefix that the new features use. If it binds
/// such a prefix to another namespace, that stays and another prefix is used.
///
/// `privateNamespace` is the namespace of the driver's options. Throws what the accessors throw in Write, and
/// HresultError if the DOM fails; the ticket must be discarded then.
void RewriteTicket(const utility::ComPtr<IXMLDOMDocument2>& ticket,
                   std::span<const PrintTicketFunctionOption* const> accessors,
                   const std::wstring& privateNamespace);
} // namespace base::xps::printschema
