// Back to the state at load.
#pragma once

namespace talix {

// Empties every record of the engine, its caches included. The data-generation counter goes on counting, so
// that nothing computed before can be taken for a result of the new state.
void reset_engine();

}  // namespace talix
