#include "fastprops/install_path.h"

#include "database/open_file.h"
#include "fastprops/flash_record.h"

namespace talix {

FileName install_name(std::string_view tail) {
  FileName name{};
  const std::string_view head = fl.INSTALL.sub(1, fl.INSTALL_LENGTH);
  if (head.size() + tail.size() > static_cast<std::size_t>(kMaxFileName)) return name;
  for (const char c : head) name.c[name.length++] = c;
  for (const char c : tail) name.c[name.length++] = c;
  return name;
}

std::FILE* open_install_file(const FileName& name, const char* mode) {
  if (name.length == 0) return nullptr;
  int error = 0;
  return open_file({name.c, static_cast<std::size_t>(name.length)}, mode, error);
}

}  // namespace talix
