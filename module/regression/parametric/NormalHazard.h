#pragma once

namespace ozm::survival {

/// The hazard phi(z) / Q(z) of the standard normal distribution, Q its upper tail: to about 14 digits, for
/// every z.
double NormalHazard(double z);

/// A standard normal variable that is known to be between two bounds, a < b.
class NormalInterval {
public:
    NormalInterval(double a, double b);

    /// The logarithm of its probability.
    [[nodiscard]] double LogProbability() const;
    /// The conditional mean.
    [[nodiscard]] double Mean() const { return reflected_ ? -mean_ : mean_; }
    /// How much less than a known value it tells of sigma: the mean's square less a phi(a) - b phi(b) over
    /// the probability. 1 for a narrow interval.
    [[nodiscard]] double Weight() const { return mean_ * mean_ + (b_ * ratio_ - a_) / area_; }

private:
    double a_; ///< with a + b >= 0: else the interval is reflected
    double b_;
    bool reflected_;
    double ratio_; ///< phi(b) / phi(a)
    double area_;  ///< the probability over phi(a)
    double mean_;
};

} // namespace ozm::survival
