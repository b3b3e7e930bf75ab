// What the tests of the overrides share: calls by section, and a walk over all keys of a section.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "database/overrides.h"
#include "engine/codes.h"
#include "engine/setup_record.h"

namespace talix::test {

struct KeyAnswer {
  I4 nfail = -1;
  I4 count = -1;
  KeyNames keys{};
  KeyValues values{};

  [[nodiscard]] std::vector<std::string> names() const {
    std::vector<std::string> list;
    for (int i = 1; i <= count; ++i) list.emplace_back(trimmed(keys(i)));
    return list;
  }
  [[nodiscard]] std::vector<R8> list() const {
    std::vector<R8> list;
    for (int i = 1; i <= count; ++i) list.push_back(values(i));
    return list;
  }
};

inline constexpr I4 kKeyWidth = 10;

inline KeyValues key_values(const std::vector<R8>& values) {
  KeyValues result{};
  for (std::size_t i = 0; i < values.size(); ++i) result(static_cast<int>(i) + 1) = values[i];
  return result;
}
inline KeyAnswer model_keys(I4 section, I4 act, const std::vector<R8>& values = {}) {
  KeyAnswer a;
  a.values = key_values(values);
  SURMD0(a.count, a.keys, kKeyWidth, a.values, act, section, a.nfail);
  return a;
}
inline KeyAnswer pair_keys(I4 i, I4 j, I4 section, I4 act, const std::vector<R8>& values = {}) {
  KeyAnswer a;
  a.values = key_values(values);
  SURBI0(a.count, a.keys, kKeyWidth, a.values, act, i, j, section, a.nfail);
  return a;
}
inline KeyAnswer component_keys(I4 i, I4 section, I4 act, const std::vector<R8>& values = {}) {
  KeyAnswer a;
  a.values = key_values(values);
  SURPC0(a.count, a.keys, kKeyWidth, a.values, act, i, section, a.nfail);
  return a;
}

// One section of one scope.
using Access = std::function<KeyAnswer(I4 act, const std::vector<R8>& values)>;
// Results that a section may change.
using Probe = std::function<std::vector<R8>()>;
// Another value for key K, counted from 0.
using Change = std::function<R8(std::size_t k, R8 value)>;

inline R8 shift(std::size_t, R8 value) { return 1.01 * value + 0.001; }
inline R8 one_more(std::size_t, R8 value) { return value + 1.0; }

// Changes one key after the other and takes it back: what was written is read back, a result follows unless the key
// is in WITHOUT_EFFECT, and with the old value every result is as it was, bit by bit. The calls that list or read
// change nothing.
inline void walk_keys(const Access& section, const Probe& probe, const Change& change = shift,
                      const std::vector<std::string>& without_effect = {}) {
  const I4 generation = setup.generation;
  const KeyAnswer start = section(action::information, {});
  ASSERT_EQ(start.nfail, status::ok);
  ASSERT_GT(start.count, 0);
  EXPECT_EQ(setup.generation, generation);
  const std::vector<R8> original = start.list();
  const std::vector<R8> results = probe();

  const KeyAnswer listed = section(0, std::vector<R8>(original.size(), 7.5));
  EXPECT_EQ(listed.nfail, status::ok);
  EXPECT_EQ(listed.names(), start.names());
  EXPECT_EQ(listed.list(), std::vector<R8>(original.size(), 7.5));
  EXPECT_EQ(section(action::information, {}).list(), original);

  for (std::size_t k = 0; k < original.size(); ++k) {
    const std::string name = start.names()[k];
    std::vector<R8> changed = original;
    changed[k] = change(k, original[k]);
    ASSERT_NE(changed[k], original[k]) << name;
    const I4 before = setup.generation;
    const KeyAnswer written = section(action::input, changed);
    EXPECT_EQ(written.nfail, status::ok) << name;
    EXPECT_EQ(written.names(), start.names());
    EXPECT_GT(setup.generation, before) << name;
    EXPECT_EQ(section(action::information, {}).list(), changed) << name;
    const bool idle = std::find(without_effect.begin(), without_effect.end(), name) != without_effect.end();
    if (idle)
      EXPECT_EQ(probe(), results) << name;
    else
      EXPECT_NE(probe(), results) << name;
    section(action::input, original);
    EXPECT_EQ(section(action::information, {}).list(), original) << name;
    EXPECT_EQ(probe(), results) << name;
  }
}

inline void expect_refused(const KeyAnswer& answer) {
  EXPECT_EQ(answer.nfail, status::not_available);
  EXPECT_EQ(answer.count, 0);
}

}  // namespace talix::test
