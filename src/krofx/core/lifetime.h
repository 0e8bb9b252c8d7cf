// Marks results that point into an object, so that a compiler can see when the object is a
// temporary that is gone before its result is used.

#ifndef KROFX_CORE_LIFETIME_H_
#define KROFX_CORE_LIFETIME_H_

/// Put on an operation whose result points into its object, or on a parameter that the result
/// points into. Clang then warns of `const char* text = tx.GetTxAmount();`.
#if defined(__clang__)
#define KROFX_LIFETIME_BOUND [[clang::lifetimebound]]
#else
#define KROFX_LIFETIME_BOUND
#endif

#endif  // KROFX_CORE_LIFETIME_H_
