#pragma once

/// Marks what a shared library of the component offers: the classes and functions of the public headers. All else
/// stays inside its library. On Windows the component is linked statically, and nothing needs a mark.
#ifdef _WIN32
#define IMEX_EXPORT
#else
#define IMEX_EXPORT __attribute__((visibility("default")))
#endif
