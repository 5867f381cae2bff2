#include "module/twosample/PooledFailures.h"

namespace ozm::survival {

PooledFailures TabulateFailures(const PooledSample& sample, std::span<FailureTime> room) {
    int atRisk = static_cast<int>(sample.observations.size());
    std::size_t count = 0;
    for (const PooledObservation& o : sample.observations) {
        if (o.Failed()) {
            if (count == 0 || o.time > room[count - 1].time)
                room[count++] = {.time = o.time, .atRisk = atRisk, .failures = 0};
            ++room[count - 1].failures;
        }
        --atRisk;
    }

    PooledFailures failures{room.first(count)};
    double& survival = failures.survivalAfter;
    for (FailureTime& row : room.first(count)) {
        row.hazard = static_cast<double>(row.failures) / row.atRisk;
        row.survival = survival;
        survival = (1.0 - row.hazard) * survival;
    }
    return failures;
}

} // namespace ozm::survival
