#include "apps/python/binding/Module.h"

#include "apps/python/binding/Working.h"

PYBIND11_MODULE(_korvana, module) {
    using namespace korvana::python;
    module.doc() = "What the package korvana is made on; use that.";
    module.attr("version") = KORVANA_VERSION;
    bindErrors(module);
    bindLibrary(module);
    bindApplication(module);
    bindFrames(module);
    bindResults(module);
    bindRun(module);
    bindFunctions(module);
    bindRecording(module);
    module.def("end_work", endWork);
}
