#include "database/sdb_srk.h"

#include "database/field_text.h"
#include "database/keyed_file.h"
#include "database/srk_variant_record.h"
#include "engine/codes.h"
#include "engine/setup_record.h"

namespace talix {

namespace {

constexpr KeyedLayout kSimSci{data_file::srk_simsci, 71, 4, 2, 5};
constexpr KeyedLayout kAspen{data_file::srk_aspen, 74, 4, 2, 5};

// Finds the record of a standard number. Status ok; not_available where there is no file or no such record.
void find_record(const KeyedLayout& layout, I4 number, KeyedRecord& record, I4& NFAIL) {
  L4 found{};
  find_keyed_record(layout, SSADB3, number, found, record, NFAIL);
  if (!found) NFAIL = status::not_available;
}

// Columns of a field that stands behind GAP blanks; AT is the last column taken so far.
struct Cursor {
  const KeyedRecord& record;
  int at;

  std::string_view next(int gap, int width) {
    const int first = at + gap + 1;
    at += gap + width;
    return record.columns(first, at);
  }
};

bool store_simsci(const KeyedRecord& record, I4 i) {
  Cursor field{record, 33};
  bool sound = integer_field(field.next(0, 2), srk_variants.P2ALPH(i));
  for (int k = 1; k <= 3; ++k) sound = sound && real_field(field.next(6, 6), 4, srk_variants.CSRKP2(i, k));
  return sound;
}

bool store_aspen(const KeyedRecord& record, I4 i) {
  Cursor field{record, 5};
  bool sound = real_field(field.next(3, 6), 2, srk_variants.TCASP(i)) &&
               real_field(field.next(3, 6), 2, srk_variants.PCASP(i)) &&
               real_field(field.next(3, 6), 4, srk_variants.OMASP(i)) &&
               integer_field(field.next(1, 2), srk_variants.APALPH(i));
  for (int k = 1; k <= 3; ++k) sound = sound && real_field(field.next(6, 7), 4, srk_variants.CSRKAP(i, k));
  return sound;
}

void clear_simsci(I4 i) {
  srk_variants.P2ALPH(i) = 0;
  for (int k = 1; k <= 3; ++k) srk_variants.CSRKP2(i, k) = 0.0;
}

void clear_aspen(I4 i) {
  srk_variants.TCASP(i) = srk_variants.PCASP(i) = srk_variants.OMASP(i) = 0.0;
  srk_variants.APALPH(i) = 0;
  for (int k = 1; k <= 3; ++k) srk_variants.CSRKAP(i, k) = 0.0;
}

}  // namespace

// SSADB3: bisection for a standard number on the open file of a variant.
//
// In       UNIT       I4  where the file is open
//          LOW, HIGH  I4  numbers of its first and last data record
//          KEY        I4  standard number
// Out      FOUND      L4
//          RECORD     I4  its record when found
// Oddity   the key stands in the same columns of both files, so one search serves both; the last record is never
//          reached, and the files end with a record that is no component
void SSADB3(const I4& UNIT, const I4& LOW, const I4& HIGH, const I4& KEY, L4& FOUND, I4& RECORD) {
  search_keyed_file(kSimSci, UNIT, LOW, HIGH, KEY, FOUND, RECORD);
}

// SP2DB0: read the constants of a component for "SRK-SimSci".
//
// In       ICOMP   I4  component index
//          NUMBER  I4  its standard number
// Shared   writes P2ALPH and CSRKP2 of the component, which are 0 after a failure; setup.generation
// Status   ok; not_available for a component or a file that is not there
void SP2DB0(const I4& ICOMP, const I4& NUMBER, I4& NFAIL) {
  clear_simsci(ICOMP);
  KeyedRecord record;
  find_record(kSimSci, NUMBER, record, NFAIL);
  if (NFAIL == status::ok && !store_simsci(record, ICOMP)) {
    clear_simsci(ICOMP);
    NFAIL = status::not_available;
  }
  ++setup.generation;
}

// SP2DB1: read the constants of components FIRST to LAST for "SRK-SimSci".
//
// In       ICSTD   I4(:)  standard numbers of the components
//          REPORT  L4     not used: the caller words the failure
// Status   ok; that of the first failure, which ends the reading
void SP2DB1(const I4& FIRST, const I4& LAST, const Vec<I4, kMaxComponents>& ICSTD, const L4& /*REPORT*/,
            I4& NFAIL) {
  NFAIL = status::ok;
  for (I4 i = FIRST; i <= LAST && NFAIL == status::ok; ++i) SP2DB0(i, ICSTD(i), NFAIL);
}

// SAPDB0: read the constants of a component for "SRK-Aspen", its own critical data among them.
//
// In       ICOMP   I4  component index
//          NUMBER  I4  its standard number
// Shared   writes TCASP, PCASP, OMASP, APALPH and CSRKAP of the component, which are 0 after a failure;
//          setup.generation
// Status   ok; not_available for a component or a file that is not there
void SAPDB0(const I4& ICOMP, const I4& NUMBER, I4& NFAIL) {
  clear_aspen(ICOMP);
  KeyedRecord record;
  find_record(kAspen, NUMBER, record, NFAIL);
  if (NFAIL == status::ok && !store_aspen(record, ICOMP)) {
    clear_aspen(ICOMP);
    NFAIL = status::not_available;
  }
  ++setup.generation;
}

// SAPDB1: read the constants of components FIRST to LAST for "SRK-Aspen".
//
// In       ICSTD   I4(:)  standard numbers of the components
//          REPORT  L4     not used: the caller words the failure
// Status   ok; that of the first failure, which ends the reading
void SAPDB1(const I4& FIRST, const I4& LAST, const Vec<I4, kMaxComponents>& ICSTD, const L4& /*REPORT*/,
            I4& NFAIL) {
  NFAIL = status::ok;
  for (I4 i = FIRST; i <= LAST && NFAIL == status::ok; ++i) SAPDB0(i, ICSTD(i), NFAIL);
}

}  // namespace talix
