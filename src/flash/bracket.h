// The temperature bracket that the safeguarded searches share.
#pragma once

#include "base/real.h"

namespace talix {

struct Bracket {
  R4 TLOW, THIGH, TMID;  // ends and trial [K]
  R4 FLOW, FHIGH, FMID;  // objective there
};

// Moves the end that has the sign of the trial to it; false when neither side holds a change of sign.
inline bool shrink(Bracket& s) {
  if (s.FLOW * s.FMID <= 0.0F) {
    s.THIGH = s.TMID;
    s.FHIGH = s.FMID;
    return true;
  }
  if (s.FMID * s.FHIGH <= 0.0F) {
    s.TLOW = s.TMID;
    s.FLOW = s.FMID;
    return true;
  }
  return false;
}

}  // namespace talix
