// Classes of a host's own in the place of the library's, for the length of a scope.

#ifndef KROFX_HOST_SUBCLASS_H_
#define KROFX_HOST_SUBCLASS_H_

#include <concepts>

#include "krofx/host/internal/factory_chain.h"

namespace krofx {

/// From its construction to its destruction, every object of `Class` that is made anywhere, in a
/// parse, a copy or by New, is one of `Own`:
///
///   class Booking : public KRBankStatementTx { ... };
///   krofx::Subclass<KRBankStatementTx, Booking> mine;
///   krofx::Reading reading = krofx::ReadFile(path);  // Its transactions are Bookings.
///   for (const auto& booking : krofx::Each<Booking>(reading)) ...
///
/// Several may be in force at once, for different classes or for the same one, of which the last
/// counts; they may go in any order. A factory that the host has set stays in force for all other
/// classes and must outlive them. As for KRDataObj::SetFactory, no other thread may be making
/// objects while one begins or ends. Objects may live on after it.
///
/// Where all elements of an object are in: after the reading. `Read` may go over a text twice and
/// keep only one tree, so what an object does while it is being filled can happen twice, or on an
/// object that nobody sees; walk the tree with Each afterwards, or override ProcessResponse and
/// call it on the root. In a parse of the host's own (KRSimpleParser), HandleTagEnd is called once
/// for each aggregate, with all of its elements in; an override first calls that of its base:
///
///   KRParseStatus HandleTagEnd(const KRTagDictionaryEntry* const entry) override {
///     const KRParseStatus status = KRBankStatementTx::HandleTagEnd(entry);
///     if (status == KRParseStatus_Accepted) ...;  // Complete.
///     return status;
///   }
template <internal::MadeByFactory Class, std::derived_from<Class> Own>
requires std::default_initializable<Own>
class Subclass : public internal::Replacement {
 public:
  Subclass() : Replacement(internal::FactoryEntry<Class>::kOperation, &MakeOwn) {}

 private:
  static void* MakeOwn(u16 version) {
    Class* const object = new Own;
    if (object != nullptr) object->SetMsgSetVersion(version);
    return object;
  }
};

}  // namespace krofx

#endif  // KROFX_HOST_SUBCLASS_H_
