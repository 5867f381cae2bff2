#pragma once

#include <clocale>

namespace korvana {

/// While it lives, printf writes a decimal point in this thread, in any locale.
class PlainNumbers {
public:
    PlainNumbers() : plain_(::newlocale(LC_NUMERIC_MASK, "C", nullptr)), before_(::uselocale(plain_)) {}
    ~PlainNumbers() {
        ::uselocale(before_);
        if (plain_ != nullptr) ::freelocale(plain_);
    }
    PlainNumbers(const PlainNumbers&) = delete;
    PlainNumbers& operator=(const PlainNumbers&) = delete;

private:
    locale_t plain_;
    locale_t before_;
};

} // namespace korvana
