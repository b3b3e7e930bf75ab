// Which component a row of the user means.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <sstream>

#include "bank/user_component.h"

namespace talix::bank {

namespace {

std::string trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  return first == std::string::npos ? std::string()
                                    : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

std::string named(int number, const std::string& code) {
  return "component " + std::to_string(number) + " (code \"" + code + "\")";
}

// What is wrong with a CAS number, empty where nothing is: the last digit follows from the others.
std::string cas_fault(const std::string& cas) {
  std::string digits;
  int hyphens = 0;
  for (const char c : cas) {
    if (c == '-') ++hyphens;
    if (std::isdigit(static_cast<unsigned char>(c)) != 0) digits += c;
  }
  const std::size_t n = cas.size();
  const bool shaped =
      n >= 7 && n <= 12 && hyphens == 2 && digits.size() == n - 2 && cas[n - 2] == '-' && cas[n - 5] == '-';
  if (!shaped) return "write a CAS number as 138-86-3, or leave it empty";
  int sum = 0;
  for (std::size_t i = 0; i + 1 < digits.size(); ++i)
    sum += static_cast<int>(digits.size() - 1 - i) * (digits[i] - '0');
  if (sum % 10 == digits.back() - '0') return {};
  return "the last digit would be " + std::to_string(sum % 10) + "; a digit is wrong";
}

}  // namespace

UserIdentities::UserIdentities(const SourceTable& components) : components_(&components) {
  for (std::size_t row = 0; row < components.rows(); ++row) {
    const int number = components.integer(row, "number", 2, kHighestNumber);
    bank_rows_[number] = row;
    enter(number, components.text(row, "code"), components.text(row, "cas"),
          components.text(row, "name") + ";" + components.text(row, "synonyms"));
  }
}

void UserIdentities::enter(int number, const std::string& code, const std::string& cas,
                           const std::string& names) {
  code_[number] = code;
  code_number_.emplace(trimmed(code), number);
  if (!cas.empty()) cas_number_.emplace(cas, number);
  std::istringstream in(names);
  for (std::string name; std::getline(in, name, ';');) name_number_.emplace(lowered(trimmed(name)), number);
}

std::optional<int> UserIdentities::number_of(const std::string& key) const {
  const std::string text = trimmed(key);
  if (const auto found = code_number_.find(text); found != code_number_.end()) return found->second;
  if (const auto found = cas_number_.find(text); found != cas_number_.end()) return found->second;
  if (const auto found = name_number_.find(lowered(text)); found != name_number_.end()) return found->second;
  for (const auto& [number, code] : code_)
    if (std::to_string(number) == text) return number;
  return std::nullopt;
}

// Row of the bank that number, code and CAS number agree on.
std::optional<std::size_t> UserIdentities::bank_row(const UserRow& row, bool& sound) const {
  const auto refuse = [&](std::string_view column, const std::string& what) {
    row.fault(column, what);
    sound = false;
    return std::nullopt;
  };
  std::map<std::string, int> meant;  // number by the column that tells it
  const auto look = [&](const char* column, const auto& keys, const auto& key) {
    if (const auto found = keys.find(key);
        row.given(column) && found != keys.end() && bank_rows_.contains(found->second))
      meant[column] = found->second;
  };
  look("cas", cas_number_, row.text("cas"));
  look("code", code_number_, trimmed(row.text("code")));
  if (const auto number = row.number("number"); number && bank_rows_.contains(static_cast<int>(*number)))
    meant["number"] = static_cast<int>(*number);
  if (meant.empty()) return std::nullopt;

  const int number = meant.begin()->second;
  const std::string& code = code_.at(number);
  for (const char* column : {"number", "code", "cas"}) {
    if (!row.given(column)) continue;
    const auto found = meant.find(column);
    if (found != meant.end() && found->second == number) continue;
    if (found != meant.end())
      return refuse(column, "means " + named(found->second, code_.at(found->second)) +
                                " of the bank, but the row also means " + named(number, code) +
                                "; change the one that is wrong");
    return refuse(column, "the row means " + named(number, code) + " of the bank by its " +
                              meant.begin()->first + ", which has another " + column +
                              "; leave it empty to override, or choose a free " + meant.begin()->first +
                              " to add a component");
  }
  if (row.given("name") && !meant.contains("cas")) {
    const auto same = name_number_.find(lowered(trimmed(row.text("name"))));
    if (same == name_number_.end() || same->second != number)
      return refuse("name", named(number, code) +
                                " of the bank has another name; give its CAS number to override it, or "
                                "choose a free " +
                                meant.begin()->first + " to add a component");
  }
  return bank_rows_.at(number);
}

std::optional<UserComponent> UserIdentities::resolve(const UserRow& row) {
  bool sound = true;
  const auto refuse = [&](std::string_view column, const std::string& what) {
    row.fault(column, what);
    sound = false;
  };
  std::string code = row.text("code");
  if (code.size() > 4) refuse("code", "a code has at most 4 characters");
  if (const std::string cas = row.text("cas"); !cas.empty() && !cas_fault(cas).empty())
    refuse("cas", cas_fault(cas));
  const auto number = row.number("number");
  if (row.given("number") && !number) sound = false;
  if (number && *number != std::floor(*number)) refuse("number", "not a whole number");
  if (!row.given("number") && !row.given("code") && !row.given("cas")) {
    row.missing("code", "write a code of four characters that the bank does not have");
    sound = false;
  }
  UserComponent component{.row = row};
  if (sound) component.bank_row = bank_row(row, sound);
  if (sound && component.added()) {
    for (const char* column : {"code", "name", "formula"}) {
      if (row.given(column)) continue;
      row.missing(column, "a new component needs it");
      sound = false;
    }
    if (row.given("code") && trimmed(code).empty()) refuse("code", "a code must not be blank");
  }
  if (!sound) return std::nullopt;
  if (component.added()) {
    code.resize(4, ' ');
    component.number = number ? static_cast<int>(*number) : 0;
    component.code = code;
  } else {
    component.number = components_->integer(*component.bank_row, "number", 2, kHighestNumber);
    component.code = components_->text(*component.bank_row, "code");
  }
  const auto once = [&](const std::string& key, const char* column, const std::string& what) {
    const auto [at, first] = place_.emplace(key, row.table().place(row.index()));
    if (!first) refuse(column, what + " stands already in " + at->second + "; keep one row");
  };
  const auto shown_by = [&](const char* column) {
    return row.given(column) ? column : (row.given("code") ? "code" : "cas");
  };
  once("code " + trimmed(component.code), shown_by("code"), "this component");
  if (sound && component.number > 0)
    once("number " + std::to_string(component.number), shown_by("number"), "this number");
  if (sound && component.added() && row.given("cas"))
    once("cas " + row.text("cas"), "cas", "this CAS number");
  if (!sound) return std::nullopt;
  if (component.number > 0) code_.emplace(component.number, component.code);
  return component;
}

void UserIdentities::choose_numbers(std::vector<UserComponent>& components) {
  int free = kHighestNumber;
  for (UserComponent& c : components) {
    if (c.number == 0) {
      while (free > 1 && code_.contains(free)) --free;
      if (free < 2) {
        c.row.fault("code", "all numbers up to 1246 are taken; override a component that you do not need");
        continue;
      }
      c.number = free;
    }
    if (c.added())
      enter(c.number, c.code, c.row.text("cas"), c.row.text("name") + ";" + c.row.text("synonyms"));
  }
}

}  // namespace talix::bank
