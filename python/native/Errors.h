#pragma once

namespace python {

/// Lets the library's errors come out as the exceptions of hvxupgrade/errors.py.
void TranslateErrors();

}  // namespace python
