#include "base/xps/printschema/printschema.h"

#include <stdexcept>

#include "base/logging/failure.h"

namespace base::xps::printschema
{
EPrintTicketScope ToEPrintTicketScope(Scope scope)
{
    switch (scope)
    {
    case Scope::Job:
        return kPTJobScope;
    case Scope::Document:
        return kPTDocumentScope;
    case Scope::Page:
        return kPTPageScope;
    case Scope::None:
        break;
    }
    exception::Throw<std::logic_error>("Scope::None cannot convert to EPrintTicketScope.");
}
} // namespace base::xps::printschema
