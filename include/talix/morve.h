/*
 * Morve: the property engine of Talix on its own. Fugacities, volumes and thermal properties of one phase by any model
 * of the engine, its transport properties, vapour pressures, and the constants behind them by name. The calls stand in
 * the static library libtalix_core.a; libtalix.so does not export them.
 *
 * Conventions
 *   Every argument is a pointer, but for the length of a text, which is passed by value directly behind its text.
 *   Integers have 32 bits, reals are 64-bit doubles. A logical is a 32-bit integer: 0 is false, any other value is true;
 *   the engine writes -1 for true. Tables have room for 50 components, are stored with the first index fastest and are
 *   counted from 1 in this description: entry (i, j) of DFDN is DFDN[(i - 1) + 50 * (j - 1)]. Of a table only the
 *   entries of the components asked for are read or written. Texts are blank-padded, not zero-terminated.
 *   Temperatures are in K and pressures in Pa throughout.
 *
 *   The names of the calls are the names of the engine's routines. What is prefixed GETMORVE or CLEARMORVE is a door to
 *   a record of the engine. In C++ the routines behind them stand in the namespace talix: no name collides.
 *
 *   The library keeps its state between calls, is not reentrant and starts no thread: calls must not overlap. No C++
 *   exception leaves a call. A call with a null pointer changes nothing but the status, which becomes MORVE_INPUT.
 *   Calls of talix.h and of this header work on one engine: SHINI0 makes the next TALIX load its list again, and a
 *   TALIX that loads a list replaces the one that was set here.
 *
 * Order of use
 *   1. SURPL0 and SURPT0 once: host platform and data directory.
 *   2. SHINI0: the component list. It empties the table of models.
 *   3. SHMLD0 for each model that is wanted, at most ten.
 *   4. SHDBS0: the data of the components, of their pairs and of the models.
 *   5. SURMD0, SURBI0, SURPC0 where a constant is to be replaced. Replaced constants stand until the next SHDBS0, those
 *      of SURMD0 until they are replaced again; "H-datum" is unset by SHINI0 and has to be given before enthalpies or
 *      entropies mean anything: 273.15 K is what the flashes of talix.h take.
 *   6. SHMIX0, SPSAT0 and the transport calls, as often as wanted, in any order.
 *   Another component list starts at 2. docs/engine.md has a worked example.
 *
 * Status
 *   The last argument of most calls, NFAIL or STATUS, is MORVE_OK (98) when the results stand. GETMORVECODETEXT turns
 *   it, like every other code, into a text; the error ring keeps what was said on the way, see GETMORVEERROR.
 */
#ifndef TALIX_MORVE_H
#define TALIX_MORVE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Sizes of the tables. */
#define MORVE_MAX_COMPONENTS 50
#define MORVE_MAX_MODELS 10    /* slots of the table of models */
#define MORVE_MAX_RESERVED 20  /* entries of IRESRV and RESRV */
#define MORVE_MAX_KEYS 20      /* entries of KEYS and VALUES */
#define MORVE_KEY_LENGTH 10    /* characters of a key */
#define MORVE_RING_ENTRIES 15  /* messages that the error ring holds */
#define MORVE_ROUTINE_LENGTH 6 /* characters of a routine's name in the ring */
#define MORVE_MESSAGE_LENGTH 255
#define MORVE_CODE_LENGTH 31 /* characters of the text of a code */
#define MORVE_MODEL_COUNT 40 /* codes that SHMLD0 takes */

/* Statuses. */
#define MORVE_OK 98
#define MORVE_NO_EQUATION_OF_STATE 41 /* transport: model 41 is not loaded, or it failed */
#define MORVE_FATAL 76
#define MORVE_INPUT 87 /* an argument is out of its range */
#define MORVE_MODEL_ERROR 95
#define MORVE_NO_PARAMETERS 99  /* data are missing, or not loaded */
#define MORVE_NO_ROOT 100       /* no such phase at T and P */
#define MORVE_NOT_AVAILABLE 102 /* the model or the section does not serve the request */
#define MORVE_NOT_CONVERGED 103
#define MORVE_RANGE 110
#define MORVE_SEVERE_WARNING 112
#define MORVE_NUMERICAL 115
#define MORVE_UNKNOWN 119 /* no such model or component */
#define MORVE_FAILED 125

/* Phases: asked for, and returned. */
#define MORVE_VAPOUR 122
#define MORVE_LIQUID 90
#define MORVE_GIBBS 82 /* the root of the lower Gibbs energy */
#define MORVE_NONE 98  /* returned: the phase has no type */

/* Root options. */
#define MORVE_PSEUDO_ROOT 125 /* where a phase has no root a stand-in is taken */
#define MORVE_REAL_ROOT 98    /* only true roots; the only one there is stands for any phase */

/* Kinds of enthalpy and entropy. */
#define MORVE_TOTAL 118 /* ideal gas and residual part */
#define MORVE_RESIDUAL 111
#define MORVE_IDEAL_GAS 85

/* Reserved results, codes of IRESRV. */
#define MORVE_THERMAL_EXPANSION 49           /* (dV/dT)/V at constant pressure [1/K] */
#define MORVE_ISOTHERMAL_COMPRESSIBILITY 18  /* -(dV/dP)/V at constant temperature [1/Pa] */
#define MORVE_ISENTROPIC_COMPRESSIBILITY 2   /* -(dV/dP)/V at constant entropy [1/Pa] */
#define MORVE_CP 15                          /* [J/(mol K)] */
#define MORVE_CV 16                          /* [J/(mol K)] */
#define MORVE_THERMAL_PRESSURE 50            /* dP/dT at constant volume [Pa/K] */
#define MORVE_ISENTROPIC_THERMAL_PRESSURE 17 /* dP/dT at constant entropy [Pa/K] */
#define MORVE_JOULE_THOMSON 19               /* dT/dP at constant enthalpy [K/Pa] */
#define MORVE_SPEED_OF_SOUND 114             /* [m/s] */
#define MORVE_HILDEBRAND 13                  /* entry of the Hildebrand parameter [-] */
#define MORVE_PHASE_INDICATOR 21             /* cross term of the compressibility [1/(Pa K)] */

/* Models, codes of SHMLD0. GETMORVEMODELS lists all of them with what each can compute. */
#define MORVE_BWRS 4
#define MORVE_NRTL 23
#define MORVE_PENG_ROBINSON 27
#define MORVE_VD2D1 38
#define MORVE_VARDO1 41 /* the model of the flashes of talix.h, and of the transport calls */
#define MORVE_VARDO2 42
#define MORVE_VARDO3 43
#define MORVE_VARDO4 44
#define MORVE_VARDO5 45
#define MORVE_VARDO95 46
#define MORVE_SRK 47
#define MORVE_IDEAL_GAS_MODEL 85
#define MORVE_VAN_DER_WAALS 121
#define MORVE_SRK_SIMSCI 133
#define MORVE_SRK_ASPEN 138

/* Methods of SPSAT0. */
#define MORVE_ANTOINE 3
#define MORVE_PSAT_SECOND_DEFAULT 5 /* Frost-Kalkwarf or Antoine set, else Antoine */
#define MORVE_PSAT_DEFAULT 36       /* Wagner, else Frost-Kalkwarf, else Antoine, else extended Antoine */
#define MORVE_WAGNER 60
#define MORVE_FROST_KALKWARF 80
#define MORVE_PSAT_GIVEN 85 /* PSGIVEN itself */
#define MORVE_ANTOINE_EXTENDED 144

/* Methods of the transport calls. */
#define MORVE_STERNLING_SAMISH 48
#define MORVE_THODOS_WILKE_DEAN 51
#define MORVE_LIVITHEC 92
#define MORVE_MIXTURE 94
#define MORVE_OLD_STERNLING_SAMISH 104

/* Requests of the transport calls. */
#define MORVE_VALUE 1
#define MORVE_DERIVATIVE 2
#define MORVE_BOTH 3

/* What an override call does. */
#define MORVE_READ 86
#define MORVE_WRITE 87
#define MORVE_LIST 0 /* names alone */

/* Sections of SURPC0 and SURBI0 that are named after no model and no method. */
#define MORVE_SECTION_GENERAL 0
#define MORVE_SECTION_GROUPS 7
#define MORVE_SECTION_IDEAL_CP 15
#define MORVE_SECTION_LIQUID_DENSITY 34
#define MORVE_SECTION_SOLID 79
#define MORVE_SECTION_ELEMENTS 126
#define MORVE_SECTION_LIQUID_VISCOSITY 127
#define MORVE_SECTION_LIQUID_CONDUCTIVITY 128
#define MORVE_SECTION_HEAT_OF_VAPORISATION 129
#define MORVE_SECTION_ASSOCIATION 135
#define MORVE_SECTION_HENRY 147

/* ---- Set-up, in its order ---------------------------------------------------------------------------------------- */

/*
 * SURPL0: the host platform.
 *
 *   CODE   in   25 serves every host of today; 12, 26, 30, 37, 54, 136, 137 are accepted too
 *   NFAIL  out  MORVE_OK; MORVE_FAILED (no such platform)
 */
void SURPL0(const int32_t* CODE, int32_t* NFAIL);

/*
 * SURPT0: the data directory.
 *
 *   PATH         in, out  directory of the data files, with its closing separator; trailing blanks do not count.
 *                         The install directory of talix.h holds it as its folder Zandor
 *   PATH_LENGTH           characters of PATH, at most 244
 *   MODE         in       "INPUT" stores PATH; "INFO" copies the stored one to PATH
 *   MODE_LENGTH           characters of MODE
 *   NFAIL        out      0 done, the one call where it is 0; 3 too long, the former directory stays; MORVE_INPUT for
 *                         another MODE
 */
void SURPT0(char* PATH, int32_t PATH_LENGTH, const char* MODE, int32_t MODE_LENGTH, int32_t* NFAIL);

/*
 * SHINI0: start a component list. All models leave the table, and no data are loaded.
 *
 *   N             in   number of components, 1 to 50
 *   CODES         in   N codes of the component bank, one behind the other, blanks included: " 1P " is methane.
 *                      `talix components` lists them
 *   CODES_LENGTH       characters of CODES, at least N times WIDTH
 *   WIDTH         in   characters of each code, 4 as a rule
 *   NFAIL         out  MORVE_OK; MORVE_RANGE (N; the former list stays, without models and data); MORVE_INPUT (CODES too
 *                      short, WIDTH below 1; nothing is changed)
 */
void SHINI0(const int32_t* N, const char* CODES, int32_t CODES_LENGTH, const int32_t* WIDTH, int32_t* NFAIL);

/*
 * SHMLD0: select a model together with those that it depends on.
 *
 *   CODE   in   model, see GETMORVEMODELS
 *   LNO    out  its slot, for SHMIX0; set when NFAIL is MORVE_OK
 *   NFAIL  out  MORVE_OK, also when the model was loaded before; MORVE_UNKNOWN (no such model); MORVE_RANGE (all ten
 *               slots are taken)
 *
 *   A model that is selected after SHDBS0 computes at once, but for 133 and 138: their parameters come from the files
 *   "sdbp2.dat" and "srkap.dat" of the data directory, which the bank does not hold; without them SHMIX0 ends with
 *   MORVE_NUMERICAL. Model 43 wants the fit of SURMD0 first.
 */
void SHMLD0(const int32_t* CODE, int32_t* LNO, int32_t* NFAIL);

/*
 * SHDBS0: load the data of the component list and of the selected models from the data directory.
 *
 *   NFAIL  out  MORVE_OK; MORVE_FAILED (a data file is missing or not readable); MORVE_UNKNOWN (a component is not in the
 *               bank); MORVE_SEVERE_WARNING (constants of a pair are missing); MORVE_NOT_AVAILABLE (model 35). The ring
 *               names the file or the component. After a failure no property is computed
 *
 *   Messages of severity 1 tell of optional files that are missing: parameters of 133 and 138, "cpapur.dat",
 *   "cpabin.dat", "usrbin.dat". The load goes on.
 */
void SHDBS0(int32_t* NFAIL);

/*
 * SMDAO1: look a model up.
 *
 *   CODE  in   model
 *   LNO   out  the slot that holds it, 0 when none does
 */
void SMDAO1(const int32_t* CODE, int32_t* LNO);

/* ---- Properties -------------------------------------------------------------------------------------------------- */

/*
 * SHMIX0: properties of one phase at temperature, pressure and composition.
 *
 *   IPHTYP  in       MORVE_VAPOUR, MORVE_LIQUID or MORVE_GIBBS
 *   IROOTO  in       MORVE_REAL_ROOT or MORVE_PSEUDO_ROOT
 *   T       in       [K], above 1
 *   P       in       [Pa], above 1E-30
 *   NCOMP   in       number of components, 1 to that of the list: the first NCOMP are meant; -k: component k as a pure
 *                    one, and of all arrays entry k
 *   IC      in (50)  component index list; passed on to liquid models, read by none
 *   X       in (50)  amounts of the components [mol]; need not sum to 1. Finite numbers. An amount of 0 counts as a
 *                    fraction of 1E-26
 *   LNOV    in       slot of the model for the volume, 0 for none
 *   DV      in (3)   logicals: derivatives of Z with T, with P, with composition
 *   LNOF    in       slot for the fugacity coefficients, 0 for none
 *   DF      in (3)   their derivatives
 *   LNOH    in       slot for enthalpy, entropy and the reserved results, 0 for none
 *   IHTYPE  in       MORVE_TOTAL, MORVE_RESIDUAL or MORVE_IDEAL_GAS; read only with LNOH
 *   DH      in (3)   derivatives of enthalpy and entropy
 *   IRESRV  in (20)  codes of the reserved results that are wanted
 *   NRESRV  in       their number, 0 to 20
 *   IPHRTN  in, out  phase returned: MORVE_VAPOUR, MORVE_LIQUID or MORVE_NONE
 *   AMBIG   out      logical: the state has one root alone that could not be told apart, and IPHRTN is the phase that
 *                    was asked for (vapour for MORVE_GIBBS)
 *   ZFUG    out      compressibility factor of the model for fugacities [-]
 *   ZVOL    out      compressibility factor of the model for the volume [-]; the molar volume in m3/mol is
 *                    ZVOL * 8.314471 * T / P. With LNOV it carries the volume translation of the models that have one
 *   DZDT    out      T dZ/dT [-]
 *   DZDP    out      P dZ/dP [-]
 *   DZDN    out (50) n dZ/dn_i at constant T and P, n the total amount [-]
 *   FUG     out (50) ln of the fugacity coefficients [-]
 *   DFDT    out (50) T d(ln phi_i)/dT [-]: over T it is the plain derivative in 1/K
 *   DFDP    out (50) P d(ln phi_i)/dP [-]: over P it is the plain derivative in 1/Pa
 *   DFDN    out (50, 50)  n d(ln phi_i)/dn_j, symmetric [-]: the plain derivative for one mole in all
 *   H       out      enthalpy over RT [-]; times 8.314471 * T it is in J/mol. 0 for the ideal gas at "H-datum"
 *   DHDT    out      heat capacity at constant pressure over R [-]
 *   DHDP    out      P d(enthalpy)/dP over RT [-]
 *   DHDN    out (50) partial molar enthalpies over RT [-]
 *   S       out      entropy over R [-]; 0 for a pure ideal gas at "H-datum" and 1 bar
 *   DSDT    out      T dS/dT over R [-]
 *   DSDP    out      P dS/dP over R [-]
 *   DSDN    out (50) partial molar entropies over R [-]
 *   RESRV   out (20) reserved results in the order of IRESRV, 0 for an unknown code. With MORVE_RESIDUAL the codes 2,
 *                    17, 19 and 114 give 0, and the heat capacities are residual ones
 *   NFAIL   out      MORVE_OK; MORVE_INPUT (T, P, NCOMP, X, IHTYPE, a slot that holds no model); MORVE_NO_PARAMETERS (no
 *                    data are loaded; model 4 without critical data); MORVE_FAILED (nothing asked for); MORVE_NO_ROOT (no
 *                    root of the phase); MORVE_NOT_AVAILABLE (the model does not compute this); MORVE_NUMERICAL (a
 *                    parameter of the model vanishes); MORVE_NOT_CONVERGED (model 4)
 *                    On failure no result stands; ZFUG and ZVOL may be 1.23456789E+34
 *
 *   Results that were not asked for are left as they are. Model 4 computes volumes alone.
 *   Source   D.-Y. Peng, D. B. Robinson, Ind. Eng. Chem. Fundam. 15 (1976) 59 (27); G. Soave, Chem. Eng. Sci. 27 (1972)
 *            1197 (47); C. H. Twu et al., Fluid Phase Equilib. 69 (1991) 33 (133); P. M. Mathias, Ind. Eng. Chem. Process
 *            Des. Dev. 22 (1983) 385 (138); K. E. Starling, Fluid Thermodynamic Properties for Light Petroleum Systems
 *            (1973) (4); H. Renon, J. M. Prausnitz, AIChE J. 14 (1968) 135 and S. Dahl, M. L. Michelsen, AIChE J. 36
 *            (1990) 1829 (42); D. S. H. Wong, S. I. Sandler, AIChE J. 38 (1992) 671 (43)
 */
void SHMIX0(const int32_t* IPHTYP, const int32_t* IROOTO, const double* T, const double* P,
            const int32_t* NCOMP, const int32_t* IC, const double* X, const int32_t* LNOV, const int32_t* DV,
            const int32_t* LNOF, const int32_t* DF, const int32_t* LNOH, const int32_t* IHTYPE,
            const int32_t* DH, const int32_t* IRESRV, const int32_t* NRESRV, int32_t* IPHRTN, int32_t* AMBIG,
            double* ZFUG, double* ZVOL, double* DZDT, double* DZDP, double* DZDN, double* FUG, double* DFDT,
            double* DFDP, double* DFDN, double* H, double* DHDT, double* DHDP, double* DHDN, double* S,
            double* DSDT, double* DSDP, double* DSDN, double* RESRV, int32_t* NFAIL);

/*
 * SPSAT0: vapour pressure of a pure component by a correlation of the bank.
 *
 *   T        in   [K], above 0
 *   PSGIVEN  in   result of method MORVE_PSAT_GIVEN [Pa]
 *   ICOMP    in   component, 1 to the number of the list
 *   VALUE    in   logical: PS wanted
 *   DERIV    in   logical: DPS wanted
 *   METHOD   in   see "Methods of SPSAT0"
 *   PS       out  vapour pressure [Pa]
 *   DPS      out  dPS/dT [Pa/K]
 *   NFAIL    out  MORVE_OK; MORVE_INPUT (T, ICOMP); MORVE_MODEL_ERROR (the component has no set for the method);
 *                 MORVE_NOT_AVAILABLE (no such method); MORVE_NO_PARAMETERS (no data are loaded)
 *   Source   W. Wagner, Cryogenics 13 (1973) 470; A. A. Frost, D. R. Kalkwarf, J. Chem. Phys. 21 (1953) 264
 */
void SPSAT0(const double* T, const double* PSGIVEN, const int32_t* ICOMP, const int32_t* VALUE,
            const int32_t* DERIV, const int32_t* METHOD, double* PS, double* DPS, int32_t* NFAIL);

/* ---- Transport. Model 41 must be loaded: it gives the density and the heat capacity that the methods need. --------- */

/*
 * SVVIM1, SLVIM1: viscosity of a vapour, of a liquid.
 *
 *   T, P     in       [K], [Pa], above 0
 *   X        in (50)  mole fractions; SVVIM1 takes them as they are, SLVIM1 normalises them
 *   NC       in       number of components, 1 to that of the list
 *   IC       in (50)  component index list; read by none
 *   MODE     in       MORVE_VALUE; MORVE_DERIVATIVE and MORVE_BOTH end with MORVE_NOT_AVAILABLE, with the value set for
 *                     MORVE_BOTH
 *   METHOD   in       vapour: MORVE_THODOS_WILKE_DEAN, MORVE_MIXTURE; liquid: MORVE_LIVITHEC, MORVE_MIXTURE,
 *                     MORVE_STERNLING_SAMISH, MORVE_OLD_STERNLING_SAMISH
 *   ETA      out      [mPa s]
 *   DETA     out      there is no derivative: untouched or 0
 *   STATUS   out      MORVE_OK; MORVE_INPUT (T, P, X, NC); MORVE_NO_EQUATION_OF_STATE; MORVE_NO_ROOT (the phase found is
 *                     another one); MORVE_NOT_AVAILABLE (method, derivative); MORVE_UNKNOWN (a component has no data for
 *                     the method); MORVE_NO_PARAMETERS (no data are loaded)
 *   Source   L. I. Stiel, G. Thodos, AIChE J. 7 (1961) 611; C. R. Wilke, J. Chem. Phys. 18 (1950) 517; D. E. Dean,
 *            L. I. Stiel, AIChE J. 11 (1965) 526; J. F. Ely, H. J. M. Hanley, Ind. Eng. Chem. Fundam. 20 (1981) 323
 */
void SVVIM1(const double* T, const double* P, const double* X, const int32_t* NC, const int32_t* IC,
            const int32_t* MODE, const int32_t* METHOD, double* ETA, double* DETA, int32_t* STATUS);
void SLVIM1(const double* T, const double* P, const double* X, const int32_t* NC, const int32_t* IC,
            const int32_t* MODE, const int32_t* METHOD, double* ETA, double* DETA, int32_t* STATUS);

/*
 * STCVM1, STCLM1: thermal conductivity of a vapour, of a liquid. Arguments as above, and
 *
 *   METHOD   in       vapour: MORVE_THODOS_WILKE_DEAN, MORVE_MIXTURE; liquid: MORVE_LIVITHEC, MORVE_MIXTURE
 *   LAMBDA   out      [W/(m K)]
 *   DLAMBDA  out      there is no derivative: untouched or 0
 *   Source   A. Eucken, Phys. Z. 14 (1913) 324; J. F. Ely, H. J. M. Hanley, Ind. Eng. Chem. Fundam. 22 (1983) 90;
 *            C. C. Li, AIChE J. 22 (1976) 927
 */
void STCVM1(const double* T, const double* P, const double* X, const int32_t* NC, const int32_t* IC,
            const int32_t* MODE, const int32_t* METHOD, double* LAMBDA, double* DLAMBDA, int32_t* STATUS);
void STCLM1(const double* T, const double* P, const double* X, const int32_t* NC, const int32_t* IC,
            const int32_t* MODE, const int32_t* METHOD, double* LAMBDA, double* DLAMBDA, int32_t* STATUS);

/* ---- Constants by name ------------------------------------------------------------------------------------------- */

/*
 * SURMD0, SURBI0, SURPC0: read or replace the constants of a model, of a pair, of a component. docs/engine.md lists the
 * keys of every section with their units.
 *
 *   NKEYS        out      keys of the section, 0 when it does not apply
 *   KEYS         out      NKEYS names of WIDTH characters each, one behind the other
 *   KEYS_LENGTH           characters of KEYS, at least 20 times WIDTH
 *   WIDTH        in       characters of a key, above 0; 10 hold every name
 *   VALUES       in, out (20)  one value a key, in the same order
 *   ACTION       in       MORVE_READ fills VALUES; MORVE_WRITE takes all of them, so read them first and change what is
 *                         to change; MORVE_LIST, and any other, gives the names alone
 *   MODEL        in       section of SURMD0: 43, 23, 85, or 55 to 58
 *   ICOMP, JCOMP in       components of the list, counted from 1; gas and solvent for Henry data
 *   SECTION      in       pair: 41 (also 27, 47, 121), 23 (also 42, 43, 44), 135, 147
 *                         component: 0, 3, 5, 7, 15, 29, 34, 36, 41 to 45, 55 to 58, 60, 79, 80, 126 to 129, 135, 144, 147
 *   NFAIL        out      MORVE_OK; MORVE_NOT_AVAILABLE (no such section, component or pair); MORVE_INPUT (WIDTH,
 *                         KEYS_LENGTH, or a value to write that is no finite number: nothing is written);
 *                         MORVE_NO_PARAMETERS (pair or component while no data are loaded). After a write of section 43
 *                         also what the fit of its pair constants found
 *
 *   A write takes effect with the next property call. Two things are done by a write alone, not by a load: the fit of
 *   the pair constants of model 43, by a write of its section ("Tkij", "Pkij"), and "H-datum", by a write of section 85.
 */
void SURMD0(int32_t* NKEYS, char* KEYS, int32_t KEYS_LENGTH, const int32_t* WIDTH, double* VALUES,
            const int32_t* ACTION, const int32_t* MODEL, int32_t* NFAIL);
void SURBI0(int32_t* NKEYS, char* KEYS, int32_t KEYS_LENGTH, const int32_t* WIDTH, double* VALUES,
            const int32_t* ACTION, const int32_t* ICOMP, const int32_t* JCOMP, const int32_t* SECTION,
            int32_t* NFAIL);
void SURPC0(int32_t* NKEYS, char* KEYS, int32_t KEYS_LENGTH, const int32_t* WIDTH, double* VALUES,
            const int32_t* ACTION, const int32_t* ICOMP, const int32_t* SECTION, int32_t* NFAIL);

/* ---- What the engine tells about itself -------------------------------------------------------------------------- */

/* GETMORVEERRORCOUNT: messages in the error ring, 0 to 15. The ring keeps the last fifteen of all calls. */
void GETMORVEERRORCOUNT(int32_t* COUNT);

/*
 * GETMORVEERROR: one message of the error ring.
 *
 *   K         in   1, the oldest, to COUNT
 *   SEVERITY  out  1 a warning, 3 a failure
 *   NAME      out  routine that said it, NAME_LENGTH characters; 6 hold every name
 *   TEXT      out  the message, TEXT_LENGTH characters; 255 hold every message
 *   NFAIL     out  MORVE_OK; MORVE_RANGE (K; nothing else is written)
 */
void GETMORVEERROR(const int32_t* K, int32_t* SEVERITY, char* NAME, int32_t NAME_LENGTH, char* TEXT,
                   int32_t TEXT_LENGTH, int32_t* NFAIL);

/* CLEARMORVEERRORS: empties the error ring. */
void CLEARMORVEERRORS(void);

/*
 * GETMORVECODETEXT: the text of a code: of a status, a phase, a model, a class, a method, a reserved result.
 *
 *   CODE   in   1 to 147
 *   TEXT   out  TEXT_LENGTH characters, blank for another code; 31 hold every text. Status 98 reads "no", that is, no
 *               failure, and 125 "yes"
 */
void GETMORVECODETEXT(const int32_t* CODE, char* TEXT, int32_t TEXT_LENGTH);

/*
 * GETMORVEMODELS: the models that SHMLD0 takes.
 *
 *   COUNT     out       their number, MORVE_MODEL_COUNT
 *   CODES     out (40)  the codes
 *   CLASSES   out (40)  the class of each, a code: 75 equation of state, 90 liquid, 83 hydrate, 79 freeze out, 131 steam,
 *                       10 pseudo-components
 *   FUGACITY, VOLUME, ENTHALPY  out (40)  logicals: what SHMIX0 computes with it. A model with none of them is in the
 *                       table of models but has no calculation in this version
 */
void GETMORVEMODELS(int32_t* COUNT, int32_t* CODES, int32_t* CLASSES, int32_t* FUGACITY, int32_t* VOLUME,
                    int32_t* ENTHALPY);

#ifdef __cplusplus
}
#endif

#endif /* TALIX_MORVE_H */
