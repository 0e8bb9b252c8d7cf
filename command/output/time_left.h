// How long work that is under way will still take, in words.

#ifndef KROFX_COMMAND_OUTPUT_TIME_LEFT_H_
#define KROFX_COMMAND_OUTPUT_TIME_LEFT_H_

#include <chrono>
#include <string>

namespace krofx::command {

/// What a line of progress says of the time that is left, such as ", about 20 s left", when the
/// rest takes as long as what is done has taken.
/// @param done and all in the same measure, whatever it is.
/// @return empty before a second has passed, and as long as nothing is done.
std::string DescribeTimeLeft(std::chrono::steady_clock::duration elapsed, double done, double all);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_OUTPUT_TIME_LEFT_H_
