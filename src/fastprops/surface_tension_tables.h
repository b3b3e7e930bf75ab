// Binary corrections of the parachor method, fitted to surface tensions of the pairs.
#pragma once

#include <array>
#include <string_view>

#include "base/array.h"
#include "base/real.h"
#include "base/text.h"

namespace talix {

// Codes with corrections of their own: carbon number, then P paraffin, N naphthene, A aromatic, O olefin.
inline constexpr int kSurfaceCodes = 23;
inline constexpr Vec<Text<4>, kSurfaceCodes> CICS{
    {text<4>("N2  "), text<4>("CO2 "), text<4>(" 1P "), text<4>(" 2P "), text<4>(" 3P "), text<4>(" 4P "),
     text<4>(" 5P "), text<4>(" 6P "), text<4>(" 7P "), text<4>(" 8P "), text<4>(" 9P "), text<4>("10P "),
     text<4>("11P "), text<4>("12P "), text<4>("14P "), text<4>("10C "), text<4>(" 6N "), text<4>(" 6A "),
     text<4>(" 7A "), text<4>(" 8A1"), text<4>("16P "), text<4>("  P "), text<4>("  O ")}};

// The position itself, after the check that the code stands in the table.
consteval I4 surface_code(std::string_view code) {
  for (I4 i = 1; i <= kSurfaceCodes; ++i)
    if (CICS(i).view() == code) return i;
  throw "no such code";
}

// The correction of a pair is ASURT + BSURT (T - 273.15), T in K.
struct SurfaceCorrection {
  R4 ASURT;  // [-]
  R4 BSURT;  // [1/K]
};
inline constexpr SurfaceCorrection kNoCorrection{1.0F, 0.0F};
inline constexpr SurfaceCorrection kUnknownParaffin{0.9645F, 0.00045933F};  // a paraffin outside the table
inline constexpr SurfaceCorrection kParaffinOlefin{0.9287F, 0.0013473F};
inline constexpr SurfaceCorrection kParaffins{0.9575F, 0.00053646F};  // two paraffins of the table

// What a code gives with partners that have no row of their own.
struct SurfaceDefault {
  I4 code;
  SurfaceCorrection correction;
};
// With a paraffin outside the table.
inline constexpr auto kWithUnknownParaffin = std::to_array<SurfaceDefault>({
    {surface_code("N2  "), {1.3716F, -0.0035396F}},
    {surface_code("CO2 "), {1.1642F, 0.0034845F}},
    {surface_code(" 1P "), {1.0605F, 0.00075351F}},
    {surface_code(" 2P "), {1.0514F, 0.0F}},
});
// As the lower of two codes of the table; a paraffin only with a paraffin.
inline constexpr auto kAsLower = std::to_array<SurfaceDefault>({
    {surface_code("N2  "), {1.3716F, -0.0035396F}},
    {surface_code("CO2 "), {0.9654F, 0.0022866F}},
    {surface_code(" 1P "), {1.0605F, 0.00075351F}},
    {surface_code(" 2P "), {1.0514F, 0.0F}},
});

struct SurfacePair {
  I4 lower, upper;
  SurfaceCorrection correction;
};
inline constexpr auto kSurfacePairs = std::to_array<SurfacePair>({
    {surface_code(" 1P "), surface_code(" 2P "), {1.0657F, 0.0010215F}},
    {surface_code(" 1P "), surface_code(" 3P "), {1.0657F, 0.0010215F}},
    {surface_code(" 1P "), surface_code(" 4P "), {1.1553F, -0.00019593F}},
    {surface_code(" 1P "), surface_code(" 5P "), {1.0596F, 0.00069499F}},
    {surface_code(" 1P "), surface_code(" 6P "), {0.98F, 0.00097342F}},
    {surface_code(" 1P "), surface_code(" 7P "), {1.0037F, 0.00097342F}},
    {surface_code(" 1P "), surface_code(" 8P "), {0.9986F, 0.0013026F}},
    {surface_code(" 1P "), surface_code(" 9P "), {0.9934F, 0.0016318F}},
    {surface_code(" 1P "), surface_code("10P "), {1.1001F, 0.00039529F}},
    {surface_code(" 1P "), surface_code("11P "), {1.1261F, 0.0F}},
    {surface_code(" 2P "), surface_code(" 3P "), {1.0596F, 0.0F}},
    {surface_code(" 2P "), surface_code(" 4P "), {1.0648F, 0.0F}},
    {surface_code(" 2P "), surface_code(" 5P "), {1.0699F, 0.0F}},
    {surface_code(" 2P "), surface_code(" 6P "), {1.0304F, 0.0F}},
    {surface_code(" 2P "), surface_code("11P "), {1.0455F, 0.0F}},
    {surface_code(" 3P "), surface_code(" 8P "), {0.9879F, 0.0F}},
    {surface_code(" 4P "), surface_code("10P "), {0.8722F, 0.00224F}},
    {surface_code(" 6P "), surface_code(" 8P "), {1.0029F, -0.00040871F}},
    {surface_code(" 8P "), surface_code("10P "), {0.9934F, 0.00023339F}},
    {surface_code(" 6P "), surface_code("14P "), {0.9717F, 0.00005676F}},
    {surface_code(" 6P "), surface_code("16P "), {0.9744F, 0.0F}},
    {surface_code(" 8P "), surface_code("14P "), {0.9877F, 0.000040751F}},
    {surface_code("10P "), surface_code("16P "), {0.9999F, 0.0F}},
    {surface_code("N2  "), surface_code(" 6P "), {1.2708F, -0.0035396F}},
    {surface_code("N2  "), surface_code(" 7P "), {1.3716F, -0.0035396F}},
    {surface_code("N2  "), surface_code(" 8P "), {1.4554F, -0.0035396F}},
    {surface_code("N2  "), surface_code(" 9P "), {1.4443F, -0.0035396F}},
    {surface_code("CO2 "), surface_code(" 4P "), {0.913F, 0.0022866F}},
    {surface_code("CO2 "), surface_code(" 6P "), {1.0731F, 0.0022866F}},
    {surface_code("CO2 "), surface_code("10P "), {0.9102F, 0.0022866F}},
    {surface_code("CO2 "), surface_code(" 6N "), {1.1062F, 0.0F}},
    {surface_code("CO2 "), surface_code(" 6A "), {0.962F, 0.0F}},
    {surface_code(" 3P "), surface_code(" 7A "), {0.888F, 0.0F}},
    {surface_code(" 6P "), surface_code(" 6N "), {1.0033F, 0.00012937F}},
    {surface_code(" 6P "), surface_code(" 6A "), {0.9903F, -0.000046363F}},
    {surface_code("12P "), surface_code(" 6A "), {0.987F, 0.00044127F}},
    {surface_code("10C "), surface_code(" 6N "), {1.0091F, 0.0F}},
    {surface_code(" 6N "), surface_code(" 6A "), {0.9951F, 0.0F}},
    {surface_code(" 6A "), surface_code(" 8A1"), {0.998F, 0.0F}},
});
static_assert(kSurfacePairs.size() == 39);
static_assert([] {
  for (const SurfacePair& row : kSurfacePairs)
    if (row.lower >= row.upper) return false;
  return true;
}());

}  // namespace talix
