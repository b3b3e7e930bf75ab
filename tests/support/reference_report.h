// What a test of the suite expects of a campaign against the reference flash.
#pragma once

#include <gtest/gtest.h>

#include <ostream>

#include "support/reference_campaign.h"

namespace talix::test::reference {

inline void PrintTo(Verdict v, std::ostream* out) { *out << name_of(v); }

// Counts the answers at level 1 and reports each wrong one as a failure with both opinions.
class Expectation : public Receiver {
 public:
  void take(const Comparison& c) override {
    if (c.level == 0) return;
    const Verdict v = c.outcome.verdict;
    if (v == Verdict::no_answer || v == Verdict::metastable || v == Verdict::undecided) return;
    ++asked;
    near += v == Verdict::near_boundary;
    unanswered += v == Verdict::unanswered;
    EXPECT_FALSE(is_wrong(v)) << c.state.kind << ", code " << c.code << " at " << c.T << " K, " << c.P
                              << " bar, fraction " << c.fraction << ": " << name_of(v) << "\n"
                              << c.outcome.detail;
  }
  int asked = 0;
  int near = 0;        // another phase count next to a boundary
  int unanswered = 0;  // a text where the reference has an answer
};

inline constexpr std::uint32_t kSuiteSeed = 20261121;

// A mixture by numbers and amounts.
inline Case case_of(std::vector<int> numbers, std::vector<R4> feed) {
  Case c;
  c.numbers = std::move(numbers);
  c.feed = std::move(feed);
  return c;
}

// The verdict on code 5 of a loaded mixture at a state, at level 1.
inline Outcome isothermal(const Case& c, R8 T, R8 P, I4 code = flash_type::isothermal) {
  const Mixture m = mixture_of(c.feed);
  verify(1);
  return judge_isothermal(m, ask(c, code, T, P, 1.0),
                          flash(m, kelvin(celsius(T)), static_cast<R8>(static_cast<R4>(P))));
}

}  // namespace talix::test::reference
