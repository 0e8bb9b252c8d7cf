// Any bytes as a request file: see trees.h for what must hold.

#include "krofx/envelope/file_rq_rs.h"
#include "trees.h"

namespace {

const krofx::fuzz::Target kTarget("request", &krofx::fuzz::CheckFile<KRFileRq>);

}  // namespace
