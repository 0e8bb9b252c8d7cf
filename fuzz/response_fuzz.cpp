// Any bytes as a response file: see trees.h for what must hold.

#include "krofx/envelope/file_rq_rs.h"
#include "trees.h"

namespace {

const krofx::fuzz::Target kTarget("response", &krofx::fuzz::CheckFile<KRFileRs>);

}  // namespace
