// File names below the install directory.
#pragma once

#include <cstdio>
#include <string_view>

#include "base/real.h"

namespace talix {

// The longest name that the flash layer opens.
inline constexpr int kMaxFileName = 256;

struct FileName {
  char c[kMaxFileName + 1];  // zero-terminated
  I4 length;                 // 0 when the joined name was longer than 256 characters
};

// The used characters of the install directory followed by TAIL.
FileName install_name(std::string_view tail);
// Opens a file by its back-slash spelling; a null pointer on failure.
std::FILE* open_install_file(const FileName& name, const char* mode);

}  // namespace talix
