// Free-format reading of a sequential unit: items between blanks, commas and line ends, over as many lines as needed.
#pragma once

#include <string_view>

#include "base/real.h"
#include "database/unit_table.h"

namespace talix {

// A real may carry a D exponent; "3*0.5" stands for three items; a slash ends a list, whose other items stay as they
// are, and so does an item of which nothing stands between two commas.
struct FreeFormat {
  I4 unit;
  Line line;
  int next;                   // characters of the line that are read
  bool at_end;                // the file has no further line
  int repeats;                // how often the last item still stands
  std::string_view repeated;  // that item
  bool ended;                 // a slash was met
};

// A reader on an open unit, before its first line.
FreeFormat free_format(I4 unit);
// The first item of the next line that has one, without quotes; it holds up to the next call. False at the end of
// the file.
bool next_word(FreeFormat& reader, std::string_view& item);
// Opens a list: on the line in hand when a number follows there, and else on the next one.
void begin_list(FreeFormat& reader);
// The next number of the list. False at the end of the file, and for an item that is no finite number, or no integer.
bool next_real(FreeFormat& reader, R8& value);
bool next_integer(FreeFormat& reader, I4& value);

}  // namespace talix
