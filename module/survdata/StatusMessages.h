#pragma once

#include "module/resources/Shared.h"
#include "module/survdata/Status.h"

#include <span>

namespace ozm::survival {

/// The message that an analysis has for a status.
struct StatusMessage {
    Status status;
    int message; ///< number in the string table
};

/// The message of a status: 0 for Success and Stopped, which have none; StrUnexpectedError for one that the
/// analysis does not know.
int MessageOf(Status status, std::span<const StatusMessage> messages);

} // namespace ozm::survival
