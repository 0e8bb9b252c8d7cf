// Any bytes as the content of an aggregate: the first bytes choose its class and its version, the
// rest is the text. Roots this small are read a hundred times while a file is read once. See
// trees.h for what must hold.

#include <memory>

#include "any_class.h"
#include "support/every_class.h"
#include "trees.h"

namespace {

using namespace krofx::fuzz;

void Run(Bytes bytes) {
  Choices choices(bytes);
  const krofx::testing::AnyClass& any = ChooseClass(choices);
  const u16 version = static_cast<u16>(1 + choices.Below(2));
  CheckTree<KRSimpleParser>(
      choices.Rest(), [&any, version] { return any.Make(version); }, &CopyObject);
}

const Target kTarget("aggregate", &Run);

}  // namespace
