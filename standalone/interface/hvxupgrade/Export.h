#pragma once

/// Marks what programs may use of the shared library.
#define HVXUPGRADE_API __attribute__((visibility("default")))
