// Columns that a table of the user may have.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace talix::bank {

enum class UserKind {
  text,
  number,
  points,     // "T:value;T:value", T in K
  constants,  // "Tmin;Tmax;c1;c2;...", T in K
};

struct UserColumn {
  std::string_view name;
  UserKind kind;
  std::string_view unit;    // of the figure, of points that of the second one
  double low, high;         // what it may be
  std::string_view source;  // column of components.csv that holds the source of the figure; empty for none
  std::string_view meaning;
};

std::span<const UserColumn> user_columns();
// The column of that name, nothing where there is none.
const UserColumn* user_column(std::string_view name);

// What to write in place of a column name that no table has.
std::string advice_on_column(std::string_view name);

// Where VALUE would be within the bounds in another usual unit: what to write instead. Empty otherwise.
std::string advice_on_unit(const UserColumn& column, double value);

}  // namespace talix::bank
