#include "cli/json_number.h"

#include <charconv>
#include <cmath>
#include <string>

#include "cli/words.h"

namespace talix::cli {

nlohmann::ordered_json json_number(float value) {
  if (!std::isfinite(value)) return nullptr;
  const std::string digits = shortest(value);
  double same = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), same);
  return same;
}

nlohmann::ordered_json json_number(std::optional<double> value) {
  if (!value || !std::isfinite(*value)) return nullptr;
  return *value;
}

}  // namespace talix::cli
