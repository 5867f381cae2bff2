#include "support/services/NullServices.h"

namespace ozm {

HostServices& NullServices() {
    static NullHost host;
    return host;
}

} // namespace ozm
