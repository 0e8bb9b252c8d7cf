// The factory that puts a host's classes in the place of the library's, class by class.

#ifndef KROFX_HOST_INTERNAL_FACTORY_CHAIN_H_
#define KROFX_HOST_INTERNAL_FACTORY_CHAIN_H_

#include "krofx/core/export.h"
#include "krofx/host/making.h"

namespace krofx::internal {

/// One class that takes the place of another, from its construction to its destruction.
class KROFX_API Replacement {
 public:
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  /// @return whether it is in force: false when memory was exhausted as it was made.
  bool IsInForce() const { return m_isInForce; }

 protected:
  /// Makes an object of a version.
  /// @return a pointer to the class of the operation; null when memory is exhausted.
  using Make = void* (*)(u16 version);

  Replacement(FactoryOperation operation, Make make);
  ~Replacement();

 private:
  friend class FactoryChain;

  FactoryOperation m_operation;
  Make m_make;
  Replacement* m_below = nullptr;  // The replacement of the same class that was made before.
  bool m_isInForce;
};

}  // namespace krofx::internal

#endif  // KROFX_HOST_INTERNAL_FACTORY_CHAIN_H_
