#pragma once

#include <string>

#include "base/xps/printschema/mediasizedata.h"

namespace base::xps::printschema
{
/// Gives access to the tickets of a job. Handlers share its documents.
class TicketSource
{
public:
    virtual PrintSchemaHandler GetTicket(EPrintTicketScope scope) = 0;

protected:
    ~TicketSource() = default;
};

/// Selects the sheet to print on from the tickets of several scopes, within the limits of the device. The
/// source must outlive it.
class MediaSizeResolver
{
public:
    MediaSizeResolver(TicketSource& source, const MediaSizeLimits& limits)
        : m_source(source), m_limits(limits)
    {
    }

    /// The first size within the limits, from the tickets of page, document and job, in this order and
    /// beginning with `start`. A ticket without a size counts with the size before it, the first with ISOA4.
    /// If none is within the limits: the user's default sheet, or else the smallest that the device can print
    /// on. Throws what the source and MediaSizeData::Read throw.
    MediaSizeEntry Resolve(Scope start) const;

private:
    TicketSource& m_source;
    MediaSizeLimits m_limits;
};

/// The default sheet for the measurement system of a Windows locale: Letter for the U.S. system ("1"), else
/// ISOA4.
std::int32_t DefaultMediaSizeOf(const std::wstring& measurementSystem);
} // namespace base::xps::printschema
