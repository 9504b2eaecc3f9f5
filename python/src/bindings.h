// The parts of the native module, each adding its own functions and classes to it.
#pragma once

#include <pybind11/pybind11.h>

namespace lx::python {

// Settings, the option table, presets, Compose and friends, PNG and TGA files.
void BindCompose(pybind11::module_& m);
// The render process with the library's own setters.
void BindProcess(pybind11::module_& m);
// The text library's layout into outline blocks.
void BindText(pybind11::module_& m);

}  // namespace lx::python
