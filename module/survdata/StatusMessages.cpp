#include "module/survdata/StatusMessages.h"

#include "module/resources/Shared.h"


#include <algorithm>

namespace ozm::survival {

int MessageOf(Status status, std::span<const StatusMessage> messages) {
    if (status == Status::Success || status == Status::Stopped) return 0;
    const auto found = std::find_if(messages.begin(), messages.end(),
                                    [status](const StatusMessage& row) { return row.status == status; });
    return found == messages.end() ? StrUnexpectedError : found->message;
}

} // namespace ozm::survival
