// Objects that belong to a std::unique_ptr, in and out of those that belong to a tree.

#ifndef KROFX_HOST_OWN_H_
#define KROFX_HOST_OWN_H_

#include <concepts>
#include <memory>
#include <type_traits>
#include <utility>

#include "krofx/core/array.h"
#include "krofx/core/export.h"
#include "krofx/host/making.h"
#include "krofx/model/data_object.h"

namespace krofx {

namespace internal {

/// Makes a deep copy of an object that has a table.
/// @return the copy, the caller's; null when memory is exhausted, and for an object without one.
KROFX_API KRDataObj* CloneByTable(const KRDataObj& source);
/// @return whether `child` is among the children of an object; true also when it may be one of more
///         children than can be counted.
KROFX_API bool Holds(const KRDataObj& parent, const KRDataObj* child);
/// Takes a child out of a slot of its parent, which makes its tag absent.
/// @return whether it is the caller's now: not when it is in no slot, or is another object's.
KROFX_API bool Release(KRDataObj& parent, KRDataObj* child);

/// A parent that holds a child as a part of itself: its setter copies what it is given and deletes
/// it, whatever comes of it.
template <class Parent, class Child>
concept HoldsByValue = std::is_same_v<Child, KRAddrInfo> && requires(Parent& parent) {
  { parent.GetAddrInfo() } -> std::same_as<KRAddrInfo&>;
};

// Calls `set(child)` and sees to it that the child has one owner then.
template <class Parent, class Child, class Setter>
bool GiveBy(Parent& parent, std::unique_ptr<Child> child, Setter set) {
  Child* const given = child.release();
  if (set(given) == 1) return true;
  // Some setters own the child when they refuse it, others do not.
  if constexpr (!HoldsByValue<Parent, Child>) {
    if (given != nullptr && !Holds(parent, given)) delete given;
  }
  return false;
}

}  // namespace internal

/// A deep copy, made through the factory in force: independent of its source, children included.
/// @return the copy; null when memory is exhausted, which raises the fire alarm, and when the
///         factory makes no object of this class.
template <std::derived_from<KRDataObj> Class>
std::unique_ptr<Class> Clone(const Class& source) {
  if constexpr (internal::MadeByFactory<Class> &&
                requires(Class & copy, Class * from) { copy.Class::DeepCopyFrom(from); } &&
                !std::derived_from<Class, KRTransBase>) {
    std::unique_ptr<Class> copy = New<Class>(source.GetMsgSetVersion());
    // What is copied from is not changed, though the operations do not say so.
    if (copy == nullptr || copy->DeepCopyFrom(const_cast<Class*>(&source)) != 0) return copy;
    internal::RaiseElementAlarm();
    return nullptr;
  } else {
    std::unique_ptr<KRDataObj> copy(internal::CloneByTable(source));
    auto* const typed = dynamic_cast<Class*>(copy.get());
    if (typed == nullptr) return nullptr;
    static_cast<void>(copy.release());
    return std::unique_ptr<Class>(typed);
  }
}

/// Gives a child to a setter, or an element to an appender:
/// Give(transfer, &KRXferInfo::SetBankAcctTo, std::move(account)). The child belongs to the object
/// afterwards, or it is deleted: it never leaks, and is never deleted twice.
/// @param setter of the object's class or of a base of it.
/// @return true when it was set; false for whatever the setter does not answer with 1. A child that
///         the object holds all the same, as one whose tag is not valid in its version, stays
///         there.
template <class Owner, std::derived_from<Owner> Parent, class Taken, std::derived_from<Taken> Child>
bool Give(Parent& parent, u16 (Owner::*setter)(Taken*), std::unique_ptr<Child> child) {
  return internal::GiveBy(parent, std::move(child),
                          [&](Child* given) { return (parent.*setter)(given); });
}
/// The same for the element `index` of a list:
/// Give(list, &KRBankTransactionList::SetStatementTx, 0, std::move(tx)).
template <class Owner, std::derived_from<Owner> Parent, class Taken, std::derived_from<Taken> Child>
bool Give(Parent& parent, u16 (Owner::*setter)(u16, Taken*), std::type_identity_t<u16> index,
          std::unique_ptr<Child> child) {
  return internal::GiveBy(parent, std::move(child),
                          [&](Child* given) { return (parent.*setter)(index, given); });
}

/// Takes a child out of an object, which has none then: Take(transfer, &KRXferInfo::GetBankAcctTo).
/// @return the child; null when there is none, and when it is another object's, as after a shallow
///         copy.
template <class Owner, std::derived_from<Owner> Parent, class Child>
std::unique_ptr<Child> Take(Parent& parent, Child* (Owner::*getter)() const) {
  Child* const child = (parent.*getter)();
  return std::unique_ptr<Child>(internal::Release(parent, child) ? child : nullptr);
}
/// Takes an element out of a list; the later ones move down:
/// Take(list, &KRBankTransactionList::GetStatementTx,
/// &KRBankTransactionList::DisconnectStatementTx, 0).
/// @return the element; null when there is none.
template <class Owner, std::derived_from<Owner> Parent, class Child>
std::unique_ptr<Child> Take(Parent& parent, Child* (Owner::*getter)(u16) const,
                            u16 (Owner::*disconnect)(u16), std::type_identity_t<u16> index) {
  Child* const child = (parent.*getter)(index);
  const bool isTaken = child != nullptr && (parent.*disconnect)(index) != 0;
  return std::unique_ptr<Child>(isTaken ? child : nullptr);
}

}  // namespace krofx

#endif  // KROFX_HOST_OWN_H_
