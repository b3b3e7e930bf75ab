// The file layer: opening, testing and closing of files by unit number under the rules of the host platform.
#pragma once

#include <string_view>

#include "base/logical.h"
#include "base/real.h"
#include "base/text.h"
#include "database/message_text.h"

namespace talix {

struct FileRecord {
  I4 IOSTAT;         // I/O status of the last open; written by SFLOP0
  MessageText work;  // work text in which the messages are composed
};

extern constinit FileRecord sfl;

// Opens a file; a blank FNAME is a scratch file.
void SFLOP0(const I4& UNIT, std::string_view FNAME, std::string_view ACCESS, std::string_view FORM,
            const I4& RECL, I4& NFAIL);
// Finds a free unit, from the number given upwards.
void SFLAO1(I4& UNIT, I4& NFAIL);
// Does the file exist?
void SFLIQ0(std::string_view FNAME, L4& FEXIST);
// Is the unit in use?
void SFLUQ0(const I4& UNIT, L4& FOPEND, I4& IOS);
// Closes a unit; STATUS is "DELETE" or "KEEP".
void SFLCL0(const I4& UNIT, std::string_view STATUS);
// The fixed date of every file.
void SFLDT0(Text<23>& DATE);

// Does the file of row ROW of the data file table exist?
bool data_file_exists(int ROW);

// Closes every unit and empties the record.
void reset_file_record();

}  // namespace talix
