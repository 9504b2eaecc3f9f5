// The native half of the lettrix package. Python code in lettrix/ turns keywords into option values and
// builds the documented API on top of these functions.
#include "python/src/bindings.h"

PYBIND11_MODULE(_lettrix, m) {
  m.doc() = "Native part of the lettrix package; use the functions of lettrix itself.";
  lx::python::BindCompose(m);
  lx::python::BindProcess(m);
  lx::python::BindText(m);
}
