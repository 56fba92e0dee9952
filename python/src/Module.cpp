#include "Bindings.h"

PYBIND11_MODULE(_core, module) {
  using namespace orvantis::python;  // NOLINT(google-build-using-namespace)
  module.attr("__version__") = ORVANTIS_VERSION;
  bindLog(module);
  bindShapes(module);
  bindZones(module);
  bindLines(module);
  bindSite(module);
  bindDocument(module);
  bindClassify(module);
  bindSession(module);
  bindFrames(module);
  bindEvaluation(module);
  bindDrawing(module);
}
