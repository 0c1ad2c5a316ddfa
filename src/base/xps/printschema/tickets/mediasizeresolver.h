#pragma once

#include <string>

#include "base/xps/printschema/mediasizedata.h"

namespace base::xps::printschema
{
/// Whatever holds the tickets of a job. Handlers share its documents.
class TicketSource
{
public:
    virtual PrintSchemaHandler GetTicket(EPrintTicketScope scope) = 0;

protected:
    ~TicketSource() = default;
};

/// Picks the sheet to print on from the tickets of several scopes, within what the device takes. Borrows the
/// source.
class MediaSizeResolver
{
public:
    MediaSizeResolver(TicketSource& source, const MediaSizeLimits& limits)
        : m_source(source), m_limits(limits)
    {
    }

    /// The first size within the limits, of the page's, the document's and the job's ticket, those before
    /// `start` left out; a ticket that names none has the one before it, to begin with ISOA4. Without any,
    /// the user's default sheet, or else the smallest that the device takes. Throws what the source and
    /// MediaSizeData::Read throw.
    MediaSizeEntry Resolve(Scope start) const;

private:
    TicketSource& m_source;
    MediaSizeLimits m_limits;
};

/// The default sheet under a measurement system of a Windows locale: Letter under the U.S. one ("1"), else
/// ISOA4.
std::int32_t DefaultMediaSizeOf(const std::wstring& measurementSystem);
} // namespace base::xps::printschema
