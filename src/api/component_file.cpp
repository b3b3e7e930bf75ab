#include "api/component_file.h"

#include "fastprops/install_path.h"

namespace talix {

ComponentFile::ComponentFile() : file_(open_install_file(install_name("\\Zandor\\purezan.out"), "rb")) {}

ComponentFile::~ComponentFile() {
  if (file_ != nullptr) std::fclose(file_);
}

bool ComponentFile::read(I4 number, ComponentFileRecord& record) {
  if (file_ == nullptr || number < 1) return false;
  const long offset = (static_cast<long>(number) - 1L) * kRecordBytes;
  if (std::fseek(file_, offset, SEEK_SET) != 0) return false;
  return std::fread(record.bytes, 1, kRecordBytes, file_) == kRecordBytes;
}

}  // namespace talix
