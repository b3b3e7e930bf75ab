#include "bank/user_row.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "bank/user_columns.h"

namespace talix::bank {

namespace {

constexpr double kLowestTemperature = 3;  // of points and limits [K]
constexpr double kHighestTemperature = 4000;

std::optional<double> plain_number(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  double value = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, value);
  if (error != std::errc{} || end != last || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::vector<std::string> items_of(const std::string& text) {
  std::vector<std::string> items;
  std::istringstream in(text);
  for (std::string item; std::getline(in, item, ';');) items.push_back(item);
  return items;
}

// Why a temperature will not do; empty where it will.
std::string temperature_fault(double T) {
  if (T >= kLowestTemperature && T <= kHighestTemperature) return {};
  return "temperature " + shown(T) + " K is outside 3 to 4000; if it is in degrees C, write " +
         shown(T + 273.15);
}

}  // namespace

std::string shown(double value) {
  std::array<char, 40> text{};
  std::snprintf(text.data(), text.size(), "%.6g", value);
  return text.data();
}

bool UserRow::given(std::string_view column) const { return !text(column).empty(); }

std::string UserRow::text(std::string_view column) const {
  return table_->has(column) ? table_->text(row_, column) : std::string();
}

std::optional<double> UserRow::number(std::string_view column) const {
  if (!given(column)) return std::nullopt;
  const UserColumn& meant = *user_column(column);
  const auto value = plain_number(text(column));
  if (!value) {
    fault(column, "not a number; write a plain decimal number with a point");
    return std::nullopt;
  }
  if (*value < meant.low || *value > meant.high) {
    std::string what =
        "outside " + shown(meant.low) + " to " + shown(meant.high) + advice_on_unit(meant, *value);
    if (meant.unit == "K") what += "; if it is in degrees C, write " + shown(*value + 273.15);
    fault(column, what);
    return std::nullopt;
  }
  return value;
}

std::vector<UserPoint> UserRow::points(std::string_view column) const {
  if (!given(column)) return {};
  const UserColumn& meant = *user_column(column);
  std::vector<UserPoint> points;
  bool sound = true;
  const auto refuse = [&](const std::string& what) {
    fault(column, what);
    sound = false;
  };
  int count = 0;
  for (const std::string& item : items_of(text(column))) {
    const std::string which = "point " + std::to_string(++count) + ": ";
    const std::size_t colon = item.find(':');
    const auto T = plain_number(std::string_view(item).substr(0, colon));
    const auto value =
        colon == std::string::npos ? std::nullopt : plain_number(std::string_view(item).substr(colon + 1));
    if (!T || !value) {
      refuse(which + "write T:value;T:value with plain decimal numbers");
      continue;
    }
    if (const std::string what = temperature_fault(*T); !what.empty()) refuse(which + what);
    if (*value < meant.low || *value > meant.high) {
      refuse(which + shown(*value) + " is outside " + shown(meant.low) + " to " + shown(meant.high) +
             advice_on_unit(meant, *value));
    }
    if (!points.empty() && *T <= points.back().T)
      refuse(which + "the temperatures must rise; " + shown(*T) + " follows " + shown(points.back().T));
    points.push_back({*T, *value});
  }
  if (!sound) points.clear();
  return points;
}

std::optional<UserConstants> UserRow::constants(std::string_view column, std::size_t least,
                                                std::size_t most) const {
  if (!given(column)) return std::nullopt;
  std::vector<double> figures;
  for (const std::string& item : items_of(text(column))) {
    const auto value = plain_number(item);
    if (!value) {
      fault(column, "write Tmin;Tmax;c1;c2;... with plain decimal numbers");
      return std::nullopt;
    }
    figures.push_back(*value);
  }
  if (figures.size() < least + 2 || figures.size() > most + 2) {
    fault(column, std::to_string(figures.size()) + " figures; write Tmin;Tmax and " +
                      (least == most ? std::to_string(least)
                                     : std::to_string(least) + " to " + std::to_string(most)) +
                      " constants");
    return std::nullopt;
  }
  for (const double T : {figures[0], figures[1]}) {
    if (const std::string what = temperature_fault(T); !what.empty()) {
      fault(column, what);
      return std::nullopt;
    }
  }
  if (figures[1] <= figures[0]) {
    fault(column, "the second figure, the upper temperature, must be above the first");
    return std::nullopt;
  }
  return UserConstants{figures[0], figures[1], {figures.begin() + 2, figures.end()}};
}

void UserRow::fault(std::string_view column, std::string_view what) const {
  const UserColumn* const meant = user_column(column);
  faults_->push_back(table_->fault(row_, column, what, meant == nullptr ? "" : meant->unit));
}

void UserRow::missing(std::string_view column, std::string_view what) const {
  if (table_->has(column)) {
    fault(column, "empty; " + std::string(what));
  } else {
    faults_->push_back(table_->place(row_) + ": column " + std::string(column) +
                       " is missing in the header; " + std::string(what));
  }
}

}  // namespace talix::bank
