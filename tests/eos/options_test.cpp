// Expansion of the caller's flags: SESAO0.
#include "eos/ses_options.h"

#include <gtest/gtest.h>

#include <set>

namespace talix::test {
namespace {

using Entries = std::set<int>;

template <int N>
Entries raised(const Vec<bool, N>& table) {
  Entries entries;
  for (int k = 1; k <= N; ++k)
    if (table(k)) entries.insert(k);
  return entries;
}

Flags3 only(int k) {
  Flags3 flags{};
  if (k > 0) flags(k) = true;
  return flags;
}

OptionTables fugacity(int k) {
  OptionTables o{};
  SESAO0(true, only(k), false, only(1), false, only(1), o);
  return o;
}

OptionTables volume(int k) {
  OptionTables o{};
  SESAO0(false, only(1), true, only(k), false, only(1), o);
  return o;
}

OptionTables thermal_request(int k) {
  OptionTables o{};
  SESAO0(false, only(1), false, only(1), true, only(k), o);
  return o;
}

TEST(Options, NothingAskedLeavesPressureAndResidualFunction) {
  OptionTables o{};
  o.OPTMOD.fill(true);
  SESAO0(false, only(1), false, only(1), false, only(1), o);
  EXPECT_EQ(raised(o.OPTMOD), (Entries{1, 11}));
  EXPECT_EQ(raised(o.OPTMR), Entries{1});
  EXPECT_EQ(raised(o.OPTLM), Entries{1});
  EXPECT_TRUE(raised(o.OPTCOM).empty());
  EXPECT_TRUE(raised(o.OPTFC).empty());
  EXPECT_TRUE(raised(o.OPTDER).empty());
  EXPECT_TRUE(raised(o.OPTVOL).empty());
}

TEST(Options, Fugacity) {
  const OptionTables plain = fugacity(0);
  EXPECT_EQ(raised(plain.OPTMOD), (Entries{1, 11, 13}));
  EXPECT_EQ(raised(plain.OPTMR), (Entries{1, 2}));
  EXPECT_EQ(raised(plain.OPTLM), (Entries{1, 2}));
  EXPECT_TRUE(raised(plain.OPTCOM).empty());
  EXPECT_EQ(raised(plain.OPTFC), Entries{1});

  const OptionTables t = fugacity(1);
  EXPECT_EQ(raised(t.OPTMOD), (Entries{1, 2, 3, 4, 11, 13, 17, 20}));
  EXPECT_EQ(raised(t.OPTMR), (Entries{1, 2, 4, 6}));
  EXPECT_EQ(raised(t.OPTLM), (Entries{1, 2, 4, 6}));
  EXPECT_EQ(raised(t.OPTCOM), (Entries{1, 2, 6}));
  EXPECT_EQ(raised(t.OPTFC), (Entries{1, 2}));

  const OptionTables p = fugacity(2);
  EXPECT_EQ(raised(p.OPTMOD), (Entries{1, 2, 3, 11, 13}));
  EXPECT_EQ(raised(p.OPTMR), (Entries{1, 2}));
  EXPECT_EQ(raised(p.OPTCOM), Entries{1});
  EXPECT_EQ(raised(p.OPTFC), (Entries{1, 3}));

  const OptionTables n = fugacity(3);
  EXPECT_EQ(raised(n.OPTMOD), (Entries{1, 2, 3, 11, 13, 17}));
  EXPECT_EQ(raised(n.OPTMR), (Entries{1, 2, 3}));
  EXPECT_EQ(raised(n.OPTLM), (Entries{1, 2, 3}));
  EXPECT_EQ(raised(n.OPTCOM), Entries{1});
  EXPECT_EQ(raised(n.OPTFC), (Entries{1, 4}));
}

TEST(Options, Volume) {
  const OptionTables plain = volume(0);
  EXPECT_EQ(raised(plain.OPTMOD), (Entries{1, 11}));
  EXPECT_EQ(raised(plain.OPTMR), Entries{1});

  const OptionTables t = volume(1);
  EXPECT_EQ(raised(t.OPTMOD), (Entries{1, 2, 3, 4, 11}));
  EXPECT_EQ(raised(t.OPTMR), (Entries{1, 4}));
  EXPECT_EQ(raised(t.OPTLM), (Entries{1, 4}));
  EXPECT_EQ(raised(t.OPTCOM), Entries{2});
  EXPECT_EQ(raised(t.OPTVOL), Entries{1});

  const OptionTables p = volume(2);
  EXPECT_EQ(raised(p.OPTMOD), (Entries{1, 2, 11}));
  EXPECT_EQ(raised(p.OPTVOL), Entries{2});
  EXPECT_TRUE(raised(p.OPTCOM).empty());

  const OptionTables n = volume(3);
  EXPECT_EQ(raised(n.OPTMOD), (Entries{1, 2, 3, 11}));
  EXPECT_EQ(raised(n.OPTMR), (Entries{1, 2}));
  EXPECT_EQ(raised(n.OPTLM), (Entries{1, 2}));
  EXPECT_EQ(raised(n.OPTCOM), Entries{1});
  EXPECT_EQ(raised(n.OPTVOL), Entries{3});
}

TEST(Options, Thermal) {
  for (int k = 0; k <= 3; ++k) {
    const OptionTables o = thermal_request(k);
    EXPECT_EQ(raised(o.OPTMOD), (Entries{1, 2, 3, 4, 5, 8, 9, 11, 13, 14, 16, 17, 20}));
    EXPECT_EQ(raised(o.OPTMR), (Entries{1, 2, 4, 5, 6}));
    EXPECT_EQ(raised(o.OPTLM), (Entries{1, 2, 4, 5, 6}));
    EXPECT_EQ(raised(o.OPTCOM), (Entries{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(raised(o.OPTFC), (Entries{1, 2}));
    Entries der{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    if (k == 1) der.insert({11, 12});
    if (k == 3) der.insert({13, 14});
    EXPECT_EQ(raised(o.OPTDER), der);
  }
}

}  // namespace
}  // namespace talix::test
