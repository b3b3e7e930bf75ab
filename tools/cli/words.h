// Small text helpers of the command line.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace talix::cli {

// Without blanks and tabs at both ends.
std::string_view strip(std::string_view text);

// ASCII letters in lower case; other bytes, UTF-8 among them, as they are.
std::string lower(std::string_view text);

// The parts between separators, stripped; an empty text has one empty part.
std::vector<std::string> split(std::string_view text, char separator);

// The parts with a separator between.
std::string joined(const std::vector<std::string>& parts, std::string_view separator);

// Number of letters to insert, delete, replace or swap with their neighbour to make one text the other.
std::size_t edit_distance(std::string_view a, std::string_view b);

// A number in the fewest digits that give the same value back.
std::string shortest(double value);
std::string shortest(float value);

// A field of a comma separated file: in quotes where it holds a comma, a quote or a line break.
std::string csv_field(std::string_view text);

// Columns a UTF-8 text takes on a terminal, one for each code point.
std::size_t columns_of(std::string_view text);

// Padded with blanks to a width, text to the left or to the right.
std::string to_left(std::string_view text, std::size_t width);
std::string to_right(std::string_view text, std::size_t width);

}  // namespace talix::cli
