#include "host/results/StandardFiles.h"

#include <fcntl.h>
#include <initializer_list>
#include <unistd.h>

namespace korvana {

void holdStandardFiles() noexcept {
    // Opening takes the lowest free descriptor.
    for (const int file : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(file, F_GETFD) < 0) ::open("/dev/null", file == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

} // namespace korvana
