#pragma once

namespace schau::rules {

/// True for a non-breaking blank and for a control character: nobody sees what it is.
inline bool is_unseen(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 || byte == 0x7F || byte == 0xA0;
}

}  // namespace schau::rules
