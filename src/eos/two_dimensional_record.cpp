#include "eos/two_dimensional_record.h"

namespace talix {

constinit TwoDimensionalTables planar{};
constinit InteractionTables planar_pairs{};

void reset_two_dimensional_tables() {
  planar.A2D.fill(0.0);
  planar.B2D.fill(0.0);
  planar.D1A2DT.fill(0.0);
  planar.D1B2DT.fill(0.0);
  planar.D2A2DT.fill(0.0);
  planar.D2B2DT.fill(0.0);
  planar.AOB.fill(-1.0);
  planar_pairs = InteractionTables{};
}

}  // namespace talix
