#include <cerrno>
#include <pthread.h>

/// Replaces the system's function (LD_PRELOAD), as if the user's limit of threads were reached.
extern "C" int pthread_create(pthread_t* /*thread*/, const pthread_attr_t* /*attributes*/,
                              void* (* /*start*/)(void*), void* /*argument*/) noexcept {
    return EAGAIN;
}
