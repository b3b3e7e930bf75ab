#include "characterisation/fraction_record.h"

namespace talix {

constinit FractionRecord fractions{};

void reset_fraction_record() {
  fractions.FSPGR.fill(0.0);
  fractions.FTB.fill(0.0);
  fractions.FPB.fill(0.0);
  fractions.FTDENS.fill(0.0);
  fractions.FDENS.fill(0.0);
  fractions.FHC.fill(0.0);
  fractions.FAMOLW.fill(0.0);
  fractions.FG.fill(0.0);
  fractions.FT.fill(0.0);
  fractions.FP.fill(0.0);
  fractions.FX.fill(0.0);
}

}  // namespace talix
