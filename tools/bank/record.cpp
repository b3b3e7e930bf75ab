#include "bank/record.h"

#include <algorithm>
#include <bit>
#include <stdexcept>

namespace talix::bank {

template <int N>
void CellRecord<N>::set_real(int cell, float value) {
  set_bits(cell, std::bit_cast<std::uint32_t>(value));
}

template <int N>
float CellRecord<N>::real(int cell) const {
  return std::bit_cast<float>(bits(cell));
}

template class CellRecord<kPureBytes>;
template class CellRecord<kPairBytes>;
template class CellRecord<kHydrateBytes>;

namespace {

constexpr Kind kText = Kind::text;
constexpr Kind kInt = Kind::integer;
constexpr Kind kReal = Kind::real;

// cell, cells, kind, flag, name, unit, meaning
constexpr auto kPureFields = std::to_array<CellField>({
    {1, 1, kText, 0, "ICSTD", "", "standard component number, four digits right-justified"},
    {2, 1, kText, 0, "ICS", "", "component code"},
    {5, 7, kText, 0, "CIUPAC", "", "component name"},
    {12, 2, kText, 0, "CMFNAM", "", "short name"},
    {14, 3, kText, 0, "ASPNAM", "", "interface name"},
    {17, 1, kText, 0, "curves", "",
     "basis of the curves: EOS or COR fitted to an equation of state or correlations, GEN generalised"},
    {18, 3, kText, 0, "cas", "", "CAS number"},
    {21, 5, kText, 0, "edition", "", "edition of the bank"},
    {26, 15, kInt, 0, "ELEM", "atoms", "C H N O S F Cl Br I, then three pairs of atomic number and count"},
    {43, 1, kInt, 0, "ISTAT2", "", "state class: 1 for every catalogue component"},
    {47, 1, kInt, 0, "IPSA", "", "flag of PSAT"},
    {48, 1, kInt, 0, "IDLI", "", "flag of DLIP"},
    {50, 1, kInt, 0, "IPWA", "", "flag of PWAG"},
    {51, 1, kReal, 0, "TC", "K", "critical temperature"},
    {52, 1, kReal, 0, "PC", "MPa", "critical pressure"},
    {53, 1, kReal, 0, "VC", "m3/kmol", "critical volume"},
    {54, 1, kReal, 0, "OMEGA", "-", "acentric factor"},
    {55, 1, kReal, 0, "RMOLW", "g/mol", "molar mass"},
    {56, 1, kReal, 0, "ATBP", "K", "boiling point at 1 atm"},
    {57, 1, kReal, 0, "TMELT", "K", "melting temperature"},
    {58, 1, kReal, 0, "RHO", "-", "liquid density at 60 F over that of water"},
    {59, 1, kReal, 0, "UOPK", "-", "Watson factor"},
    {60, 1, kReal, 0, "HCRAT", "-", "hydrogen to carbon atomic ratio"},
    {64, 1, kReal, 0, "LVIS50", "mPa s", "liquid viscosity at 50 C"},
    {65, 1, kReal, 0, "BLIN", "", "linear viscosity parameter"},
    {67, 1, kReal, 0, "PACHOR", "(mN/m)^1/4 cm3/mol", "parachor"},
    {68, 1, kReal, 70, "VLIQ25", "m3/kmol", "saturated liquid volume at 25 C"},
    {69, 1, kReal, 71, "SL25", "(J/cm3)^1/2", "solubility parameter at 25 C"},
    {70, 1, kInt, 0, "IV25", "", "flag of VLIQ25"},
    {71, 1, kInt, 0, "IS25", "", "flag of SL25"},
    {74, 1, kReal, 0, "HF", "J/mol", "heat of formation, ideal gas, 298.15 K"},
    {75, 1, kReal, 0, "SOFF", "J/(mol K)", "entropy of formation, ideal gas, 298.15 K, 1 bar"},
    {76, 1, kReal, 0, "GF", "J/mol", "Gibbs energy of formation, ideal gas, 298.15 K, 1 bar"},
    {77, 1, kReal, 0, "HCD", "J/mol", "heat of combustion, gross, positive when released"},
    {78, 1, kReal, 0, "HCW", "J/mol", "heat of combustion, net; 0 is derived from HCD on reading"},
    {79, 1, kReal, 0, "GC", "J/mol", "Gibbs energy of combustion"},
    {83, 1, kReal, 0, "OMHV", "-", "acentric factor for the heat of vaporisation"},
    {84, 1, kReal, 0, "HVAP", "J/mol", "heat of vaporisation at the boiling point"},
    {85, 1, kReal, 0, "HFUS", "J/mol", "heat of fusion"},
    {86, 1, kReal, 0, "HREF", "J/mol", "reference enthalpy"},
    {93, 1, kInt, 0, "ICPL", "", "flag of CCPL"},
    {94, 7, kReal, 93, "CCPL", "", "liquid heat capacity"},
    {101, 8, kReal, 0, "COFHT", "J/(mol K)", "ideal-gas heat capacity"},
    {109, 2, kReal, 0, "COFHTX", "", "ideal-gas heat capacity, form 8: with cells 107, 108 and 248"},
    {111, 5, kReal, 0, "PARABF 1-5", "-", "a curve of the cubic"},
    {116, 5, kReal, 0, "PARABF 11-15", "-", "a curve above the critical temperature"},
    {121, 5, kReal, 0, "PARABF 6-10", "-", "b curve of the cubic"},
    {131, 1, kInt, 0, "ILVT", "", "flag of PARL2"},
    {133, 5, kReal, 131, "PARL2", "", "corresponding-states liquid parameters"},
    {138, 9, kReal, 0, "PANTO", "", "extended Antoine set; absent when its first cell is 0"},
    {147, 7, kReal, 0, "DDIP", "kmol/m3",
     "liquid density, used where IDLI is 0; absent when its first cell is 0"},
    {154, 1, kInt, 0, "IDIP", "", "flag of DIPOLE"},
    {155, 1, kReal, 154, "DIPOLE", "debye", "dipole moment"},
    {156, 1, kInt, 0, "IHVA", "", "flag of HVAPCF"},
    {157, 17, kReal, 156, "HVAPCF", "J/kmol", "heat of vaporisation set; form 7 in J/kmol"},
    {174, 5, kReal, 47, "PSAT", "MPa", "vapour pressure set"},
    {179, 3, kReal, 48, "DLIP", "kg/m3", "liquid density set"},
    {182, 4, kReal, 50, "PWAG", "-", "Wagner vapour pressure set, powers 1, 1.5, 3, 6"},
    {186, 1, kInt, 0, "ITCL", "", "flag of TCL"},
    {187, 7, kReal, 186, "TCL", "W/(m K)", "liquid thermal conductivity set"},
    {194, 2, kReal, 0, "TCV", "", "vapour thermal conductivity set"},
    {196, 1, kInt, 0, "IVIL", "", "flag of VIL"},
    {197, 7, kReal, 196, "VIL", "", "liquid viscosity set"},
    {204, 2, kReal, 0, "VIV", "", "vapour viscosity set"},
    {207, 16, kReal, 0, "UNIFAC", "", "eight pairs of subgroup number and count"},
    {231, 1, kInt, 0, "ISUR", "", "flag of SURT"},
    {232, 2, kReal, 231, "SURT", "mN/m", "surface tension set"},
    {238, 1, kInt, 0, "IQISS", "", "flag of SS"},
    {239, 4, kReal, 238, "SS 5-8", "", "liquid viscosity pressure set, second half"},
    {243, 4, kReal, 238, "SS 1-4", "", "liquid viscosity pressure set, first half"},
    {247, 1, kInt, 0, "IDDB", "", "index of the entry in the bank"},
    {248, 1, kReal, 0, "COFHTX 5", "", "ideal-gas heat capacity, form 8"},
    {249, 1, kInt, 0, "ICPIG", "", "form of the ideal-gas heat capacity"},
    {250, 1, kInt, 0, "ISOFAM", "", "family code"},
});

// The fields stand in ascending order and do not overlap.
constexpr bool fields_in_order() {
  int next = 1;
  for (const CellField& field : kPureFields) {
    if (field.cell < next) return false;
    next = field.cell + field.cells;
  }
  return next == 251;
}
static_assert(fields_in_order());

constexpr int kPairTextByte = 4;   // first byte of the text of a pair record
constexpr int kPairRealCell = 27;  // cell before which the reals stand: real 1 is cell 27

}  // namespace

PureRecord blank_pure_record() {
  PureRecord record;
  record.set_text(1, 25, "");
  return record;
}

bool is_unused(const PureRecord& record) {
  return record.text(1, 2).find_first_not_of(' ') == std::string::npos;
}

PairRecord blank_pair_record(std::int32_t key) {
  PairRecord record;
  record.set_integer(1, key);
  record.set_text(2, 25, "");
  return record;
}

void set_pair_real(PairRecord& record, int index, float value) {
  record.set_real(kPairRealCell + index - 1, value);
}

float pair_real(const PairRecord& record, int index) { return record.real(kPairRealCell + index - 1); }

void set_pair_text(PairRecord& record, int first, int last, std::string_view text) {
  for (int i = first; i <= last; ++i) {
    const auto k = static_cast<std::size_t>(i - first);
    record.bytes.at(static_cast<std::size_t>(kPairTextByte + i - 1)) =
        static_cast<std::uint8_t>(k < text.size() ? text[k] : ' ');
  }
}

std::string pair_text(const PairRecord& record, int first, int last) {
  std::string result;
  for (int i = first; i <= last; ++i) {
    result += static_cast<char>(record.bytes.at(static_cast<std::size_t>(kPairTextByte + i - 1)));
  }
  return result;
}

std::span<const CellField> pure_fields() { return kPureFields; }

const CellField& pure_field(std::string_view name) {
  const auto found = std::find_if(kPureFields.begin(), kPureFields.end(),
                                  [name](const CellField& field) { return field.name == name; });
  if (found == kPureFields.end()) throw std::out_of_range("no field " + std::string(name));
  return *found;
}

}  // namespace talix::bank
