// Looks for an answer in a reply.

#ifndef KROFX_COMMAND_EXCHANGE_HAS_ANSWER_H_
#define KROFX_COMMAND_EXCHANGE_HAS_ANSWER_H_

#include <algorithm>
#include <vector>

#include "input/parsed_file.h"
#include "krofx/host/look.h"

namespace krofx::command {

/// @return whether a reply has an object of a class.
template <class Answer>
bool HasAnswer(const ParsedFile& reply) {
  const std::vector<OfxFile> files = reply.GetOfxFiles();
  return std::any_of(files.begin(), files.end(), [](const OfxFile& each) {
    auto answers = krofx::Each<Answer>(*each.file);
    return answers.begin() != answers.end();
  });
}

}  // namespace krofx::command

#endif  // KROFX_COMMAND_EXCHANGE_HAS_ANSWER_H_
