#include "apps/python/binding/Lease.h"

#include "apps/python/binding/Errors.h"

#include <unistd.h>
#include <utility>

namespace korvana::python {
namespace {

struct {
    unsigned long number = 0; ///< of the lease in force; 0: none
    unsigned long last = 0;
    pid_t process = 0;
    std::string why;
} inForce;

} // namespace

Lease::Lease(std::string why) {
    // A forked process has a copy of the analysis and of the module's state: it may begin afresh.
    if (inForce.number != 0 && inForce.process == ::getpid()) raise("Busy", inForce.why);
    number_ = inForce.number = ++inForce.last;
    inForce.process = ::getpid();
    inForce.why = std::move(why);
}

Lease::~Lease() {
    if (holds()) inForce.number = 0;
}

bool Lease::holds() const {
    return inForce.number == number_;
}

} // namespace korvana::python
