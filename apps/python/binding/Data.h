#pragma once

#include "apps/python/binding/Use.h"
#include "host/session/ActiveData.h"

#include <memory>

namespace korvana::python {

/// The data of one application. An analysis over them keeps them.
struct Data {
    ActiveData active;
    std::shared_ptr<Gate> gate = std::make_shared<Gate>(); ///< also of its results
};

} // namespace korvana::python
