// Every class that has a table: found by walking the tables from the payloads of all exchanges down
// to their last child, for what must hold for all of them.

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

/// All of them.
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

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_EVERY_CLASS_H_
