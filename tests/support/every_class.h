// Every class that has a table, for what must hold for all of them: those of exchanges, found by
// walking the tables from all payloads down to the last child, and the few that no exchange holds.

#ifndef KROFX_TESTS_SUPPORT_EVERY_CLASS_H_
#define KROFX_TESTS_SUPPORT_EVERY_CLASS_H_

#include <map>
#include <memory>
#include <string>

#include "krofx/aggregates.h"
#include "krofx/envelope/internal/routing.h"
#include "krofx/model/factory.h"
#include "krofx/model/internal/aggregate.h"

namespace krofx::testing {

/// One aggregate: how it is made, and its table.
struct AnyClass {
  krofx::internal::CreateChild create;
  const krofx::internal::AggregateTable* table;

  /// An object of the class, of one version of messages.
  std::unique_ptr<KRDataObj> Make(u16 version = 1) const {
    std::unique_ptr<KRDataObj> object(create(*KRDataObj::GetFactory()));
    object->SetMsgSetVersion(version);
    return object;
  }
};

/// The classes by their names.
using ClassMap = std::map<std::string, AnyClass>;

/// Adds the class of what `create` makes, and those of all children that it may hold.
inline void AddClasses(ClassMap& classes, krofx::internal::CreateChild create) {
  if (create == nullptr) return;
  const std::unique_ptr<KRDataObj> object(create(*KRDataObj::GetFactory()));
  const auto* table = krofx::internal::ObjectAccess::TableOf(*object);
  if (table == nullptr || !classes.emplace(table->className, AnyClass{create, table}).second) {
    return;
  }
  for (u16 row = 0; row < table->valid.count; ++row) AddClasses(classes, table->rows[row].create);
}

/// All that exchanges hold.
inline ClassMap FindEveryClass() {
  using krofx::internal::CreateBy;
  using krofx::internal::Side;
  ClassMap classes;
  for (const Side side : {Side::kRequest, Side::kResponse}) {
    for (const auto& route : krofx::internal::Transactions(side)) {
      for (u8 i = 0; i < route.payloadCount; ++i) AddClasses(classes, route.payloads[i].create);
    }
  }
  AddClasses(classes, &CreateBy<&KRDataObjFactory::NewTransRq>);
  AddClasses(classes, &CreateBy<&KRDataObjFactory::NewTransRs>);
  AddClasses(classes, &CreateBy<&KRDataObjFactory::NewSyncRq>);
  AddClasses(classes, &CreateBy<&KRDataObjFactory::NewSyncRs>);
  AddClasses(classes, &CreateBy<&KRDataObjFactory::NewPayrollUpdateRs>);
  AddClasses(classes, &CreateBy<&KRDataObjFactory::NewSignOnRq>);
  AddClasses(classes, &CreateBy<&KRDataObjFactory::NewSignOnRs>);
  AddClasses(classes, &CreateBy<&KRDataObjFactory::NewSecList>);
  KRParseLogger::TheKRParseLogger()->DeleteAll();
  return classes;
}

/// Makes an object of a class that the factory does not make, for AnyClass.
template <class Base>
KRDataObj* NewBase(KRDataObjFactory&) {
  return new Base;
}

/// Adds classes from which others derive.
template <class... Bases>
void AddBases(ClassMap& classes) {
  (AddClasses(classes, &NewBase<Bases>), ...);
}

/// All that have a table.
inline ClassMap FindEveryTable() {
  using krofx::internal::CreateBy;
  ClassMap classes = FindEveryClass();
  // Only what derives from these two is in exchanges.
  AddClasses(classes, &CreateBy<&KRDataObjFactory::NewAccountInfoBase>);
  AddClasses(classes, &CreateBy<&KRDataObjFactory::NewMessageSetVersion>);
  // No aggregate has a row for this one.
  AddClasses(classes, &CreateBy<&KRDataObjFactory::NewNorvSBusinessInfo>);
  // A host sets this one in place of a KRSignOnRq.
  AddClasses(classes, &CreateBy<&KRDataObjFactory::NewPayrollSignOnRq>);
  AddBases<KRBankBalance, KRBankMailBase, KRBankOrCCAccount, KRChangeUserInfoBase,
           KREmployeeStateTaxBase, KREmployeeTaxBase, KRHours, KRInvMailBase, KRMailBase,
           KRPayeeBase, KRPayeeDeleteBase, KRPaymentBase, KRPaymentCanInqBase, KRPaymentMailBase,
           KRRecPaymentBase, KRRecPaymentCancelBase, KRRecPaymentModifyBase, KRRecTransferCancel,
           KRSignUpMessageSetBase, KRTransferCancel, KRTransferModifyRq, KRTransferModifyRs,
           KRTransferRq, KRTransferRs>(classes);
  KRParseLogger::TheKRParseLogger()->DeleteAll();
  return classes;
}

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_EVERY_CLASS_H_
