// One row of a table of the user: its cells as figures, with every mistake noted.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bank/tables.h"

namespace talix::bank {

struct UserPoint {
  double T;      // [K]
  double value;  // in the unit of the column
};

// Limits and constants of a relation in temperature.
struct UserConstants {
  double tmin, tmax;  // [K]
  std::vector<double> c;
};

class UserRow {
 public:
  UserRow(const SourceTable& table, std::size_t row, std::vector<std::string>& faults)
      : table_(&table), row_(row), faults_(&faults) {}

  [[nodiscard]] const SourceTable& table() const { return *table_; }
  [[nodiscard]] std::size_t index() const { return row_; }

  // Whether the cell is there and filled.
  [[nodiscard]] bool given(std::string_view column) const;
  // Text of a cell, empty where the table has no such column.
  [[nodiscard]] std::string text(std::string_view column) const;
  // Figure of a cell; nothing where it is empty, or faulty, which is noted.
  [[nodiscard]] std::optional<double> number(std::string_view column) const;
  // Points of a cell by ascending temperature; empty where there are none, or where they are faulty, which is noted.
  [[nodiscard]] std::vector<UserPoint> points(std::string_view column) const;
  [[nodiscard]] std::optional<UserConstants> constants(std::string_view column, std::size_t least,
                                                       std::size_t most) const;

  // Notes a mistake in a cell.
  void fault(std::string_view column, std::string_view what) const;
  // Notes that a needed column is not there or a needed cell is empty.
  void missing(std::string_view column, std::string_view what) const;
  // How many mistakes are noted by now, of this and other rows.
  [[nodiscard]] std::size_t mistakes() const { return faults_->size(); }

 private:
  const SourceTable* table_;
  std::size_t row_;
  std::vector<std::string>* faults_;
};

// A figure as messages show it.
std::string shown(double value);

}  // namespace talix::bank
