// SDBPC1: one record of the pure component database.
#include <cmath>
#include <string_view>

#include "database/component_record.h"
#include "database/directory_record.h"
#include "database/message_text.h"
#include "database/record_bytes.h"
#include "database/sdb_pure.h"
#include "database/sdb_pure_listing.h"
#include "database/unit_table.h"
#include "engine/codes.h"
#include "engine/error_ring.h"
#include "engine/setup_record.h"

namespace talix {

namespace {

constexpr R4 kEmpty = -123456789.0F;     // absent value of a coefficient set, as is 0
constexpr I4 kSetPresent = 7;            // what IPANO and IDNDIP say when their set is there
constexpr I4 kExtendedHeatCapacity = 8;  // form of the heat capacity that brings in COFHTX
constexpr I4 kSaltNumber = 1001;         // standard number of the salt
constexpr R4 kGroupLimit = 161.0F;       // subgroup numbers lie below
constexpr R4 kHydrogenHeat = 22000.8F;   // gross less net heat of combustion per hydrogen atom [J/mol]
constexpr R4 kSolubilityFloor = 1e-10F;

// The record being stored; notes which cells were taken as a value other than 0.
struct Source {
  const PureCells& cells;
  StoredCells& CHK;

  I4 integer(int cell) {
    const I4 value = cells.integer(cell);
    CHK(cell) = value != 0;
    return value;
  }
  R4 single(int cell) {
    const R4 value = cells.real(cell);
    CHK(cell) = value != 0.0F;
    return value;
  }
  R8 real(int cell) { return widen(single(cell)); }
};

// COUNT cells from FIRST on go to columns FROM on of row I.
template <int N>
void take(Source& source, Mat<R8, kMaxComponents, N>& table, I4 i, int from, int count, int first) {
  for (int k = 0; k < count; ++k) table(i, from + k) = source.real(first + k);
}

// A conditional set: read when its flag is not 0, and 0 otherwise.
template <int N>
void take_if(Source& source, I4 flag, Mat<R8, kMaxComponents, N>& table, I4 i, int first) {
  for (int k = 1; k <= N; ++k) table(i, k) = flag != 0 ? source.real(first + k - 1) : 0.0;
}

template <int N>
void clear(Mat<R8, kMaxComponents, N>& table, I4 i) {
  for (int k = 1; k <= N; ++k) table(i, k) = 0.0;
}

bool absent(R4 value) { return !(value != 0.0F && value != kEmpty); }

// The standard number, four digits of text. False when it is no number.
bool read_standard_number(std::string_view digits, I4& number) {
  number = 0;
  bool negative = false;
  bool begun = false;
  for (const char c : digits) {
    if (c == ' ') continue;
    if (!begun && (c == '-' || c == '+')) {
      negative = c == '-';
    } else if (c >= '0' && c <= '9') {
      number = 10 * number + (c - '0');
    } else {
      return false;
    }
    begun = true;
  }
  if (negative) number = -number;
  return true;
}

// Plain hydrocarbon: carbon and hydrogen and no atom of anything else. Entries 10, 12 and 14 are atomic numbers
// and do not count.
I4 not_plain(I4 i) {
  bool others = false;
  for (int e = 3; e <= 9; ++e) others = others || comp.ELEM(i, e) != 0;
  for (int e = 11; e <= 15; e += 2) others = others || comp.ELEM(i, e) != 0;
  return comp.ELEM(i, 1) > 0 && comp.ELEM(i, 2) > 0 && !others ? 0 : 1;
}

void store_identity(Source& source, I4 i, I4 number) {
  comp.ICSTD(i) = number;
  if (number == kSaltNumber) comp.ISALT = i;
  comp.ICS(i) = source.cells.text(2, 2);
  comp.CIUPAC(i) = source.cells.text(5, 11);
  comp.CMFNAM(i) = source.cells.text(12, 13);
  comp.ASPNAM(i) = source.cells.text(14, 16);
  for (int e = 1; e <= 15; ++e) comp.ELEM(i, e) = source.integer(25 + e);
  comp.NOTRY(i) = not_plain(i);
  comp.IDDB(i) = source.integer(247);
  comp.ISOFAM(i) = source.integer(250);
}

void store_constants(Source& source, I4 i) {
  comp.TC(i) = source.real(51);
  comp.PC(i) = 10.0 * source.real(52);
  comp.VC(i) = source.real(53);
  comp.OMEGA(i) = source.real(54);
  comp.RMOLW(i) = source.real(55);
  comp.ATBP(i) = source.real(56);
  comp.TBOIL(i) = comp.ATBP(i);
  comp.TMELT(i) = source.real(57);
  comp.RHO(i) = source.real(58);
  comp.UOPK(i) = source.real(59);
  comp.HCRAT(i) = source.real(60);
  comp.LVIS50(i) = source.real(64);
  comp.BLIN(i) = source.real(65);
  comp.PACHOR(i) = source.real(67);
  comp.VLIQ25(i) = source.real(68);
  comp.IV25(i) = source.integer(70);
  const bool soluble = std::fabs(source.single(69)) > kSolubilityFloor;
  comp.SL25(i) = soluble ? source.real(69) : 0.0;
  comp.IS25(i) = soluble ? source.integer(71) : 0;
  comp.IDIP(i) = source.integer(154);
  comp.DIPOLE(i) = comp.IDIP(i) != 0 ? source.real(155) : 0.0;
}

void store_heats(Source& source, I4 i) {
  comp.HF(i) = source.real(74);
  comp.SOFF(i) = source.real(75);
  comp.GF(i) = source.real(76);
  const R4 gross = source.single(77);
  const R4 net = source.single(78);
  comp.HCD(i) = widen(gross);
  comp.HCW(i) = widen(net != 0.0F ? net : gross - static_cast<R4>(comp.ELEM(i, 2)) * kHydrogenHeat);
  comp.GC(i) = source.real(79);
  comp.OMHV(i) = source.real(83);
  comp.HVAP(i) = source.real(84);
  comp.HFUS(i) = source.real(85);
  comp.HREF(i) = source.real(86);

  // The solid set starts anew: its two middle entries come from overrides alone.
  comp.SPAR(1, i) = comp.HFUS(i);
  comp.SPAR(2, i) = 0.0;
  comp.SPAR(3, i) = 0.0;
  comp.SPAR(4, i) = comp.TMELT(i);

  comp.IHVA(i) = source.integer(156);
  take_if(source, comp.IHVA(i), comp.HVAPCF, i, 157);
}

void store_heat_capacities(Source& source, I4 i) {
  comp.ICPL(i) = source.integer(93);
  take_if(source, comp.ICPL(i), comp.CCPL, i, 94);
  comp.ICPIG(i) = source.integer(249);
  take(source, comp.COFHT, i, 1, 8, 101);
  clear(comp.COFHTX, i);
  if (comp.ICPIG(i) == kExtendedHeatCapacity) {
    comp.COFHT(i, 7) = 0.0;
    comp.COFHT(i, 8) = 0.0;
    take(source, comp.COFHTX, i, 1, 4, 107);
    comp.COFHTX(i, 5) = source.real(248);
  }
}

// The second and third sets of the curves stand in the file in reverse order.
void store_curves(Source& source, I4 i) {
  take(source, comp.PARABF, i, 1, 5, 111);
  take(source, comp.PARABF, i, 11, 5, 116);
  take(source, comp.PARABF, i, 6, 5, 121);
  comp.ILVT(i) = source.integer(131);
  take_if(source, comp.ILVT(i), comp.PARL2, i, 133);
}

void store_vapour_pressures(Source& source, I4 i) {
  comp.IPANO(i) = absent(source.cells.real(138)) ? 0 : kSetPresent;
  take_if(source, comp.IPANO(i), comp.PANTO, i, 138);
  comp.IPSA(i) = source.integer(47);
  take_if(source, comp.IPSA(i), comp.PSAT, i, 174);
  comp.IPWA(i) = source.integer(50);
  take_if(source, comp.IPWA(i), comp.PWAG, i, 182);
  // The short Antoine set is not on file: an override of an older list must not outlive it.
  comp.IPAN(i) = 0;
  clear(comp.PANT, i);
}

void store_densities(Source& source, I4 i) {
  comp.IDNDIP(i) = absent(source.cells.real(147)) ? 0 : kSetPresent;
  take_if(source, comp.IDNDIP(i), comp.DDIP, i, 147);
  if (!(comp.DDIP(i, 2) > 0.0)) comp.IDNDIP(i) = 0;
  comp.IDLI(i) = source.integer(48);
  take_if(source, comp.IDLI(i), comp.DLIP, i, 179);
}

void store_transport(Source& source, I4 i) {
  comp.ITCL(i) = source.integer(186);
  take_if(source, comp.ITCL(i), comp.TCL, i, 187);
  take(source, comp.TCV, i, 1, 2, 194);
  comp.IVIL(i) = source.integer(196);
  take_if(source, comp.IVIL(i), comp.VIL, i, 197);
  take(source, comp.VIV, i, 1, 2, 204);
  comp.ISUR(i) = source.integer(231);
  take(source, comp.SURT, i, 1, 2, 232);

  // The halves of this set are exchanged in the file.
  comp.IQISS(i) = source.integer(238);
  clear(comp.SS, i);
  if (comp.IQISS(i) != 0) {
    take(source, comp.SS, i, 5, 4, 239);
    take(source, comp.SS, i, 1, 4, 243);
  }
}

// Pairs of subgroup number and count. A number that is cut to 0 names no subgroup.
void store_groups(Source& source, I4 i) {
  comp.NGRP(i) = 0;
  for (int k = 1; k <= 8; ++k) {
    comp.GRPTYP(i, k) = 0;
    comp.GRPNUM(i, k) = 0.0;
  }
  for (int k = 1; k <= 8; ++k) {
    const R4 number = source.single(205 + 2 * k);
    const R8 count = source.real(206 + 2 * k);
    if (!(number > 0.0F && number < kGroupLimit) || static_cast<I4>(number) < 1) continue;
    const I4 n = ++comp.NGRP(i);
    comp.GRPTYP(i, n) = static_cast<I4>(number);
    comp.GRPNUM(i, n) = count;
  }
}

void store(const PureCells& cells, I4 i, I4 number) {
  StoredCells CHK{};
  Source source{cells, CHK};
  store_identity(source, i, number);
  store_constants(source, i);
  store_heats(source, i);
  store_heat_capacities(source, i);
  store_curves(source, i);
  store_vapour_pressures(source, i);
  store_densities(source, i);
  store_transport(source, i);
  store_groups(source, i);
  if (list_pure_records) list_pure_record(cells, CHK);
}

}  // namespace

// SDBPC1: read a record of the pure component database.
//
// In       ICOMP   I4  slot of the component tables; 0 or below: the record is only read
//          RECORD  I4  record number
// Shared   writes the slot of comp, comp.ISALT, setup.pure_records_read, setup.generation
// Status   ok; failed when the record cannot be read or its standard number is no number; the slot then keeps
//          what it had
// Reports  "Read error in pure component database, record " and the number, severity 3
// Oddity   sets two and three of PARABF and the halves of SS stand in the file in reverse order
void SDBPC1(const I4& ICOMP, const I4& RECORD, I4& NFAIL) {
  NFAIL = status::ok;
  ++setup.pure_records_read;

  PureCells cells;
  I4 number = 0;
  if (read_record(directory.pure_unit, RECORD, cells.bytes.b, 4 * kPureCells) != io::ok ||
      !read_standard_number(cells.text(1, 1), number)) {
    NFAIL = status::failed;
    MessageText message{};
    message.add("Read error in pure component database, record ").add(RECORD, 0);
    SERPU0(severity::error, "SDBPC1", message.view());
    return;
  }
  if (ICOMP <= 0) return;
  store(cells, ICOMP, number);
  ++setup.generation;
}

}  // namespace talix
