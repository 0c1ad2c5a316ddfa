#pragma once

#include <span>
#include <string>

#include "base/xps/printschema/printticketfunctionoption.h"

namespace base::xps::printschema
{
/// Replaces features of a ticket by what the accessors hold. Whatever else the ticket says stays: parameters
/// that no feature ever referred to, as the count of copies, included; those that only the replaced features
/// referred to go. Every prefix that the new features use is declared by the ticket's root; a prefix that the
/// root binds to something else keeps its meaning, and another one is used.
///
/// `privateNamespace` is what options of the driver's own lie in. Throws what the accessors throw when they
/// write, and HresultError where the DOM fails; the ticket is of no use then.
void RewriteTicket(const utility::ComPtr<IXMLDOMDocument2>& ticket,
                   std::span<const PrintTicketFunctionOption* const> accessors,
                   const std::wstring& privateNamespace);
} // namespace base::xps::printschema
