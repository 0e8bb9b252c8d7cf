// Turns characters into a string of the library, whole or not at all.

#include "krofx/host/words.h"

namespace krofx::internal {

PassedText::PassedText(std::string_view text)
    : m_isWhole(text.size() <= KRString::kMaxLength && text.find('\0') == std::string_view::npos &&
                (text.empty() || m_text.Assign(text.data(), static_cast<u16>(text.size())) != 0)) {}

}  // namespace krofx::internal
