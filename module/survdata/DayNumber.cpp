#include "module/survdata/DayNumber.h"

namespace ozm::survival {
namespace {

double TruncatedProduct(float factor, int count) {
    const float product = factor * static_cast<float>(count);
    return static_cast<double>(static_cast<int>(product));
}

} // namespace

double DayNumber(int month, int day, int year) {
    if (year == 0 || month < 1 || month > 12) return invalidDay;
    if (year < 0) ++year;
    const int jy = month > 2 ? year : year - 1;
    const int jm = month > 2 ? month + 1 : month + 13;
    double number = TruncatedProduct(365.25F, jy) + TruncatedProduct(30.6001F, jm) + day + 1720995;
    constexpr int gregorianFrom = 15 + 31 * (10 + 12 * 1582);
    if (day + 31 * (month + 12 * year) >= gregorianFrom) {
        const auto century = static_cast<int>(TruncatedProduct(0.01F, jy));
        number += 2 - century + TruncatedProduct(0.25F, century);
    }
    return number;
}

} // namespace ozm::survival
