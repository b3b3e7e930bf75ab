#include "support/reference_campaign.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "fastprops/flash_record.h"

namespace talix::test::reference {

namespace {

constexpr int kLevels = 2;
constexpr int kScanPoints = 64;
// Answers this near to the ends of a scan are not asked for.
constexpr R8 kRim = 1.001;

bool inside_limits(const Line& line, R8 at) {
  const Limits range = limits(line.axis);
  return at > range.low * kRim && at < range.high / kRim;
}

struct Question {
  I4 code;
  R8 fraction;
};

// Places where the reference has an answer to a question about saturation.
Numbers answers_of(const Line& line, const Scan& found, const Question& q) {
  Numbers at;
  const bool bubble = q.code == flash_type::bubble_pressure || q.code == flash_type::bubble_temperature;
  if (q.code <= flash_type::dew_temperature) {
    for (const Boundary& b : found.boundaries)
      if (b.bubble == bubble && !b.two_liquids && !b.inside.third() && inside_limits(line, b.at))
        at.push_back(b.at);
  } else {
    for (const R8 place : found.at_fraction)
      if (inside_limits(line, place)) at.push_back(place);
  }
  return at;
}

R8 distance(const Line& line, R8 a, R8 b) {
  return line.axis == Axis::pressure ? std::fabs(std::log(a / b)) : std::fabs(a - b);
}

bool is_nearest(const Line& line, R8 start, R8 answer, const Numbers& all) {
  return std::none_of(all.begin(), all.end(), [&](R8 other) {
    return distance(line, start, other) < 0.98 * distance(line, start, answer);
  });
}

void ask_along(const Case& c, const Line& line, const Scan& found, const Question& q, Receiver& receiver) {
  const Numbers all = answers_of(line, found, q);
  for (int level = 0; level < kLevels; ++level) {
    verify(level);
    const Reply reply = ask(c, q.code, c.T, c.P, q.fraction);
    Comparison r;
    r.state = c;
    r.code = q.code;
    r.level = level;
    r.T = c.T;
    r.P = c.P;
    r.fraction = q.fraction;
    r.outcome = judge_saturation(line, reply, q.code, q.fraction, !all.empty());
    for (const R8 at : all) r.outcome.detail += "   answer of the reference at " + std::to_string(at) + "\n";
    const bool pressure = line.axis == Axis::pressure;
    if (reply.answered) r.nearest = is_nearest(line, pressure ? c.P : c.T, pressure ? reply.P : reply.T, all);
    receiver.take(r);
  }
}

}  // namespace

int states_to_run(int usual) {
  const char* text = std::getenv("TALIX_STATES");
  const int asked = text != nullptr ? std::atoi(text) : 0;
  return asked > 0 ? asked : usual;
}

void compare_isothermal(std::uint32_t seed, int index, Receiver& receiver) {
  StateSource source(seed, index);
  Case c = source.draw();
  load_list(c);
  source.move_to_boundary(c);
  const Mixture m = mixture_of(c.feed);
  const R8 T = kelvin(celsius(c.T));
  const R8 P = static_cast<R8>(static_cast<R4>(c.P));
  const Answer truth = flash(m, T, P);
  for (const I4 code : {flash_type::isothermal, flash_type::isothermal_fast}) {
    for (int level = 0; level < kLevels; ++level) {
      verify(level);
      Comparison r;
      r.state = c;
      r.code = code;
      r.level = level;
      r.T = T;
      r.P = P;
      r.fraction = 1.0;
      r.phases = truth.phases;
      r.outcome = judge_isothermal(m, ask(c, code, c.T, c.P, 1.0), truth);
      receiver.take(r);
    }
  }
}

void compare_saturation(std::uint32_t seed, int index, Receiver& receiver) {
  StateSource source(seed, index);
  const Case c = source.draw();
  load_list(c);
  compare_saturation_of(c, source.uniform(0.02, 0.98), receiver);
}

void compare_saturation_of(Case c, R8 asked, Receiver& receiver) {
  c.T = kelvin(celsius(c.T));
  c.P = static_cast<R8>(static_cast<R4>(c.P));
  const R8 fraction = static_cast<R8>(static_cast<R4>(asked));
  const Mixture m = mixture_of(c.feed);
  const Line pressures{m, Axis::pressure, c.T};
  const Scan along_pressure = scan(pressures, fraction, kScanPoints);
  for (const Question& q :
       {Question{flash_type::bubble_pressure, 0.0}, Question{flash_type::dew_pressure, 1.0},
        Question{flash_type::pressure_at_fraction, fraction}})
    ask_along(c, pressures, along_pressure, q, receiver);
  const Line temperatures{m, Axis::temperature, c.P};
  const Scan along_temperature = scan(temperatures, fraction, kScanPoints);
  for (const Question& q :
       {Question{flash_type::bubble_temperature, 0.0}, Question{flash_type::dew_temperature, 1.0},
        Question{flash_type::temperature_at_fraction, fraction}})
    ask_along(c, temperatures, along_temperature, q, receiver);
}

void compare_enthalpy(std::uint32_t seed, int index, Receiver& receiver) {
  StateSource source(seed, index);
  const Case c = source.draw();
  load_list(c);
  compare_enthalpy_of(c, std::clamp(c.T + source.uniform(-60.0, 60.0), 150.0, 600.0), receiver);
}

void compare_enthalpy_of(Case c, R8 start, Receiver& receiver) {
  c.P = static_cast<R8>(static_cast<R4>(c.P));
  const Mixture m = mixture_of(c.feed);
  R8 total = 0.0;
  for (const R4 f : c.feed) total += static_cast<R8>(f);
  R8 h = 0.0;
  Answer truth;
  if (!total_enthalpy(m, c.T, c.P, h, truth) || truth.third()) return;
  // What the host's 32-bit target asks for.
  h = static_cast<R8>(static_cast<R4>(h * total / 1000.0)) * 1000.0 / total;
  for (const I4 code : {flash_type::adiabatic, flash_type::adiabatic_nested}) {
    for (int level = 0; level < kLevels; ++level) {
      verify(level);
      Comparison r;
      r.state = c;
      r.code = code;
      r.level = level;
      r.T = c.T;
      r.P = c.P;
      r.target = h * total;
      const Reply reply = ask(c, code, start, c.P, 0.5, h * total);
      r.outcome = judge_enthalpy(m, reply, h, {c.T, truth.vapour_share, false});
      receiver.take(r);
    }
  }
}

}  // namespace talix::test::reference
