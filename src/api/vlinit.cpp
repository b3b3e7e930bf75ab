#include "api/vlinit.h"

#include <cstdio>

#include "api/component_file.h"
#include "fastprops/flash_record.h"
#include "fastprops/morvei.h"

namespace talix {

namespace {

// Codes of IFAIL.
constexpr I4 kNotReadable = 1;
constexpr I4 kBadNumber = 2;

bool is_blank(std::string_view code) {
  for (const char c : code)
    if (c != ' ' && c != '\0') return false;
  return true;
}

template <int N>
void take_cells(const ComponentFileRecord& record, int offset, int K, Mat<R4, N, kMaxComponents>& table,
                int first, int last) {
  for (int i = first; i <= last; ++i) table(i, K) = record.real(offset + 4 * (i - first));
}

// The five cells at 460 land in columns 11 to 15 and those at 480 in columns 6 to 10.
void take_curves(const ComponentFileRecord& record, int K) {
  for (int i = 0; i < 5; ++i) {
    fl.PARABF(K, 1 + i) = record.real(440 + 4 * i);
    fl.PARABF(K, 11 + i) = record.real(460 + 4 * i);
    fl.PARABF(K, 6 + i) = record.real(480 + 4 * i);
  }
}

void take_record(const ComponentFileRecord& record, int K) {
  fl.MFDS(K) = record.text(4, 4);
  fl.NAME(K) = record.text(44, 16);
  fl.ISTAT2(K) = record.integer(168);
  fl.TC(K) = record.real(200);
  fl.PC(K) = record.real(204) * 10.0F;
  fl.VC(K) = record.real(208) * 1000.0F;
  fl.OMEG(K) = record.real(212);
  fl.AMW(K) = record.real(216);
  take_cells(record, 400, K, fl.COFHT, 1, 8);
  take_curves(record, K);
  take_cells(record, 692, K, fl.CP0, 1, 5);
  take_cells(record, 712, K, fl.CDEN, 1, 4);
  take_cells(record, 744, K, fl.CKLIQ, 1, 6);
  take_cells(record, 772, K, fl.CGAS, 1, 2);
  take_cells(record, 784, K, fl.CVISL, 1, 6);
  take_cells(record, 812, K, fl.CGAS, 3, 4);
  take_cells(record, 924, K, fl.SUR, 1, 2);
  fl.ZC(K) = fl.PC(K) * fl.VC(K) / (fl.RGAS * fl.TC(K));
}

void fail(I4 how, I4 detail, I4 code, I4& IFAIL) {
  fl.LOAD = how;
  fl.LOAD_DETAIL = detail;
  IFAIL = code;
}

// Constants of all positions; false with IFAIL at the first that has none.
bool read_constants(const I4& NC, const Vec<I4, kMaxComponents>& ISTD, I4& IFAIL) {
  ComponentFile file;
  if (!file.is_open()) {
    fail(load_result::no_file, 0, kNotReadable, IFAIL);
    return false;
  }
  for (int K = 1; K <= NC; ++K) {
    const I4 number = ISTD(K);
    if (number < kFirstComponentNumber || number > kLastComponentNumber) {
      fail(load_result::bad_number, number, kBadNumber, IFAIL);
      return false;
    }
    ComponentFileRecord record;
    if (!file.read(number, record)) {
      fail(load_result::unreadable, number, kNotReadable, IFAIL);
      return false;
    }
    take_record(record, K);
    if (is_blank(fl.MFDS(K).view())) {
      fail(load_result::empty_record, number, kBadNumber, IFAIL);
      return false;
    }
  }
  return true;
}

}  // namespace

// VLINIT: constants of the components ISTD(1..NC) into the flash record, then the engine start.
//
// In       NC     I4      number of components
//          ISTD   I4(50)  component numbers, 2 to 1246
// Out      IFAIL  I4      0 complete; 1 file not opened or not readable, or SHINI0 failed; 2 number out of
//                         range or without a component, or SHMLD0 failed; 3 SHDBS0, 4 SURMD0 failed
// Shared   reads fl.INSTALL, fl.RGAS; sets the component tables 1 to NC, fl.LOAD, fl.LOAD_DETAIL
// Oddity   positions before a bad number keep what was read; ZC is ten times the compressibility factor,
//          since the pressure is in bar
void VLINIT(const I4& NC, const Vec<I4, kMaxComponents>& ISTD, I4& IFAIL) {
  fl.LOAD = load_result::none;
  fl.LOAD_DETAIL = 0;
  fl.REDLAB_MODE = kNoParameters;
  if (!read_constants(NC, ISTD, IFAIL)) return;
  MORVEI(NC, IFAIL);
  fl.LOAD = IFAIL == 0 ? load_result::complete : load_result::engine;
  fl.LOAD_DETAIL = IFAIL;
}

}  // namespace talix
