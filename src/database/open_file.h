// Where a name becomes a file of the host: the only place that knows how the platform spells paths.
#pragma once

#include <cstdio>
#include <string_view>

namespace talix {

// Opens NAME with a mode of std::fopen; null on failure, with the host's error number in ERROR.
std::FILE* open_file(std::string_view name, const char* mode, int& error);
// Does NAME exist? ERROR is 0, or the host's error number when it could not tell.
bool file_exists(std::string_view name, int& error);
// Removes NAME; a file that is not there is no failure.
void remove_file(std::string_view name);

}  // namespace talix
