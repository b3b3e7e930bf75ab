// Pure-component tables of the two-dimensional form of the cubic.
#pragma once

#include "base/array.h"
#include "base/real.h"
#include "database/pair_record.h"

namespace talix {

struct TwoDimensionalTables {
  template <class T>
  using Each = Vec<T, kMaxComponents>;

  Each<R8> A2D, B2D;        // a and b of the two-dimensional form [K/Pa]
  Each<R8> D1A2DT, D1B2DT;  // T d/dT of these [K/Pa]
  Each<R8> D2A2DT, D2B2DT;  // T^2 d2/dT2 of these [K/Pa]
  Each<R8> AOB;             // switch and value of the form; -1 when empty
};

extern constinit TwoDimensionalTables planar;
extern constinit InteractionTables planar_pairs;  // copy of the pair data, made before each mixing

// Empties the tables: AOB to -1, all others to 0.
void reset_two_dimensional_tables();

}  // namespace talix
