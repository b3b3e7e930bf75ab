#include "fuzz/fuzz_call.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>

#include "api/catalogue.h"
#include "api/small_calls.h"
#include "api/talix_call.h"
#include "base/text.h"
#include "fastprops/flash_message.h"
#include "fastprops/flash_record.h"
#include "flash/phase_check.h"

namespace talix::fuzz {

namespace {

constexpr R4 kNan = std::numeric_limits<R4>::quiet_NaN();
constexpr R4 kInf = std::numeric_limits<R4>::infinity();
constexpr R4 kMax = std::numeric_limits<R4>::max();
constexpr R4 kTiny = std::numeric_limits<R4>::denorm_min();

constexpr int kMostText = 200;
constexpr int kGuard = 16;  // characters behind the host's text
constexpr char kUnwritten = '#';
// Engine calls without the check. The adiabatic flash by the enthalpy search has the most: up to fifty feeds of fewer
// components, ninety temperatures each, a hundred passes of two calls each, then the nested search.
constexpr int kMostAlone = 950000;
constexpr R4 kBalance = 1.0E-5F;  // of the total feed

// Mixtures that a plant has, so that most calls need no other list; numbers of the catalogue.
const std::vector<std::vector<int>>& usual_lists() {
  static const std::vector<std::vector<int>> lists = {
      {20, 21, 22, 24, 23, 26, 25, 28, 15, 4},  // natural gas
      {20, 116},                                // methane and decane
      {4, 116},                                 // carbon dioxide and decane
      {20, 11},                                 // methane and hydrogen sulphide
      {20, 22},
      {20},
      {4},
      {20, 4, 8},          // with water
      {20, 21, 22, 8, 9},  // and methanol
      {17, 20, 4, 15},     // hydrogen
      {28, 33, 42, 116, 277, 278},
      {20, 20, 22},  // twice the same
      {11, 4, 20, 21, 22, 23},
      {15, 20},
  };
  return lists;
}

std::vector<int> bank;

// Bytes as they come; zeros behind the end.
class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  [[nodiscard]] bool empty() const { return at_ >= size_; }
  int byte() { return at_ < size_ ? data_[at_++] : 0; }
  int word() {
    const int high = byte();
    return 256 * high + byte();
  }
  // 0 to 1, both ends included.
  R8 share() { return static_cast<R8>(word()) / 65535.0; }
  template <std::size_t N>
  R4 one_of(const std::array<R4, N>& values) {
    return values[static_cast<std::size_t>(byte()) % N];
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t at_ = 0;
};

// Everything that a host hands over.
struct Host {
  I4 NC;
  R4 T, P, FRV;
  char UNIT;
  I4 IFLASH;
  ScalTable SCAL;
  PropertyTable TPROPS;
  I4 length;  // of the text
  int level;
};

// What one call came to.
struct Answer {
  Host host;
  std::string text;  // as far as the length reached
  int engine_calls;
};

// Values that no plant has. A byte up to ORDINARY out of 256 takes an ordinary value.
constexpr std::array<R4, 16> kOdd = {0.0F,  -0.0F, 1.0F,    -1.0F,  kNan,   kInf,   -kInf,   kMax,
                                     -kMax, kTiny, 1.0E-6F, 1.0E7F, 1.0E9F, 1.1E9F, 2.1E-8F, 1.0E-30F};

void choose_list(Bytes& in, Host& host, std::vector<R4>& numbers) {
  const int kind = in.byte();
  if (kind < 96 && !numbers.empty()) return;
  numbers.clear();
  if (kind < 208) {
    const auto& lists = usual_lists();
    for (const int number : lists[static_cast<std::size_t>(in.byte()) % lists.size()])
      numbers.push_back(static_cast<R4>(number));
  } else {
    const int n = kind < 240 ? 1 + in.byte() % 15 : 1 + in.byte() % kMaxComponents;
    for (int i = 0; i < n; ++i)
      numbers.push_back(static_cast<R4>(bank[static_cast<std::size_t>(in.word()) % bank.size()]));
  }
  if (kind < 248) return;
  constexpr std::array<R4, 12> kBad = {0.0F,   1.0F, 2.0F, 1246.0F, 1247.0F, -3.0F,
                                       20.75F, kNan, kInf, kMax,    -kInf,   3.0E9F};
  numbers[static_cast<std::size_t>(in.byte()) % numbers.size()] = in.one_of(kBad);
  if (kind == 255) host.NC = in.byte() - 100;
}

// Feeds over seven powers of ten, traces of 1e-6 and none at all among them, times a size.
void choose_feed(Bytes& in, Host& host) {
  const int size = in.byte();
  R4 factor = 1.0F;
  if (size >= 192) factor = std::pow(10.0F, static_cast<R4>(size - 224) * 0.3F);
  for (int i = 1; i <= std::min(host.NC, kMaxComponents); ++i) {
    const int kind = in.byte();
    R4 feed = 0.0F;
    if (kind < 8)
      feed = 0.0F;
    else if (kind < 16)
      feed = 1.0E-6F;
    else if (kind < 254)
      feed = std::pow(10.0F, static_cast<R4>(kind - 253) / 60.0F);
    else if (in.byte() < 8)
      feed = in.one_of(kOdd);
    else
      feed = 1.0F;
    host.SCAL(i, 2) = feed * factor;
  }
}

void choose_state(Bytes& in, Host& host, const Host& before) {
  const int kind = in.byte();
  host.T = static_cast<R4>(-173.0 + 500.0 * in.share());
  host.P = static_cast<R4>(std::exp(std::log(1.0E-2) + std::log(9.0E4) * in.share()));
  host.FRV = static_cast<R4>(in.share());
  if (kind < 32) {
    // Next to the state of the call before, as a host that follows a line.
    host.T = before.T + static_cast<R4>(in.byte() - 128) * 0.02F;
    host.P = before.P * (1.0F + static_cast<R4>(in.byte() - 128) * 1.0E-3F);
  } else if (kind >= 248) {
    constexpr std::array<R4, 8> kHot = {-273.15F, 1500.0F, 1500.1F, -273.0F, -272.0F, 0.0F, 1300.0F, -250.0F};
    const int which = in.byte();
    if ((which & 1) != 0) host.T = (which & 8) != 0 ? in.one_of(kOdd) : in.one_of(kHot);
    constexpr std::array<R4, 8> kHigh = {900.0F, 900.1F, 0.0F, 1.0E-3F, 1.0E-6F, 1.0E-20F, 899.0F, 500.0F};
    if ((which & 2) != 0) host.P = (which & 16) != 0 ? in.one_of(kOdd) : in.one_of(kHigh);
    if ((which & 4) != 0) host.FRV = in.one_of(kOdd);
  }
  if ((kind & 3) == 1) host.FRV = 0.0F;
  if ((kind & 3) == 2) host.FRV = 1.0F;
}

R4 total_feed(const Host& host) {
  R4 sum = 0.0F;
  for (int i = 1; i <= std::min(host.NC, kMaxComponents); ++i) sum += host.SCAL(i, 2);
  return sum;
}

// A target that some state has: that of the call before, or any enthalpy of a fluid.
void choose_target(Bytes& in, Host& host, const Host& before) {
  if (host.NC < 0 || host.NC > kMaxComponents) return;
  const int kind = in.byte();
  R4 target = total_feed(host) * static_cast<R4>(-60.0 + 120.0 * in.share());
  if (kind < 96 && before.NC == host.NC) target = before.SCAL(host.NC + 2, 2);
  if (kind >= 250) target = in.one_of(kOdd);
  host.SCAL(host.NC + 2, 2) = target;
}

void choose_call(Bytes& in, Host& host) {
  constexpr std::array<I4, 24> kCodes = {1, 2, 3,  4,  5, 6,  7,  8, 9,  10,         5,           5,
                                         8, 6, 33, 33, 0, 11, -1, 7, 98, 2000000000, -2000000000, 5};
  const int code = in.byte();
  host.IFLASH = code < 240 ? 1 + code % 10 : kCodes[static_cast<std::size_t>(code) % kCodes.size()];
  constexpr std::array<char, 8> kUnits = {'M', 'W', 'M', 'W', 'm', 'w', 'x', '\0'};
  host.UNIT = kUnits[static_cast<std::size_t>(in.byte()) % kUnits.size()];
  const int length = in.byte();
  host.length = length < 224 ? kMostText : (length * 37) % (kMostText + 1);
  const int level = in.byte();
  host.level = level < 32 ? 0 : 1;
}

Host next_call(Bytes& in, const Host& before, std::vector<R4>& numbers) {
  Host host{};
  host.NC = -1;
  choose_call(in, host);
  I4 asked = 0;
  choose_list(in, host, numbers);
  if (host.NC != -1) asked = host.NC;
  host.NC = asked != 0 ? asked : static_cast<I4>(numbers.size());
  for (std::size_t i = 0; i < numbers.size() && i < kMaxComponents; ++i)
    host.SCAL(static_cast<int>(i) + 1, 1) = numbers[i];
  choose_feed(in, host);
  choose_state(in, host, before);
  choose_target(in, host, before);
  return host;
}

Answer called(const Host& host) {
  Answer a{host, {}, 0};
  const I4 level = host.level;
  SETTALIXVERIFY(&level);
  std::array<char, kMostText + kGuard> STR{};
  STR.fill(kUnwritten);
  const I4 before = fl.NENGINE;
  TALIX(&a.host.NC, &a.host.T, &a.host.P, &a.host.FRV, &a.host.UNIT, 1, &a.host.IFLASH, &a.host.SCAL,
        &a.host.TPROPS, STR.data(), host.length);
  a.engine_calls = fl.NENGINE - before;
  a.text.assign(STR.data(), STR.size());
  return a;
}

template <class Value>
bool same_bits(const Value& a, const Value& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

bool keeps_target(I4 IFLASH) {
  return IFLASH == flash_type::adiabatic || IFLASH == flash_type::adiabatic_nested;
}

char folded(char UNIT) { return UNIT == 'w' ? 'W' : UNIT == 'm' ? 'M' : UNIT; }

// Texts of a call that has written its tables all the same.
bool tables_are_written(const std::string& text) {
  return text.find("Unable to find accurate specific heat") != std::string::npos ||
         text.find("Adiabatic flash has changed enthalpy") != std::string::npos;
}

bool fails(const std::string& text) {
  Message STR{};
  STR = std::string_view{text};
  return is_hard_failure(STR);
}

// A failed call leaves everything but the folded unit and the cleared target.
std::string check_untouched(const Host& before, const Host& after) {
  if (after.UNIT != folded(before.UNIT)) return "a failed call changed UNIT";
  if (!same_bits(before.T, after.T) || !same_bits(before.P, after.P) || !same_bits(before.FRV, after.FRV))
    return "a failed call changed T, P or FRV";
  if (!same_bits(before.TPROPS, after.TPROPS)) return "a failed call changed TPROPS";
  ScalTable expected = before.SCAL;
  const bool reached = before.NC >= 0 && before.NC <= kMaxComponents;
  if (reached && !keeps_target(before.IFLASH)) {
    ScalTable cleared = expected;
    cleared(before.NC + 2, 2) = 0.0F;
    if (same_bits(cleared, after.SCAL)) return "";
  }
  return same_bits(expected, after.SCAL) ? "" : "a failed call changed SCAL";
}

std::string check_finite(const Host& h) {
  if (!std::isfinite(h.T) || !std::isfinite(h.P) || !std::isfinite(h.FRV)) return "T, P or FRV is not finite";
  for (int column = 2; column <= kScalColumns; ++column)
    for (int row = 1; row <= h.NC + (column <= 5 ? 2 : 1); ++row)
      if (!std::isfinite(h.SCAL(row, column))) return "an entry of SCAL is not finite";
  for (int column = 1; column <= kPropertyColumns; ++column)
    for (int row = 1; row <= kPropertyRows; ++row)
      if (!std::isfinite(h.TPROPS(row, column))) return "an entry of TPROPS is not finite";
  return "";
}

bool runs_flash(I4 IFLASH) {
  return IFLASH >= flash_type::bubble_pressure && IFLASH <= flash_type::isothermal_fast;
}

std::string check_ranges(const Host& before, const Host& after) {
  if (!(after.T > -kFlashZeroCelsius) || !(after.T <= 1500.0F)) return "the temperature is out of range";
  if (!(after.P > 0.0F) || !(after.P <= kMaxPressure)) return "the pressure is out of range";
  if (!(after.FRV >= 0.0F) || !(after.FRV <= 1.0F)) return "the vapour fraction is out of range";
  const bool finds_T = before.IFLASH == 2 || before.IFLASH == 4 || (before.IFLASH >= 7 && before.IFLASH <= 9);
  const bool finds_P = before.IFLASH == 1 || before.IFLASH == 3 || before.IFLASH == 6;
  if (!finds_T && std::fabs(after.T - before.T) > 2.0E-4F) return "the given temperature has changed";
  if (!finds_P && after.P != before.P) return "the given pressure has changed";
  return "";
}

// Balances on the basis of the results; not for a third unit, whose feed is on another one.
std::string check_balance(const Host& before, const Host& after) {
  const int NC = after.NC;
  const R4 total = total_feed(before);
  const R4 slack = kBalance * total;
  for (int i = 1; i <= NC; ++i) {
    R4 sum = 0.0F;
    for (int column = 3; column <= 5; ++column) {
      if (after.SCAL(i, column) < 0.0F) return "a flow is negative";
      sum += after.SCAL(i, column);
    }
    const bool closed = after.UNIT != 'M' && after.UNIT != 'W';
    if (!closed && !(std::fabs(sum - before.SCAL(i, 2)) <= slack))
      return "the flows of a component miss its feed";
  }
  for (int column = 6; column <= 8; ++column) {
    R4 sum = 0.0F;
    for (int i = 1; i <= NC; ++i) sum += after.SCAL(i, column);
    if (sum != 0.0F && !(std::fabs(sum - 1.0F) <= kBalance)) return "the fractions of a phase miss 1";
    if (after.SCAL(NC + 1, column - 3) > 1.0E-4F * total && sum == 0.0F) return "a phase has no composition";
  }
  return "";
}

// Codes 1 to 7 give back the vapour fraction that was asked for.
std::string check_fraction(const Host& before, const Host& after) {
  R4 asked = before.FRV;
  if (before.IFLASH == flash_type::bubble_pressure || before.IFLASH == flash_type::bubble_temperature)
    asked = 0.0F;
  if (before.IFLASH == flash_type::dew_pressure || before.IFLASH == flash_type::dew_temperature) asked = 1.0F;
  if (before.IFLASH == flash_type::isothermal || before.IFLASH > flash_type::temperature_at_fraction)
    return "";
  return std::fabs(after.FRV - asked) <= 1.0E-4F ? ""
                                                 : "the vapour fraction is not the one that was asked for";
}

std::string check_result(const Host& before, const Answer& a) {
  std::string broken = check_finite(a.host);
  if (broken.empty() && runs_flash(before.IFLASH)) broken = check_ranges(before, a.host);
  if (broken.empty() && runs_flash(before.IFLASH)) broken = check_balance(before, a.host);
  if (broken.empty() && runs_flash(before.IFLASH)) broken = check_fraction(before, a.host);
  return broken;
}

// The text without trailing blanks and without digits, to count texts of one kind together.
std::string kind_of(std::string text) {
  text.erase(text.find_last_not_of(' ') + 1);
  for (char& c : text)
    if (c >= '0' && c <= '9') c = '9';
  std::string kind;
  for (const char c : text)
    if (c != '9' || kind.empty() || kind.back() != '9') kind += c;
  return kind;
}

// The same call with a text of full length, which tells what the short one could not; the results must be the same
// bit for bit, although a call came between.
std::string check_again(const Host& host, Answer& a) {
  Host longer = host;
  longer.length = kMostText;
  Answer full = called(longer);
  const auto used = static_cast<std::size_t>(host.length);
  if (full.text.substr(0, used) != a.text.substr(0, used))
    return "a shorter text is no part of the longer one";
  full.host.length = a.host.length;
  const bool same = same_bits(full.host.T, a.host.T) && same_bits(full.host.P, a.host.P) &&
                    same_bits(full.host.FRV, a.host.FRV) && same_bits(full.host.SCAL, a.host.SCAL) &&
                    same_bits(full.host.TPROPS, a.host.TPROPS);
  if (runs_flash(host.IFLASH) && !same) return "the same call gives another result";
  a = full;
  return "";
}

// Engine calls of a whole call, the results included.
int most_engine_calls(const Host& host) {
  if (host.level != 1) return kMostAlone;
  const bool adiabatic = host.IFLASH == flash_type::adiabatic || host.IFLASH == flash_type::adiabatic_nested;
  return adiabatic ? kMostAdiabaticEngineCalls : kMostEngineCalls;
}

std::string check_call(const Host& host, Answer& a, Tally& tally) {
  for (std::size_t i = static_cast<std::size_t>(host.length); i < a.text.size(); ++i)
    if (a.text[i] != kUnwritten) return "the text runs over its end";
  if (host.length < kMostText) {
    const std::string broken = check_again(host, a);
    if (!broken.empty()) return broken;
  }
  a.text.resize(kMostText);
  int& most = host.level == 1 ? tally.most_engine_calls : tally.most_engine_calls_alone;
  most = std::max(most, a.engine_calls);
  if (a.engine_calls > most_engine_calls(host)) return "too many engine calls";
  const std::string kind = kind_of(a.text);
  if (kind.empty())
    ++tally.results;
  else
    ++tally.texts[(host.level == 1 ? "1 " : "0 ") + kind];
  if (tables_are_written(a.text)) return "";
  if (fails(a.text)) return check_untouched(host, a.host);
  return host.level == 1 ? check_result(host, a) : "";
}

std::string line_of(const Host& h) {
  char text[160];
  std::snprintf(text, sizeof text,
                "code %d level %d T %.9g P %.9g FRV %.9g unit %c length %d NC %d target %.9g", h.IFLASH,
                h.level, static_cast<R8>(h.T), static_cast<R8>(h.P), static_cast<R8>(h.FRV),
                h.UNIT != '\0' ? h.UNIT : '0', h.length, h.NC,
                h.NC >= 0 && h.NC <= kMaxComponents ? static_cast<R8>(h.SCAL(h.NC + 2, 2)) : 0.0);
  std::string line = text;
  for (int i = 1; i <= std::min(h.NC, kMaxComponents); ++i) {
    std::snprintf(text, sizeof text, " %g:%.9g", static_cast<R8>(h.SCAL(i, 1)),
                  static_cast<R8>(h.SCAL(i, 2)));
    line += text;
  }
  return line;
}

constexpr int kMostCalls = 6;  // of one input

// Calls VISIT(host) for each call; it gives back what the next call sees as the one before, and whether to go on.
template <class Visit>
void each_call(const std::uint8_t* data, std::size_t size, Visit visit) {
  Bytes in(data, size);
  Host before{};
  before.NC = -1;
  before.T = 25.0F;
  before.P = 10.0F;
  std::vector<R4> numbers;
  for (int k = 0; k < kMostCalls && !in.empty(); ++k)
    if (!visit(next_call(in, before, numbers), before)) return;
}

}  // namespace

bool open_bank(const std::string& install) {
  const I4 length = static_cast<I4>(install.size());
  SETTALIXINSTALL(install.c_str(), length, &length);
  const I4 usage = 0, hook = 0, no_unit = -1;
  SETTALIXUSAGE(&usage, &hook, &no_unit);
  std::vector<R4> tc(kLastComponentNumber), spare(kLastComponentNumber);
  I4 COUNT = 0;
  GETTALIXPROPS(&COUNT, tc.data(), spare.data(), spare.data(), spare.data(), spare.data(), spare.data(),
                nullptr, 28);
  bank.clear();
  for (int number = kFirstComponentNumber; number <= COUNT; ++number)
    if (tc[static_cast<std::size_t>(number - 1)] > 0.0F) bank.push_back(number);
  return !bank.empty();
}

std::string run_bytes(const std::uint8_t* data, std::size_t size, Tally& tally) {
  std::string broken;
  each_call(data, size, [&](const Host& host, Host& before) {
    Answer a = called(host);
    ++tally.calls;
    broken = check_call(host, a, tally);
    if (!broken.empty()) broken += " | " + line_of(host) + " |" + kind_of(a.text);
    before = a.host;
    return broken.empty();
  });
  return broken;
}

std::string described(const std::uint8_t* data, std::size_t size) {
  std::string text;
  each_call(data, size, [&](const Host& host, Host& before) {
    Answer a = called(host);
    text += line_of(host) + "\n";
    before = a.host;
    return true;
  });
  return text;
}

std::vector<std::uint8_t> random_bytes(std::uint32_t seed, std::int64_t index) {
  std::seed_seq seeds{seed, static_cast<std::uint32_t>(index), static_cast<std::uint32_t>(index >> 32)};
  std::mt19937 engine(seeds);
  std::vector<std::uint8_t> bytes(120 + engine() % 160);
  for (std::uint8_t& b : bytes) b = static_cast<std::uint8_t>(engine() >> 24);
  return bytes;
}

}  // namespace talix::fuzz
