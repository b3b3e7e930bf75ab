#include "solids/hydrate_record.h"

namespace talix {

constinit HydrateRecord hydrate{};

namespace {

// Lattice of the two hydrate structures, one line a cavity.
struct Cavity {
  R4 per_water;     // cavities per water molecule [-]
  R4 radius;        // [Angstrom]
  R4 coordination;  // [-]
};

constexpr Vec<Cavity, 4> kCavities{{
    {0.043478258F, 3.91F, 20.0F},   // structure I, small
    {0.130434752F, 4.33F, 24.0F},   // structure I, large
    {0.117647052F, 3.902F, 20.0F},  // structure II, small
    {0.058823526F, 4.683F, 28.0F},  // structure II, large
}};

// Water in the empty lattice against liquid water, one line a structure.
struct WaterReference {
  R4 DMIW0;  // [J/mol]
  R4 DHW0;   // [J/mol]
  R4 DVW;    // [cm3/mol]
  R4 DCPW0;  // [J/(mol K)]
  R4 B;      // [J/(mol K2)]
};

constexpr Vec<WaterReference, 2> kWaterReference{{
    {1287.0F, -5071.0F, 4.6F, -37.83F, 0.0F},  // structure I
    {1068.0F, -5238.0F, 5.0F, -37.83F, 0.0F},  // structure II
}};

}  // namespace

void set_hydrate_constants() {
  hydrate.COHCV.fill(0.0);
  for (int cavity = 1; cavity <= 4; ++cavity) {
    hydrate.COHCV(1, cavity) = widen(kCavities(cavity).per_water);
    hydrate.COHCV(2, cavity) = widen(kCavities(cavity).radius);
    hydrate.COHCV(3, cavity) = widen(kCavities(cavity).coordination);
  }
  for (int structure = 1; structure <= 2; ++structure) {
    hydrate.COHST(1, structure) = widen(kWaterReference(structure).DMIW0);
    hydrate.COHST(2, structure) = widen(kWaterReference(structure).DHW0);
    hydrate.COHST(3, structure) = widen(kWaterReference(structure).DVW);
    hydrate.COHST(4, structure) = widen(kWaterReference(structure).DCPW0);
    hydrate.COHST(5, structure) = widen(kWaterReference(structure).B);
  }
}

void reset_hydrate_record() { hydrate = HydrateRecord{}; }

}  // namespace talix
