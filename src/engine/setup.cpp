#include "engine/setup.h"

#include <algorithm>
#include <array>

#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/model_record.h"
#include "engine/setup_record.h"

namespace talix {

namespace {

constexpr SetupRecord empty_setup() {
  SetupRecord empty{};
  empty.SHCOMP.fill(text<8>(""));
  empty.CUCOMP.fill(text<8>(""));
  empty.SHCPTY.fill(text<7>(""));
  empty.path.blank();
  empty.files.fill(text<255>(""));
  empty.date_pure.blank();
  empty.date_binary.blank();
  empty.date_hydrate.blank();
  empty.date_engine.blank();
  return empty;
}

// Longest directory that leaves room for the longest name in use.
constexpr int kLongestPath = 244;

// "H-datum" of a new component set: a value that no caller can take for a temperature that was set.
constexpr R8 kUnsetDatum = widen(111.111111F);

// Names behind the directory, in the order of the data file table.
constexpr auto kFileNames = std::to_array<std::string_view>({
    "bzandir.out",   // binary directory
    "binzan.out",    // binary database
    "phyddir.out",   // hydrate directory
    "purehyd.out",   // hydrate database
    "pzandir.out",   // pure directory, old style
    "purezan.out",   // pure component database
    "flshtest.res",  // stands without a directory
    "octanenb.out",  // not opened
    "udo2002.out",   // UNIFAC-DM and liquid UNIFAC
    "suflin.out",    // linear and free volume UNIFAC
    "suflle.out",    // not opened
    "suflyn.out",    // Lyngby UNIFAC
    "sufori.out",    // UNIFAC
    "saft1.dat",     // not opened
    "saft2.dat",     // not opened
    "saft3.dat",     // not opened
    "sdbp2.dat",     // SRK-SimSci parameters
    "srkap.dat",     // SRK-Aspen parameters
    "cpapur.dat",    // CPA pure parameters
    "cpabin.dat",    // CPA binary parameters
    "ufgrc.dat",     // not opened
    "leur1.dat",     // not opened
    "tfo.dat",       // not opened
    "henry.dat",     // not opened
    "usrbin.dat",    // user binary parameters
    "pcdir.asc",     // pure directory, new style
});
static_assert(kFileNames.size() == kDataFiles);
static_assert(kFileNames[data_file::pure - 1] == "purezan.out");
static_assert(kFileNames[data_file::flash_restart - 1] == "flshtest.res");
static_assert(kFileNames[data_file::pure_directory - 1] == "pcdir.asc");

constexpr UnitTable kPreferredUnits{
    .binary = 30, .pure = 31, .hydrate = 32, .spare_1 = 33, .unifac = 34, .spare_2 = 35};

constexpr auto kPlatforms =
    std::to_array<I4>({platform::hp9000, platform::pc_ftn77, platform::pc_lahey, platform::rs6000,
                       platform::indigo, platform::vax, platform::octane, platform::sun});

}  // namespace

constinit SetupRecord setup = empty_setup();

void reset_setup_record() {
  const I4 generation = setup.generation;
  setup = empty_setup();
  setup.generation = generation + 1;
}

// SHINI0: start a component set.
//
// In       N       I4    number of components, 1 to 50
//          CODES   text  N component codes, one behind the other
//          WIDTH   I4    characters of each code; cut or blank-padded to 8
// Out      NFAIL   I4    status
// Shared   writes setup, models.count; at the first call of the process all records of the first-call
// defaults Status   ok; range (N outside 1 to 50: the former set stays) Reports  "Zero number of components",
// "Number of components exceeds allowed maximum", severity 3 Oddity   a negative N fails in silence; the
// "H-datum" is put back even when the call fails
void SHINI0(const I4& N, const char* CODES, const I4& WIDTH, I4& NFAIL) {
  NFAIL = status::ok;
  models.count = 0;
  setup.hydrate_initialised = false;

  if (!setup.initialised) {
    SINAO0();
    SINAO1();
    SINAO2();
    SINAO3();
    setup.initialised = true;
  }
  setup.NFRAC = 0;

  if (N < 1 || N > kMaxComponents) {
    NFAIL = status::range;
    if (N == 0) SERPU0(severity::error, "SHINI0", "Zero number of components");
    if (N > kMaxComponents) SERPU0(severity::error, "SHINI0", "Number of components exceeds allowed maximum");
  } else {
    const auto width = static_cast<std::size_t>(std::max(WIDTH, 0));
    for (int i = 1; i <= N; ++i) {
      setup.SHCOMP(i) = std::string_view(CODES + static_cast<std::size_t>(i - 1) * width, width);
      setup.IDFRAC(i) = 0;
    }
    setup.NUMH = N;
  }
  setup.TREF = kUnsetDatum;
}

// SURPT0: store or return the data directory.
//
// In       MODE         text  "INPUT" stores PATH, "INFO" returns the stored one; any other does nothing
// In, out  PATH         text  PATH_LENGTH characters
// In       PATH_LENGTH  int   trailing blanks included
// Out      NFAIL        I4    0 or 3; as it came in for another MODE
// Shared   setup.path, setup.files, setup.units
// Status   0 success; 3 failure (the stored directory and tables stay)
// Reports  "File path too long", severity 3
// Oddity   the one routine of the set-up that reports 0 for success
void SURPT0(char* PATH, int PATH_LENGTH, std::string_view MODE, I4& NFAIL) {
  constexpr I4 succeeded = 0;
  constexpr I4 failed = 3;
  const auto length = static_cast<std::size_t>(std::max(PATH_LENGTH, 0));

  if (equal_padded(MODE, "INFO")) {
    const std::size_t held = std::min(length, static_cast<std::size_t>(setup.path.extent));
    std::copy_n(setup.path.c, held, PATH);
    std::fill(PATH + held, PATH + length, ' ');
    NFAIL = succeeded;
  } else if (equal_padded(MODE, "INPUT")) {
    if (PATH_LENGTH > kLongestPath) {
      NFAIL = failed;
      SERPU0(severity::error, "SURPT0", "File path too long");
      return;
    }
    setup.path = std::string_view(PATH, length);
    I4 built = status::ok;
    SSYAO2(std::string_view(PATH, length), built);
    NFAIL = built == status::ok ? succeeded : failed;
  }
}

// SSYAO2: build the data file table and the unit table for a directory.
//
// In       PATH    text  directory, ending as the file names need it; trailing blanks are dropped
// Out      NFAIL   I4    status
// Shared   writes setup.files, setup.units
// Status   ok; fatal (more than 244 characters: the tables stay)
// Reports  "Filename path to long", severity 3
// Oddity   entry 7 stands without a directory
void SSYAO2(std::string_view PATH, I4& NFAIL) {
  NFAIL = status::ok;
  if (PATH.size() > static_cast<std::size_t>(kLongestPath)) {
    SERPU0(severity::error, "SSYAO2", "Filename path to long");
    NFAIL = status::fatal;
    return;
  }
  const std::string_view directory = trimmed(PATH);
  for (int entry = 1; entry <= kDataFiles; ++entry) {
    const std::string_view name = kFileNames[static_cast<std::size_t>(entry - 1)];
    const std::string_view front = entry == data_file::flash_restart ? std::string_view{} : directory;
    auto& file = setup.files(entry);
    file = front;
    const std::size_t room = static_cast<std::size_t>(file.extent) - front.size();
    std::copy_n(name.data(), std::min(name.size(), room), file.c + front.size());
  }
  setup.units = kPreferredUnits;
}

// SURPL0: select the host platform.
//
// In       CODE    I4  platform::*
// Out      NFAIL   I4  status
// Shared   writes setup.platform
// Status   ok; failed (not a platform: platform::unknown is stored)
void SURPL0(const I4& CODE, I4& NFAIL) {
  const bool known = std::find(kPlatforms.begin(), kPlatforms.end(), CODE) != kPlatforms.end();
  setup.platform = known ? CODE : platform::unknown;
  NFAIL = known ? status::ok : status::failed;
}

}  // namespace talix
