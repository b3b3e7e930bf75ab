// What the component file holds: names and constants, correlations, element counts.
#pragma once

#include "base/real.h"

namespace talix {

void GETTALIXPROPS(I4* COUNT, R4* CRITT, R4* CRITP, R4* MOLWT, R4* APBPT, R4* FRZPT, R4* HEATC, char* PNAME,
                   I4 PNAME_LENGTH);
void GETTALIXPROPSID(const I4* ID, R4* CRITT, R4* CRITP, R4* MOLWT, R4* APBPT, R4* FRZPT, R4* HEATC,
                     char* PNAME, I4 PNAME_LENGTH, I4* STATUS);
void GETTALIXAPPROPS(I4* COUNT, R4* CPV, R4* HVAP, R4* DLIQ, R4* WAG);
void GETTALIXELEMENTS(I4* COUNT, R4* CARBON, R4* HYDROGEN, R4* NITROGEN, R4* OXYGEN, R4* SULPHUR,
                      R4* FLUORINE, R4* CHLORINE, R4* BROMINE, R4* IODINE);

}  // namespace talix
