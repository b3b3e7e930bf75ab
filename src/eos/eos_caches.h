// What the temperature caches of the cubic remember, and the key under which it is valid.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "database/pair_record.h"
#include "eos/cubic_record.h"
#include "eos/ses_dispatcher.h"

namespace talix {

// Everything that the pure-component tables depend on.
struct PureKey {
  R8 T;                      // temperature [K]
  I4 generation;             // 1 + data-generation counter; 0 in a key that fits nothing
  I4 IFCOM, ILCOM;           // range of components
  I4 MODEL;                  // model-table slot
  I4 MODPUR;                 // origin of the pure-component parameters
  CubicConstants constants;  // of the slot

  bool operator==(const PureKey&) const = default;
};

// Key of the current data and the current constants.
PureKey pure_key(const R8& T, const I4& MODEL, const I4& IFCOM, const I4& ILCOM);

// Keys of the pure-component tables, by derivative level, and of the data behind them.
struct PureCache {
  PureKey level[3];  // 0 values, 1 first, 2 second temperature derivatives
  I4 generation;     // data key: counter and range of the last full refresh
  I4 IFCOM, ILCOM;
};

// Non-zero pairs of the called range, ordered by first member, with their products at one temperature.
struct PairProducts {
  using Entry = Vec<R8, kMaxOrderedPairs>;
  using Member = Vec<I4, kMaxOrderedPairs>;
  I4 count;
  Member I, J;                      // first and second member
  Vec<I4, kMaxComponents + 1> row;  // entries of first member i: row(i) to row(i + 1) - 1
  Entry Q, QT, QTT;                 // product and its T d/dT, T^2 d2/dT2 [K/Pa]
};

// Pair work of the quadratic rule.
struct QuadraticCache {
  PureKey key;
  I4 rule;                   // tag of the rule, mixing::*
  bool first, second;        // covers the first, the second temperature derivatives
  CompVec ALP, ALPT, ALPTT;  // sqrt(a) [(K/Pa)^1/2] and its T d/dT, T^2 d2/dT2
  PairProducts quadratic;    // list 0
  PairProducts familywise;   // list 1
};

extern constinit PureCache pure_cache;
extern constinit QuadraticCache quadratic_cache;

// Forgets everything that is cached.
void reset_eos_caches();

}  // namespace talix
