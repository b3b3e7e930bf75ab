// Files by unit number, 1 to 99: open, read, write, close. Every call answers with an I/O status.
#pragma once

#include <string_view>

#include "base/real.h"

namespace talix {

inline constexpr int kLastUnit = 99;
inline constexpr int kLineLength = 512;  // characters that a formatted line can hold

// I/O statuses: 0 is success, a value above 0 is a failure. The host's own error numbers lie below these.
namespace io {
inline constexpr I4 ok = 0;
inline constexpr I4 end_of_file = -1;
inline constexpr I4 not_open = 5001;
inline constexpr I4 wrong_access = 5002;
inline constexpr I4 no_such_record = 5003;
inline constexpr I4 bad_option = 5004;
inline constexpr I4 name_too_long = 5005;
}  // namespace io

enum class Opening { old, unknown, scratch };

struct OpenRequest {
  std::string_view name;  // blank-padded; not read for a scratch file
  Opening opening;        // old: must exist, read only. unknown: created when missing
  bool direct;            // direct access with records of record_length bytes
  bool at_end;            // sequential: positioned behind the last record
  I4 record_length;       // [byte]
};

// Opens a file on a unit that is not open.
I4 open_unit(I4 unit, const OpenRequest& request);
[[nodiscard]] bool unit_is_open(I4 unit);
// Failure that the host reported on the open unit, or io::ok.
[[nodiscard]] I4 unit_fault(I4 unit);
// Closes the unit, and removes its file when asked. A unit that is not open is left alone.
void close_unit(I4 unit, bool remove);

// Reads the first COUNT bytes of record RECORD of a direct-access unit.
I4 read_record(I4 unit, I4 record, void* bytes, int count);

struct Line {
  char c[kLineLength];
  int length;  // characters read, without the line end; a longer line is cut

  [[nodiscard]] std::string_view view() const { return {c, static_cast<std::size_t>(length)}; }
  // Columns FIRST to LAST, counted from 1, as far as the line has them.
  [[nodiscard]] std::string_view columns(int first, int last) const;
};

// Reads the next line of a sequential unit; io::end_of_file behind the last one.
I4 read_line(I4 unit, Line& line);
// Writes a line. Units 0 and 6 are standard error and standard output while no file is open on them.
I4 write_line(I4 unit, std::string_view text);

}  // namespace talix
