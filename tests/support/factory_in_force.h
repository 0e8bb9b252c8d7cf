// Makes a test's factory the current one while the test runs.

#ifndef KROFX_TESTS_SUPPORT_FACTORY_IN_FORCE_H_
#define KROFX_TESTS_SUPPORT_FACTORY_IN_FORCE_H_

#include "krofx/model/data_object.h"
#include "krofx/model/factory.h"

namespace krofx::testing {

/// Makes `factory` the current one until the end of the scope, and then the default one again.
class InForce {
 public:
  explicit InForce(KRDataObjFactory& factory) { KRDataObj::SetFactory(&factory); }
  ~InForce() { KRDataObj::SetFactory(nullptr); }
  InForce(const InForce&) = delete;
  InForce& operator=(const InForce&) = delete;
};

}  // namespace krofx::testing

#endif  // KROFX_TESTS_SUPPORT_FACTORY_IN_FORCE_H_
