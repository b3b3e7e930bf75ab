#include "database/open_file.h"

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

#include "base/text.h"

namespace talix {

namespace {

// Names are UTF-8 with back-slashes between folders and blanks behind. A separator that the platform does not
// know is replaced by its own; an empty path stands for a name that no file can have.
std::filesystem::path host_path(std::string_view name) {
  std::string spelled{trimmed(name)};
  if (spelled.find('\0') != std::string::npos) return {};
  constexpr bool kForwardSlashes = std::filesystem::path::preferred_separator == '/';
  if constexpr (kForwardSlashes) {
    for (char& c : spelled)
      if (c == '\\') c = '/';
    return std::filesystem::path{spelled};
  } else {
    try {
      return std::filesystem::path{std::u8string{spelled.begin(), spelled.end()}};
    } catch (const std::exception&) {
      return {};  // not UTF-8: refused as any other name that cannot be opened
    }
  }
}

}  // namespace

std::FILE* open_file(std::string_view name, const char* mode, int& error) {
  const std::filesystem::path path = host_path(name);
  error = EINVAL;
  if (path.empty()) return nullptr;

  // A folder can be opened for reading on some hosts, and then fails at the first read.
  std::error_code code;
  if (std::filesystem::is_directory(path, code)) {
    error = EISDIR;
    return nullptr;
  }

  errno = 0;
#if defined(_WIN32)
  const std::string narrow{mode};
  std::FILE* stream = ::_wfopen(path.c_str(), std::wstring{narrow.begin(), narrow.end()}.c_str());
#else
  std::FILE* stream = std::fopen(path.c_str(), mode);
#endif
  const int reported = errno != 0 ? errno : EIO;
  error = stream != nullptr ? 0 : reported;
  return stream;
}

bool file_exists(std::string_view name, int& error) {
  const std::filesystem::path path = host_path(name);
  error = 0;
  if (path.empty()) return false;
  std::error_code code;
  const bool found = std::filesystem::exists(path, code);
  error = found ? 0 : code.value();
  return found;
}

void remove_file(std::string_view name) {
  std::error_code ignored;
  std::filesystem::remove(host_path(name), ignored);
}

}  // namespace talix
