// Which operation of the factory makes a class, for code that has the class as a template argument.

#ifndef KROFX_HOST_MAKING_H_
#define KROFX_HOST_MAKING_H_

#include <memory>

#include "krofx/core/types.h"
#include "krofx/host/internal/factory_operations.h"
#include "krofx/model/data_object.h"
#include "krofx/model/factory.h"

namespace krofx::internal {

/// The operations, by their place in the list.
enum class FactoryOperation : u16 {
#define KROFX_NAME(Class, operation) k##Class,
  KROFX_FACTORY_OPERATIONS(KROFX_NAME)
#undef KROFX_NAME
      kCount
};

/// What is known of the operation that makes a class.
template <class Class>
struct FactoryEntry;
#define KROFX_ENTRY(Class, operation)                                          \
  template <>                                                                  \
  struct FactoryEntry<Class> {                                                 \
    static constexpr FactoryOperation kOperation = FactoryOperation::k##Class; \
    static constexpr auto kMake = &KRDataObjFactory::operation;                \
  };
KROFX_FACTORY_OPERATIONS(KROFX_ENTRY)
#undef KROFX_ENTRY

/// The classes that the factory makes.
template <class Class>
concept MadeByFactory = requires {
  FactoryEntry<Class>::kOperation;
};

}  // namespace krofx::internal

namespace krofx {

/// Makes an object through the factory in force, so that a host's own class takes part.
/// @param version the message-set version, 1 or 2.
/// @return the object; null, with the fire alarm raised, when memory is exhausted.
template <internal::MadeByFactory Class>
std::unique_ptr<Class> New(u16 version) {
  KRDataObjFactory* const factory = KRDataObj::GetFactory();
  if (factory == nullptr) return nullptr;
  return std::unique_ptr<Class>((factory->*internal::FactoryEntry<Class>::kMake)(version));
}

}  // namespace krofx

#endif  // KROFX_HOST_MAKING_H_
