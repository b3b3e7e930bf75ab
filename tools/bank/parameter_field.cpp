#include "bank/parameter_field.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "bank/tables.h"

namespace talix::bank {

namespace {

constexpr int kMostDigits = 17;        // that a double holds
constexpr double kLargestLoss = 1e-3;  // of a rounded figure, relative

// Gives the text a decimal point and drops a zero in front of it that is not needed.
std::string with_point(std::string text, std::size_t width) {
  const std::size_t exponent = text.find('e');
  if (text.find('.') == std::string::npos)
    text.insert(exponent == std::string::npos ? text.size() : exponent, ".");
  if (const std::size_t mark = text.find('e'); mark != std::string::npos) text[mark] = 'E';
  if (text.size() > width && text.starts_with("0.")) text.erase(0, 1);
  if (text.size() > width && text.starts_with("-0.")) text.erase(1, 1);
  return text;
}

std::string converted(double value, std::chars_format format, int precision) {
  std::array<char, 512> text{};
  char* const last = text.data() + text.size();
  const std::to_chars_result end = precision < 0 ? std::to_chars(text.data(), last, value, format)
                                                 : std::to_chars(text.data(), last, value, format, precision);
  return end.ec == std::errc{} ? std::string(text.data(), end.ptr) : std::string();
}

double number(std::string text) {
  if (text.starts_with("-.")) text.insert(1, "0");
  if (text.starts_with(".")) text.insert(0, "0");
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

// The text of fewest errors in the columns; empty where none fits.
std::string best_text(double value, int width, double& error) {
  const auto columns = static_cast<std::size_t>(width);
  std::string best;
  error = std::numeric_limits<double>::infinity();
  const auto offer = [&](std::chars_format format, int precision) {
    const std::string text = with_point(converted(value, format, precision), columns);
    if (text.empty() || text.size() > columns) return;
    const double miss = std::abs(number(text) - value);
    if (miss < error || (miss == error && text.size() < best.size())) {
      error = miss;
      best = text;
    }
  };
  offer(std::chars_format::fixed, -1);
  offer(std::chars_format::scientific, -1);
  for (int digits = kMostDigits; digits >= 0 && error > 0; --digits) {
    offer(std::chars_format::fixed, digits);
    offer(std::chars_format::scientific, digits);
  }
  return best;
}

// All digits of the number without a point and its exponent, where the last DECIMALS digits count as decimals.
std::string pointless_text(double value, int decimals) {
  const std::string scientific = converted(value, std::chars_format::scientific, -1);
  const std::size_t mark = scientific.find('e');
  if (mark == std::string::npos) return {};
  std::string digits = scientific.substr(0, mark);
  const std::size_t point = digits.find('.');
  int exponent = std::stoi(scientific.substr(mark + 1)) + decimals;
  if (point != std::string::npos) {
    exponent -= static_cast<int>(digits.size() - point) - 1;
    digits.erase(point, 1);
  }
  return digits + (exponent < 0 ? "" : "+") + std::to_string(exponent);
}

std::string justified(const std::string& text, int width) {
  return std::string(static_cast<std::size_t>(width) - text.size(), ' ') + text;
}

[[noreturn]] void too_wide(double value, int width) {
  throw BankError("the figure " + converted(value, std::chars_format::general, -1) + " does not fit into " +
                  std::to_string(width) + " columns; check its digits and its unit");
}

}  // namespace

std::string real_text(double value, int width, int decimals) {
  double error = 0;
  const std::string text = std::isfinite(value) ? best_text(value, width, error) : std::string();
  const double allowed = std::max(kLargestLoss * std::abs(value), 0.51 * std::pow(10.0, -decimals));
  if (text.empty() || error > allowed) too_wide(value, width);
  return justified(text, width);
}

std::string exact_text(double value, int width, int decimals) {
  double error = 0;
  std::string text = std::isfinite(value) ? best_text(value, width, error) : std::string();
  if (text.empty() || error > 0) text = pointless_text(value, decimals);
  if (text.empty() || text.size() > static_cast<std::size_t>(width)) too_wide(value, width);
  return justified(text, width);
}

std::string integer_text(int value, int width) {
  const std::string text = std::to_string(value);
  if (text.size() > static_cast<std::size_t>(width)) too_wide(value, width);
  return justified(text, width);
}

std::string padded_text(std::string_view text, int width) {
  std::string result(text.substr(0, static_cast<std::size_t>(width)));
  result.resize(static_cast<std::size_t>(width), ' ');
  return result;
}

}  // namespace talix::bank
