#include "liquid/unifac_record.h"

namespace talix {

constinit UnifacRecord unifac{};
constinit UnifillSettings unifill{};

void reset_unifac_record() {
  unifac.all_grouped = false;
  unifac.NSUB = 0;
  unifac.NMAIN = 0;
  unifac.SUBVEC.fill(0);
  unifac.MANVEC.fill(0);
  unifac.SUBGRP.fill(0.0F);
  unifac.CSBGRP.fill(text<8>(""));
  unifac.IMNGRP.fill(0);
  unifac.RSBGRP.fill(0.0F);
  unifac.QSBGRP.fill(0.0F);
  unifac.MWSGRP.fill(0.0F);
  unifac.AMNINT.fill(0.0F);
  unifac.RTOT.fill(0.0);
  unifac.QTOT.fill(0.0);
}

void reset_unifill_settings() {
  unifill.trace_unit = 0;
  unifill.trace = false;
  unifill.Tlow = widen(273.15F);
  unifill.Tupp = widen(373.15F);
  unifill.Alpha = widen(0.3F);
  unifill.on = true;
}

}  // namespace talix
