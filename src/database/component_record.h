// Constants and correlation sets of the components of the current list, as read from the pure database.
// The first index of every two-index table is the component.
#pragma once

#include "base/array.h"
#include "base/logical.h"
#include "base/real.h"
#include "base/text.h"

namespace talix {

struct ComponentRecord {
  template <class T>
  using Each = Vec<T, kMaxComponents>;
  template <class T, int N>
  using Table = Mat<T, kMaxComponents, N>;

  I4 ISALT;               // component with standard number 1001, or 0
  I4 IWATER;              // component with code "H2O ", or 0
  Each<I4> ICSTD;         // standard number; -1 for a pseudo-component
  Each<Text<4>> ICS;      // component code
  Each<Text<28>> CIUPAC;  // component name
  Each<Text<8>> CMFNAM;   // short name
  Each<Text<16>> ASPNAM;  // interface name
  Table<I4, 15> ELEM;  // atoms per molecule: C H N O S F Cl Br I, then three pairs of atomic number and count
  Each<I4> NOTRY;      // 0 plain hydrocarbon, 1 otherwise
  Each<I4> ISOFAM;     // family code
  Each<I4> IDDB;       // index of the entry in the database
  Each<R8> TC;         // critical temperature [K]
  Each<R8> PC;         // critical pressure [bar]
  Each<R8> VC;         // critical volume [m3/kmol]
  Each<R8> OMEGA;      // acentric factor [-]
  Each<R8> RMOLW;      // molar mass [g/mol]
  Each<R8> ATBP;       // atmospheric boiling point [K]
  Each<R8> TBOIL;      // copy of ATBP [K]
  Each<R8> TMELT;      // melting temperature [K]; -1 when empty
  Mat<R8, 4, kMaxComponents>
      SPAR;               // solid set (I, component): 1 heat of fusion [J/mol], 4 melting temperature [K]
  Each<R8> RHO;           // specific gravity at 60 F [g/cm3]
  Each<R8> UOPK;          // Watson characterisation factor
  Each<R8> HCRAT;         // hydrogen to carbon ratio [-]
  Each<R8> LVIS50;        // liquid viscosity at the reference point
  Each<R8> BLIN;          // linear viscosity parameter
  Each<R8> PACHOR;        // parachor
  Each<R8> VLIQ25;        // liquid volume at 25 C
  Each<R8> SL25;          // solubility value at 25 C
  Each<I4> IV25, IS25;    // flags of VLIQ25, SL25
  Each<R8> HF, SOFF, GF;  // heat, entropy, Gibbs energy of formation [J/mol], [J/(mol K)], [J/mol]
  Each<R8> HCD, HCW, GC;  // heat of combustion gross, net; Gibbs energy of combustion [J/mol]
  Each<R8> OMHV;          // acentric factor for the heat of vaporisation [-]
  Each<R8> HVAP, HFUS;    // heat of vaporisation, of fusion [J/mol]
  Each<R8> HREF;          // reference enthalpy [J/mol]
  Each<I4> ICPIG;  // form of the ideal-gas heat capacity: 7 hyperbolic, 8 brings in COFHTX, else polynomial
  Table<R8, 8> COFHT;                // ideal-gas heat capacity coefficients [J/(mol K)] over powers of K
  Table<R8, 5> COFHTX;               // extra coefficients of form 8
  Table<R8, 15> PARABF;              // curves of the cubic: 1-5 a, 6-10 b, 11-15 a above critical [-]
  Each<I4> ICPL;                     // flag of CCPL
  Table<R8, 7> CCPL;                 // liquid heat capacity coefficients
  Each<I4> ILVT;                     // flag of PARL2
  Table<R8, 5> PARL2;                // corresponding-states liquid parameters
  Each<I4> IPSA, IPWA, IPAN, IPANO;  // flags of the vapour pressure sets; IPANO is 7 when set
  Table<R8, 5> PSAT;                 // Frost-Kalkwarf or Antoine set (MPa)
  Table<R8, 4> PWAG;                 // Wagner set [-]
  Table<R8, 3> PANT;                 // Antoine set
  Table<R8, 9> PANTO;                // extended Antoine set
  Each<I4> IDLI;                     // flag of DLIP
  Table<R8, 3> DLIP;                 // liquid density set
  Each<I4> IDNDIP;                   // flag of DDIP, 7 when set
  Table<R8, 7> DDIP;                 // density fit
  Each<I4> IDIP;                     // flag of DIPOLE
  Each<R8> DIPOLE;                   // dipole moment [debye]
  Each<I4> IHVA;                     // flag of HVAPCF
  Table<R8, 17> HVAPCF;              // heat of vaporisation set
  Each<I4> ITCL;                     // flag of TCL
  Table<R8, 7> TCL;                  // liquid thermal conductivity set
  Table<R8, 2> TCV;                  // vapour thermal conductivity set
  Each<I4> IVIL;                     // flag of VIL
  Table<R8, 7> VIL;                  // liquid viscosity set
  Table<R8, 2> VIV;                  // vapour viscosity set
  Each<I4> NGRP;                     // UNIFAC groups in use, at most 8
  Table<I4, 8> GRPTYP;               // subgroup numbers
  Table<R8, 8> GRPNUM;               // subgroup counts
  Each<I4> ISUR;                     // flag of SURT
  Table<R8, 2> SURT;                 // surface tension set
  Each<I4> IQISS;                    // flag of SS
  Table<R8, 8> SS;                   // Sternling-Samish set
  Each<L4> ISHEN;                    // has Henry data
};

extern constinit ComponentRecord comp;

// Empties the record; the melting temperatures become -1, their empty value.
void reset_component_record();

}  // namespace talix
