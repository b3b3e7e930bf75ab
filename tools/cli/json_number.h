// Numbers of the library in JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>

namespace talix::cli {

// The double that prints in the same few digits as the single-precision value; null where it is not finite.
nlohmann::ordered_json json_number(float value);
// The number, or null where there is none or it is not finite.
nlohmann::ordered_json json_number(std::optional<double> value);

}  // namespace talix::cli
