// Pair parameters of the current list and the sparse lists that the mixing rules walk.
#pragma once

#include "base/array.h"
#include "base/logical.h"
#include "base/real.h"

namespace talix {

// Both orders of every pair of 50 components.
inline constexpr int kMaxOrderedPairs = kMaxComponents * (kMaxComponents - 1);

// What the quadratic rule reads.
struct InteractionTables {
  using Table = Mat<R8, kMaxComponents, kMaxComponents>;

  Table TETA0;                                     // symmetric interaction parameter [-]
  Table TETA0T;                                    // its temperature term [1/K]
  Table TETA1;                                     // asymmetry term, antisymmetric [-]
  Table TETA1T;                                    // its temperature term [1/K]
  I4 NT0, NT1;                                     // ordered pairs in the two lists
  Vec<I4, kMaxOrderedPairs> IT0, JT0;              // pairs with TETA0 or TETA0T, both orders
  Vec<I4, kMaxOrderedPairs> IT1, JT1;              // pairs with TETA1 or TETA1T, both orders
  Mat<I4, kMaxComponents, kMaxComponents> IDELTA;  // 1 when both belong to one family
};

struct PairRecord : InteractionTables {
  Table ALFA;                 // NRTL non-randomness
  Table TAUT0, TAUT1, TAUT2;  // NRTL terms [-], [K], [K2]
  // CPA pair parameters, symmetric: interaction [-] and its temperature term [1/K]; cross association volume [-],
  // energy [J/mol] and logarithmic temperature term [-].
  Table BCPA0, BCPA0T, BCPA1, BCPA1T, BCP1TT;
  Table BICWS;                   // binary parameter of the A-excess rule, symmetric
  Table HEN1, HEN2, HEN3, HEN4;  // Henry tables
  I4 NPAIR;                      // components of the pair routines
  L4 LTAUX;                      // status of the NRTL entry of the last pair was "X", or it had no NRTL data
  I4 NF;                         // families of the list
  Vec<I4, kMaxComponents> NFAM;  // family number of each component, 1 to NF
};

extern constinit PairRecord pairs;

void reset_pair_record();

}  // namespace talix
