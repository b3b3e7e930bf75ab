// A component of the user: which one of the bank it is, and all that it will have.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "bank/build.h"
#include "bank/correlations.h"
#include "bank/user_row.h"
#include "common/formula.h"

namespace talix::bank {

struct UserComponent {
  UserRow row;
  std::optional<std::size_t> bank_row{};  // of components.csv where it overrides; nothing for a new component
  int number = 0;                         // 0 until one is chosen
  std::string code{};                     // four characters
  std::map<std::string, std::string, std::less<>> cells{};  // of components.csv
  std::set<std::string, std::less<>> given{};               // columns of the user's row that are filled
  std::vector<std::string> estimated{};                     // columns that an estimate fills
  std::map<std::string, Correlation> relations{};           // by property
  common::Atoms atoms{};

  [[nodiscard]] bool added() const { return !bank_row.has_value(); }
  // Figure of a cell, 0 where it is empty.
  [[nodiscard]] double value(std::string_view column) const;
  void put(std::string_view column, double figure);
  // The same for an estimate; the column of its source gets the word.
  void estimate(std::string_view column, double figure, std::string_view word);
};

// Numbers, codes, CAS numbers and names, of the bank and of the rows of the user seen so far.
class UserIdentities {
 public:
  explicit UserIdentities(const SourceTable& components);

  // The component that a row adds or overrides. Nothing where the row contradicts itself or the bank, which is noted.
  std::optional<UserComponent> resolve(const UserRow& row);
  // The highest free numbers for those that have none, in their order. Notes a component for which none is left.
  void choose_numbers(std::vector<UserComponent>& components);
  // Number of a component by number, code, CAS number or name; nothing where there is none.
  [[nodiscard]] std::optional<int> number_of(const std::string& key) const;
  [[nodiscard]] const std::string& code_of(int number) const { return code_.at(number); }

 private:
  void enter(int number, const std::string& code, const std::string& cas, const std::string& names);
  std::optional<std::size_t> bank_row(const UserRow& row, bool& sound) const;

  const SourceTable* components_;
  std::map<int, std::size_t> bank_rows_;
  std::map<int, std::string> code_;         // by number
  std::map<std::string, int> code_number_;  // by code without blanks
  std::map<std::string, int> cas_number_, name_number_;
  std::map<std::string, std::string> place_;  // where a key of the user was used
};

// Fills cells and relations from the row: overlays what the bank has, checks that the figures go together, estimates
// what is left. Notes every mistake.
void complete(UserComponent& component, const BankSources& sources);

// Its two parts: points and constants become relations, each point checked against the critical point and its
// neighbours; and whether the single figures go together.
void take_relations(UserComponent& component);
void check_figures(UserComponent& component);

}  // namespace talix::bank
