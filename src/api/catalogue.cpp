#include "api/catalogue.h"

#include "api/component_file.h"
#include "base/text.h"
#include "fastprops/flash_record.h"

namespace talix {

namespace {

// Byte offsets in a record of the component file.
namespace offset {
constexpr int name = 16;
constexpr int elements = 100;
constexpr int critical_temperature = 200;
constexpr int critical_pressure = 204;
constexpr int molar_mass = 216;
constexpr int boiling_point = 220;
constexpr int freezing_point = 224;
constexpr int heat_value = 304;
constexpr int heat_capacity = 400;
constexpr int heat_of_vaporisation = 624;
constexpr int liquid_density = 712;
constexpr int vapour_pressure = 724;
}  // namespace offset

constexpr int kNameLength = 28;
constexpr int kHeatCapacityCells = 8;
constexpr int kVaporisationCells = 17;
constexpr int kDensityCells = 3;
constexpr int kVapourPressureCells = 4;

// Calls TAKE with every record from 1 on; COUNT is the number of the last one read.
template <class Take>
void for_each_record(I4& COUNT, Take take) {
  COUNT = 0;
  ComponentFile file;
  ComponentFileRecord record;
  for (I4 number = 1; number <= kLastComponentNumber && file.read(number, record); ++number) {
    take(number, record);
    COUNT = number;
  }
}

void store(R4* table, I4 number, R4 value) {
  if (table != nullptr) table[number - 1] = value;
}

// CELLS values a record, those of one record side by side.
void store_cells(R4* table, I4 number, const ComponentFileRecord& record, int first, int cells) {
  if (table == nullptr) return;
  for (int i = 0; i < cells; ++i)
    table[static_cast<std::ptrdiff_t>(number - 1) * cells + i] = record.real(first + 4 * i);
}

// Blank-padded or cut to the host's element length.
void store_name(char* names, I4 number, I4 length, std::string_view name) {
  if (names == nullptr || length <= 0) return;
  char* target = names + static_cast<std::ptrdiff_t>(number - 1) * length;
  for (I4 i = 0; i < length; ++i) target[i] = i < kNameLength ? name[static_cast<std::size_t>(i)] : ' ';
}

struct Constants {
  R4 *CRITT, *CRITP, *MOLWT, *APBPT, *FRZPT, *HEATC;

  void set(I4 number, const ComponentFileRecord& record) const {
    store(CRITT, number, record.real(offset::critical_temperature));
    store(CRITP, number, record.real(offset::critical_pressure));
    store(MOLWT, number, record.real(offset::molar_mass));
    store(APBPT, number, record.real(offset::boiling_point));
    store(FRZPT, number, record.real(offset::freezing_point));
    store(HEATC, number, record.real(offset::heat_value));
  }
  void clear(I4 last) const {
    for (R4* table : {CRITT, CRITP, MOLWT, APBPT, FRZPT, HEATC})
      for (I4 number = 1; number <= last; ++number) store(table, number, 0.0F);
  }
};

}  // namespace

// GETTALIXPROPS: constants and names of all records.
//
// Out      COUNT        I4        records read, 0 without a file
//          CRITT        R4(1246)  critical temperature [K]
//          CRITP        R4(1246)  critical pressure as stored [MPa]
//          MOLWT        R4(1246)  molar mass [g/mol]
//          APBPT        R4(1246)  boiling point [K]
//          FRZPT        R4(1246)  freezing point [K]
//          HEATC        R4(1246)  heat of combustion [J/mol]
//          PNAME        texts of PNAME_LENGTH characters each, 1246 of them
// Oddity   the six real arrays are cleared first, the names are not
void GETTALIXPROPS(I4* COUNT, R4* CRITT, R4* CRITP, R4* MOLWT, R4* APBPT, R4* FRZPT, R4* HEATC, char* PNAME,
                   I4 PNAME_LENGTH) {
  const Constants constants = {CRITT, CRITP, MOLWT, APBPT, FRZPT, HEATC};
  constants.clear(kLastComponentNumber);
  I4 count = 0;
  for_each_record(count, [&](I4 number, const ComponentFileRecord& record) {
    constants.set(number, record);
    store_name(PNAME, number, PNAME_LENGTH, record.text(offset::name, kNameLength));
  });
  if (COUNT != nullptr) *COUNT = count;
}

// GETTALIXPROPSID: constants and name of record ID; units as above.
//
// Status   STATUS 0, or -1 on any failure: zero values and a blank name
void GETTALIXPROPSID(const I4* ID, R4* CRITT, R4* CRITP, R4* MOLWT, R4* APBPT, R4* FRZPT, R4* HEATC,
                     char* PNAME, I4 PNAME_LENGTH, I4* STATUS) {
  const Constants constants = {CRITT, CRITP, MOLWT, APBPT, FRZPT, HEATC};
  constants.clear(1);
  store_name(PNAME, 1, PNAME_LENGTH, Text<kNameLength>{text<kNameLength>("")}.view());
  ComponentFile file;
  ComponentFileRecord record;
  const bool found = ID != nullptr && file.read(*ID, record);
  if (STATUS != nullptr) *STATUS = found ? 0 : -1;
  if (!found) return;
  constants.set(1, record);
  store_name(PNAME, 1, PNAME_LENGTH, record.text(offset::name, kNameLength));
}

// GETTALIXAPPROPS: correlation coefficients of all records, as stored.
//
// Out      COUNT  I4           records read, 0 without a file
//          CPV    R4(8,1246)   ideal-gas heat capacity
//          HVAP   R4(17,1246)  heat of vaporisation
//          DLIQ   R4(3,1246)   liquid density
//          WAG    R4(4,1246)   vapour pressure
void GETTALIXAPPROPS(I4* COUNT, R4* CPV, R4* HVAP, R4* DLIQ, R4* WAG) {
  I4 count = 0;
  for_each_record(count, [&](I4 number, const ComponentFileRecord& record) {
    store_cells(CPV, number, record, offset::heat_capacity, kHeatCapacityCells);
    store_cells(HVAP, number, record, offset::heat_of_vaporisation, kVaporisationCells);
    store_cells(DLIQ, number, record, offset::liquid_density, kDensityCells);
    store_cells(WAG, number, record, offset::vapour_pressure, kVapourPressureCells);
  });
  if (COUNT != nullptr) *COUNT = count;
}

// GETTALIXELEMENTS: atoms per molecule of all records; the integers of the file become reals.
void GETTALIXELEMENTS(I4* COUNT, R4* CARBON, R4* HYDROGEN, R4* NITROGEN, R4* OXYGEN, R4* SULPHUR,
                      R4* FLUORINE, R4* CHLORINE, R4* BROMINE, R4* IODINE) {
  R4* const tables[] = {CARBON, HYDROGEN, NITROGEN, OXYGEN, SULPHUR, FLUORINE, CHLORINE, BROMINE, IODINE};
  I4 count = 0;
  for_each_record(count, [&](I4 number, const ComponentFileRecord& record) {
    int cell = offset::elements;
    for (R4* table : tables) {
      store(table, number, static_cast<R4>(record.integer(cell)));
      cell += 4;
    }
  });
  if (COUNT != nullptr) *COUNT = count;
}

}  // namespace talix
