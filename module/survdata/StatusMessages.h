#pragma once

#include "module/resources/Shared.h"

#include <algorithm>
#include <iterator>

namespace ozm::survival {

/// The message that an analysis has for one of its statuses.
template <class Status>
struct StatusMessage {
    Status status;
    int message; ///< number in the string table
};

/// The message of a status: 0 for Success and, where the statuses have it, Stopped; StrUnexpectedError for
/// one that the analysis does not know.
template <class Status, class Table>
int MessageOf(Status status, const Table& messages) {
    if (status == Status::Success) return 0;
    if constexpr (requires { Status::Stopped; })
        if (status == Status::Stopped) return 0;
    const auto found =
        std::find_if(std::begin(messages), std::end(messages),
                     [status](const StatusMessage<Status>& row) { return row.status == status; });
    return found == std::end(messages) ? StrUnexpectedError : found->message;
}

} // namespace ozm::survival
