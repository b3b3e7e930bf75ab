// The component file as the entry layer reads it: records of 1000 bytes, cells of four bytes.
#pragma once

#include <cstdio>
#include <cstring>
#include <string_view>

#include "base/real.h"

namespace talix {

inline constexpr int kRecordBytes = 1000;

struct ComponentFileRecord {
  char bytes[kRecordBytes];

  [[nodiscard]] R4 real(int offset) const {
    R4 value = 0.0F;
    std::memcpy(&value, bytes + offset, sizeof value);
    return value;
  }
  [[nodiscard]] I4 integer(int offset) const {
    I4 value = 0;
    std::memcpy(&value, bytes + offset, sizeof value);
    return value;
  }
  [[nodiscard]] std::string_view text(int offset, int length) const {
    return {bytes + offset, static_cast<std::size_t>(length)};
  }
};

// purezan.out in the folder Zandor of the install directory, open for reading while the object lives.
class ComponentFile {
 public:
  ComponentFile();
  ~ComponentFile();
  ComponentFile(const ComponentFile&) = delete;
  ComponentFile& operator=(const ComponentFile&) = delete;

  [[nodiscard]] bool is_open() const { return file_ != nullptr; }
  // Reads record NUMBER, counted from 1; false at the end of the file and on a read error.
  bool read(I4 number, ComponentFileRecord& record);

 private:
  std::FILE* file_;
};

}  // namespace talix
