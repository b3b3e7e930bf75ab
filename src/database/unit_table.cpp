#include "database/unit_table.h"

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>

#include "base/array.h"
#include "base/text.h"
#include "database/open_file.h"

namespace talix {

namespace {

constexpr int kMaxName = 1024;

struct Unit {
  std::FILE* stream;
  bool direct;
  bool written;      // the last operation was a write
  bool scratch;      // removed by the host when closed
  I4 record_length;  // [byte]
  I4 fault;          // host's error number of the last failed read or write
  Text<kMaxName> name;
};

constinit Vec<Unit, kLastUnit> units{};

Unit* open_entry(I4 unit) {
  if (unit < 1 || unit > kLastUnit || units(unit).stream == nullptr) return nullptr;
  return &units(unit);
}

// The stream of an "unknown" file. The data files of an install directory may stand on a medium that cannot be
// written: such a file is opened for reading alone, and only a file that does not exist is created.
std::FILE* open_unknown(std::string_view name, int& error) {
  int ignored = 0;
  if (!file_exists(name, ignored)) return open_file(name, "w+b", error);
  std::FILE* stream = open_file(name, "r+b", error);
  return stream != nullptr ? stream : open_file(name, "rb", error);
}

// C streams want a positioning call between a write and a read.
void turn(Unit& unit, bool to_write) {
  if (unit.written != to_write) {
    std::fseek(unit.stream, 0, SEEK_CUR);
    unit.written = to_write;
  }
}

I4 host_failure(Unit& unit) {
  unit.fault = errno != 0 ? errno : EIO;
  return unit.fault;
}

}  // namespace

I4 open_unit(I4 unit, const OpenRequest& request) {
  if (unit < 1 || unit > kLastUnit || units(unit).stream != nullptr) return io::not_open;
  if (request.direct && request.record_length < 1) return io::bad_option;
  const std::string_view name = trimmed(request.name);
  if (name.size() > static_cast<std::size_t>(kMaxName)) return io::name_too_long;

  int error = 0;
  std::FILE* stream = nullptr;
  if (request.opening == Opening::scratch) {
    errno = 0;
    stream = std::tmpfile();
    error = stream != nullptr ? 0 : (errno != 0 ? errno : EIO);
  } else if (request.opening == Opening::old) {
    stream = open_file(name, "rb", error);
  } else {
    stream = open_unknown(name, error);
  }
  if (stream == nullptr) return error;

  Unit& entry = units(unit);
  entry.stream = stream;
  entry.direct = request.direct;
  entry.written = false;
  entry.scratch = request.opening == Opening::scratch;
  entry.record_length = request.record_length;
  entry.fault = io::ok;
  entry.name = name;
  if (request.at_end) std::fseek(stream, 0, SEEK_END);
  return io::ok;
}

bool unit_is_open(I4 unit) { return open_entry(unit) != nullptr; }

I4 unit_fault(I4 unit) {
  const Unit* entry = open_entry(unit);
  return entry != nullptr ? entry->fault : io::ok;
}

void close_unit(I4 unit, bool remove) {
  Unit* entry = open_entry(unit);
  if (entry == nullptr) return;
  std::fclose(entry->stream);
  entry->stream = nullptr;
  entry->fault = io::ok;
  if (remove && !entry->scratch) remove_file(trimmed(entry->name));
}

I4 read_record(I4 unit, I4 record, void* bytes, int count) {
  Unit* entry = open_entry(unit);
  if (entry == nullptr) return io::not_open;
  if (!entry->direct || count < 0 || count > entry->record_length) return io::wrong_access;
  if (record < 1) return io::no_such_record;
  const std::int64_t offset = static_cast<std::int64_t>(record - 1) * entry->record_length;
  if (offset > static_cast<std::int64_t>(LONG_MAX)) return io::no_such_record;

  errno = 0;
  entry->written = false;
  if (std::fseek(entry->stream, static_cast<long>(offset), SEEK_SET) != 0) return host_failure(*entry);
  const std::size_t got = std::fread(bytes, 1, static_cast<std::size_t>(count), entry->stream);
  if (got == static_cast<std::size_t>(count)) return io::ok;
  return std::ferror(entry->stream) != 0 ? host_failure(*entry) : io::no_such_record;
}

std::string_view Line::columns(int first, int last) const {
  const int end = last < length ? last : length;
  if (first > end) return {};
  return {c + (first - 1), static_cast<std::size_t>(end - first + 1)};
}

I4 read_line(I4 unit, Line& line) {
  line.length = 0;
  Unit* entry = open_entry(unit);
  if (entry == nullptr) return io::not_open;
  if (entry->direct) return io::wrong_access;

  errno = 0;
  turn(*entry, false);
  int next = std::getc(entry->stream);
  if (next == EOF) return std::ferror(entry->stream) != 0 ? host_failure(*entry) : io::end_of_file;
  for (; next != EOF && next != '\n'; next = std::getc(entry->stream)) {
    if (line.length < kLineLength) line.c[line.length++] = static_cast<char>(next);
  }
  if (std::ferror(entry->stream) != 0) return host_failure(*entry);
  if (line.length > 0 && line.c[line.length - 1] == '\r') --line.length;
  return io::ok;
}

I4 write_line(I4 unit, std::string_view text) {
  Unit* entry = open_entry(unit);
  std::FILE* stream = nullptr;
  if (entry != nullptr) {
    if (entry->direct) return io::wrong_access;
    turn(*entry, true);
    stream = entry->stream;
  } else if (unit == 0) {
    stream = stderr;
  } else if (unit == 6) {
    stream = stdout;
  } else {
    return io::not_open;
  }

  // Flushed line by line: what was reported stands in the file whatever happens next.
  errno = 0;
  const bool written = std::fwrite(text.data(), 1, text.size(), stream) == text.size() &&
                       std::putc('\n', stream) != EOF && std::fflush(stream) == 0;
  if (written) return io::ok;
  if (entry != nullptr) return host_failure(*entry);
  return errno != 0 ? errno : EIO;
}

}  // namespace talix
