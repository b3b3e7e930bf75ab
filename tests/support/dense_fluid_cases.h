// Mixtures for the tests of the corresponding-states transport method.
#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "support/dense_fluid_plain.h"

namespace talix::test {

struct DenseComponent {
  std::string_view name;
  R4 CMW, TC, PC, VC, W;  // [g/mol], [K], [atm], [L/mol], [-]
  R4 cp;                  // ideal-gas heat capacity near 300 K [J/(mol K)]
};

// Critical constants as in data/components.csv.
inline constexpr auto kDenseComponents = std::to_array<DenseComponent>({
    {"methane", 16.04246F, 190.564F, 45.39057F, 0.0986278F, 0.01142F, 35.7F},
    {"ethane", 30.06904F, 305.322F, 48.08488F, 0.145839F, 0.099F, 52.7F},
    {"propane", 44.09562F, 369.89F, 41.95608F, 0.2F, 0.1521F, 73.6F},
    {"n-butane", 58.1222F, 425.125F, 37.46361F, 0.254922F, 0.20081F, 98.6F},
    {"nitrogen", 28.0134F, 126.192F, 33.51394F, 0.0894142F, 0.0372F, 29.12F},
    {"carbon dioxide", 44.0095F, 304.1282F, 72.80829F, 0.0941185F, 0.22394F, 37.1F},
    {"hydrogen", 2.01588F, 33.145F, 12.79447F, 0.0644828F, -0.219F, 28.8F},
    {"water", 18.01528F, 647.096F, 217.7547F, 0.055948F, 0.344292F, 33.6F},
    {"methanol", 32.04186F, 512.5F, 79.84031F, 0.117371F, 0.564937F, 44.1F},
    {"argon", 39.948F, 150.687F, 47.99408F, 0.0745855F, -0.00219F, 20.786F},
    {"helium", 4.002602F, 5.1953F, 2.253403F, 0.0551572F, -0.38354F, 20.786F},
    {"hydrogen sulfide", 34.08088F, 373.1F, 88.82309F, 0.0981354F, 0.1005F, 34.2F},
    {"isobutane", 58.1222F, 407.817F, 35.81545F, 0.257748F, 0.183532F, 96.7F},
    {"n-pentane", 72.14878F, 469.7F, 33.23483F, 0.310986F, 0.251032F, 120.0F},
    {"n-hexane", 86.17536F, 507.82F, 30.04308F, 0.369549F, 0.300319F, 142.6F},
    {"n-heptane", 100.2019F, 540.13F, 27.00222F, 0.431905F, 0.349F, 165.2F},
    {"n-octane", 114.2285F, 568.74F, 24.51114F, 0.492368F, 0.397528F, 187.8F},
    {"n-decane", 142.2817F, 617.7F, 20.755F, 0.609756F, 0.4884F, 233.1F},
    {"benzene", 78.11184F, 562.02F, 48.30002F, 0.256279F, 0.210837F, 82.4F},
    {"carbon monoxide", 28.0101F, 132.86F, 34.4831F, 0.0921659F, 0.0497F, 29.14F},
    {"oxygen", 31.9988F, 154.581F, 49.77054F, 0.0733676F, 0.0222F, 29.4F},
    {"toluene", 92.13842F, 591.75F, 40.72045F, 0.315557F, 0.2657F, 104.0F},
    {"cyclohexane", 84.15948F, 553.6F, 40.29016F, 0.310174F, 0.20926F, 105.3F},
    {"ethylene", 28.05316F, 282.35F, 49.7587F, 0.130945F, 0.0866F, 42.9F},
});

const DenseComponent& dense_component(std::string_view name);

struct DenseShare {
  std::string_view name;
  R4 x;
};

// The mixture of the shares, at T and RHO; the fractions are taken as they are.
DenseCase dense_case(const std::vector<DenseShare>& shares, R4 T, R4 RHO, bool liquid = false);

// What the library makes of a case.
struct DenseAnswer {
  DenseFluidMixture mixture;
  R4 RHO0;
  I4 IERR;
  R4 viscosity;     // [micropoise]
  R4 conductivity;  // [mW/(m K)]
};
DenseAnswer dense_answer(const DenseCase& c);
// DCST alone.
R4 run_DCST(const DenseCase& c, I4& IERR);
R4 run_DCST(const DenseCase& c);

// Whether two reals have the same bits.
bool same_bits(R4 a, R4 b);
// Number of reals in which the library's answer differs from the plain form.
int differing_bits(const DenseCase& c);

}  // namespace talix::test
