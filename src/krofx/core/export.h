// Marks what the shared library exports. Everything else is hidden.

#ifndef KROFX_CORE_EXPORT_H_
#define KROFX_CORE_EXPORT_H_

#if defined(KROFX_STATIC)
#define KROFX_API
#else
/// Put on every public class and function: gives it default visibility.
#define KROFX_API __attribute__((visibility("default")))
#endif

#endif  // KROFX_CORE_EXPORT_H_
