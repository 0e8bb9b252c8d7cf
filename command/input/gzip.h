// Files that gzip has packed.

#ifndef KROFX_COMMAND_INPUT_GZIP_H_
#define KROFX_COMMAND_INPUT_GZIP_H_

#include <memory>
#include <string>
#include <string_view>

class KRBuffer;

namespace krofx::command {

/// @return whether bytes begin as those of gzip do.
bool IsGzip(std::string_view bytes);

/// Unpacks what gzip packed, all parts of it when several were put together. The memory that it
/// needs is wiped, since the text may hold a password. What unpacks to more than 256 MiB and more
/// than 200 times its size is taken for an attack on the memory and refused, and so is more than
/// 2 GB.
/// @param problem takes what went wrong.
/// @return null when something did.
std::unique_ptr<KRBuffer> Unpack(std::string_view packed, std::string& problem);

}  // namespace krofx::command

#endif  // KROFX_COMMAND_INPUT_GZIP_H_
