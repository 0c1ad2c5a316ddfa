#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "host/job/job.h"
#include "host/report/html/htmlreport.h"
#include "platform/win32.h"

// What the HTML report of a run says of the run as a whole; all texts are HTML.
namespace host::app
{
/// The rows that tell what the run was given: the device, the user's ticket (empty if it could not be read)
/// and the options.
std::vector<report::html::SummaryRow> DescribeSetUp(const job::Job& job, const std::string& userTicket);

std::string CodeOfPath(const std::filesystem::path& path);

/// The HRESULT and its meaning.
std::string CodeOfResult(HRESULT result);
} // namespace host::app
