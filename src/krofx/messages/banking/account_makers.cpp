// Accounts by tag: the class that belongs to a FROM or TO tag, and copies of an account whose class
// is not known.

#include "krofx/messages/banking/accounts.h"
#include "krofx/model/factory.h"
#include "krofx/model/internal/aggregate.h"

using krofx::internal::ChildSlot;
using krofx::internal::CopyAggregate;
using krofx::internal::CopyChild;

namespace {

// Which tags a maker accepts.
enum class Direction { kFrom, kTo };

template <class Account, Account* (KRDataObjFactory::*Make)(u16)>
KRAccount* MakeAs(KRTagID tag) {
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  Account* account = factory == nullptr ? nullptr : (factory->*Make)(0);
  if (account != nullptr) account->SetType(tag);
  return account;
}

KRAccount* MakeBankOrCard(KRTagID tag, Direction direction) {
  const bool from = direction == Direction::kFrom;
  if (tag == (from ? KRTag_BANKACCTFROM : KRTag_BANKACCTTO)) {
    return MakeAs<KRBankAccount, &KRDataObjFactory::NewBankAccount>(tag);
  }
  if (tag == (from ? KRTag_CCACCTFROM : KRTag_CCACCTTO)) {
    return MakeAs<KRCCAccount, &KRDataObjFactory::NewCCAccount>(tag);
  }
  return nullptr;
}

KRAccount* MakeAny(KRTagID tag, Direction direction) {
  if (tag == (direction == Direction::kFrom ? KRTag_INVACCTFROM : KRTag_INVACCTTO)) {
    return MakeAs<KRInvAcctFrom, &KRDataObjFactory::NewInvAcctFrom>(tag);
  }
  return MakeBankOrCard(tag, direction);
}

}  // namespace

KRAccount* KRAccount::NewAcctFrom(KRTagID tag) { return MakeAny(tag, Direction::kFrom); }

KRAccount* KRAccount::NewAcctTo(KRTagID tag) { return MakeAny(tag, Direction::kTo); }

KRAccount* KRAccount::NewAcct(KRTagID tag) {
  KRAccount* account = NewAcctFrom(tag);
  return account != nullptr ? account : NewAcctTo(tag);
}

u16 KRAccount::DeepCopyFrom(KRAccount* source) { return CopyAggregate(*this, source); }

u16 KRAccount::DeepCopyTo(KRAccount* source, KRAccount** target) {
  if (target == nullptr) return 0;
  ChildSlot slot;
  slot.Set(*target);
  const u16 copied = CopyChild(slot, source);
  *target = static_cast<KRAccount*>(slot.Release());
  return copied;
}

KRBankOrCCAccount* KRBankOrCCAccount::NewAcctFrom(KRTagID tag) {
  return static_cast<KRBankOrCCAccount*>(MakeBankOrCard(tag, Direction::kFrom));
}

KRBankOrCCAccount* KRBankOrCCAccount::NewAcctTo(KRTagID tag) {
  return static_cast<KRBankOrCCAccount*>(MakeBankOrCard(tag, Direction::kTo));
}

KRBankOrCCAccount* KRBankOrCCAccount::NewAcct(KRTagID tag) {
  KRBankOrCCAccount* account = NewAcctFrom(tag);
  return account != nullptr ? account : NewAcctTo(tag);
}
