// Set-up of the engine: component list, data files, platform, settings that live for the process.
#pragma once

#include "base/array.h"
#include "base/logical.h"
#include "base/real.h"
#include "base/text.h"

namespace talix {

inline constexpr int kDataFiles = 26;

// Rows of the data file table.
namespace data_file {
inline constexpr int binary_directory = 1;
inline constexpr int binary = 2;
inline constexpr int hydrate_directory = 3;
inline constexpr int hydrate = 4;
inline constexpr int pure_directory_old = 5;
inline constexpr int pure = 6;
inline constexpr int flash_restart = 7;
inline constexpr int unifac_dm = 9;
inline constexpr int unifac_linear = 10;
inline constexpr int unifac_lyngby = 12;
inline constexpr int unifac_original = 13;
inline constexpr int srk_simsci = 17;
inline constexpr int srk_aspen = 18;
inline constexpr int cpa_pure = 19;
inline constexpr int cpa_binary = 20;
inline constexpr int user_binary = 25;
inline constexpr int pure_directory = 26;
}  // namespace data_file

struct UnitTable {
  I4 binary;   // binary directory and database
  I4 pure;     // pure directory and database
  I4 hydrate;  // hydrate directory and database
  I4 spare_1;  // never used
  I4 unifac;   // the four UNIFAC files
  I4 spare_2;  // never used
};

struct SetupRecord {
  L4 initialised;                       // first-call defaults are in place (the first-call flag, inverted)
  I4 platform;                          // host platform code, platform::*
  I4 NUMH;                              // components now set
  Vec<Text<8>, kMaxComponents> SHCOMP;  // component codes as given
  Vec<Text<8>, kMaxComponents> CUCOMP;  // component codes of this load
  Vec<Text<7>, kMaxComponents> SHCPTY;  // "KELDRIN", "ZANDOR " or "OWN"
  I4 NFRAC;                             // pseudo-components in the set
  Vec<I4, kMaxComponents> IDFRAC;       // component index of pseudo-component K
  L4 hydrate_initialised;               // hydrate tables are prepared
  R8 TREF;                              // "H-datum": reference temperature of the ideal gas [K]
  Text<255> path;                       // last directory accepted
  Vec<Text<255>, kDataFiles> files;     // data file names
  UnitTable units;                      // preferred unit of each kind of file
  I4 output_unit;                       // unit of listings
  Vec<I4, 2> spare_settings;            // cleared, not read
  Text<20> date_pure, date_binary, date_hydrate;  // dates of the three databases
  Text<20> date_engine;                           // date of the engine
  I4 generation;         // data-generation counter: +1 at every change of component data
  I4 pure_records_read;  // count of pure component records read
};

extern constinit SetupRecord setup;

// The record as it is at load; the data-generation counter goes on counting.
void reset_setup_record();

}  // namespace talix
