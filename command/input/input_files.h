// The inputs of a subcommand: the files that its arguments name, and their bytes.

#ifndef KROFX_COMMAND_INPUT_INPUT_FILES_H_
#define KROFX_COMMAND_INPUT_INPUT_FILES_H_

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "krofx/core/buffer.h"

namespace krofx::command {

/// The parser counts positions in 31 bits.
inline constexpr u32 kMaxInputSize = 0x7FFFFFFE;
/// What is said of an input that is larger.
inline constexpr char kTooLarge[] = "it is larger than 2 GB; split it by date or account";
/// What is said when there is no memory for an input.
inline constexpr char kNoMemoryToRead[] = "not enough memory to read it";

/// Replaces each directory by the OFX files below it, in the order of their paths. Names of files,
/// and "-", stay as they are, whether there is such a file or not.
/// @param problems takes a line for each directory that could not be read or holds no OFX file.
std::vector<std::string> FindInputs(const std::vector<std::string>& arguments,
                                    std::vector<std::string>& problems);

/// What a subcommand works on that was given no FILE: standard input, when that is no terminal and
/// there is anything in it.
/// @return false, with `files` empty, when there is nothing to work on.
bool DefaultToStandardInput(std::vector<std::string>& files);

/// Reads a file, or standard input for "-", and unpacks what gzip packed. The bytes may hold a
/// password, so they are held only by the buffer, which wipes its memory.
/// @param problem takes what went wrong.
/// @return null when the file cannot be read.
std::unique_ptr<KRBuffer> ReadInput(const std::string& name, std::string& problem);

/// @return whether a name is that of a plain file of at least `bytes` bytes that gzip has not
///         packed.
bool IsLargePlainFile(const std::string& name, std::size_t bytes);

/// @return how an input is named in messages.
std::string DisplayName(const std::string& name);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_INPUT_FILES_H_
