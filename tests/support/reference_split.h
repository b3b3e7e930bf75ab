// The reference flash of the tests: the split of a feed into two phases from given K-values.
#pragma once

#include "support/reference_phase.h"

namespace talix::test::reference {

struct Split {
  R8 share = 0.0;  // of phase a in the feed [mol/mol]
  Phase a, b;
  R8 g = 0.0;  // Gibbs energy of both over RT, per mole of feed
};

// Substitution first, or straight down the Gibbs energy: the two can end at different splits from the same start.
enum class Route { substitution, descent };

// LNK is ln(a/b) to start from, G_FEED the Gibbs energy of the undivided feed that the split has to beat.
bool split_from(const Mixture& m, R8 T, R8 P, const Numbers& lnK, R8 g_feed, Route route, Split& result);

}  // namespace talix::test::reference
