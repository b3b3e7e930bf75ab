/*
 * Talix: phase equilibrium and thermodynamic properties of mixtures. The calls of libtalix.so.
 *
 * Conventions
 *   Every argument is a pointer, but for the length of a text, which is passed by value directly behind its
 *   text. Integers have 32 bits, reals are 32-bit floats. Tables are stored with the first index fastest and
 *   are counted from 1 in this description: row r, column c of SCAL is SCAL[(r - 1) + 52 * (c - 1)], of
 *   TPROPS it is TPROPS[(r - 1) + 15 * (c - 1)]. Texts are blank-padded, not zero-terminated. A Fortran program
 *   binds the calls with bind(C, name="TALIX") and takes the lengths as value arguments.
 *
 *   The library keeps its state between calls, is not reentrant and starts no thread: calls must not overlap.
 *   No C++ exception leaves a call. A call with a null pointer changes nothing.
 *
 * Order of use
 *   1. SETTALIXINSTALL once (data directory), SETTALIXUSAGE if message lines are not wanted on standard error.
 *   2. TALIX once for each state. The first call, and each call with another component list, loads the
 *      component data; all other calls use what is loaded.
 */
#ifndef TALIX_TALIX_H
#define TALIX_TALIX_H

#include <stdint.h>

#if defined(_WIN32)
#if defined(TALIX_EXPORTS)
#define TALIX_CALL __declspec(dllexport)
#else
#define TALIX_CALL __declspec(dllimport)
#endif
#else
#define TALIX_CALL __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Sizes of the tables. */
#define TALIX_MAX_COMPONENTS 50
#define TALIX_SCAL_ROWS 52
#define TALIX_SCAL_COLUMNS 8
#define TALIX_PROPERTY_ROWS 15
#define TALIX_PROPERTY_COLUMNS 3
#define TALIX_CATALOGUE_RECORDS 1246
#define TALIX_NAME_LENGTH 28

/*
 * TALIX: one flash and the properties of its phases.
 *
 *   NC      in       number of components, 0 to 50
 *   T       in, out  temperature [degrees Celsius], at most 1500
 *   P       in, out  pressure [bar], 0 to 900
 *                    T and P: what the code does not give is found; its value on entry is the start value
 *   FRV     in, out  vapour fraction [mol/mol], 0 to 1. For codes 6 and 7 it is given. For an isothermal flash it
 *                    is the start value; pass 1, since a mixture whose phases are alike gets back the fraction
 *                    that it came with. For codes 1 to 4 it is set by the call
 *   UNIT    in, out  basis of flows, one character: 'W' mass [kg, g/g], 'M' moles [kmol, mol/mol]. 'w' and 'm'
 *                    are accepted and overwritten by the capital. Any other letter: feed in moles, results in
 *                    mass. On the mass basis the molar masses turn kg into kmol
 *   UNIT_LENGTH      length of UNIT; not read
 *   IFLASH  in       1   bubble pressure at T
 *                    2   bubble temperature at P
 *                    3   dew pressure at T
 *                    4   dew temperature at P
 *                    5   isothermal flash at T and P
 *                    6   pressure at T and FRV
 *                    7   temperature at P and FRV
 *                    8   adiabatic flash: temperature and split at P and the total enthalpy SCAL(NC+2,2)
 *                    9   the same by nested searches, slower; code 8 falls back on it by itself
 *                    10  fast isothermal flash at T and P
 *                    33  no flash: properties of the feed, as vapour in column 1 and as liquid in column 2
 *                    other codes: no flash, the results are assembled from the flows of the call before
 *                    Codes 1 to 4 give properties and composition of the phase that is about to form, too. A flow
 *                    of about 2E-8 mol stands for the phase; at level 1 of SETTALIXVERIFY it is one of a feed of about
 *                    1. At level 0 the composition is that of the last but one iteration
 *   SCAL    in, out  52 rows by 8 columns, see below
 *   TPROPS  out      15 rows by 3 columns, see below
 *   STR     out      message. Blank: the results stand. First character a full stop: a warning, the results
 *                    stand. Anything else: a failure; SCAL, TPROPS, T, P, FRV keep what they held, bit for bit, but
 *                    for the cleared target SCAL(NC+2,2) and the capital of UNIT
 *   STR_LENGTH       characters of STR, at least 5; 120 hold every message. A longer message is cut
 *
 *   SCAL, with one row for each component in rows 1 to NC, totals in row NC+1, enthalpies in row NC+2. Flows and
 *   fractions are on the basis UNIT.
 *
 *     column  rows 1..NC                      row NC+1                     row NC+2
 *     1       in: component number            -                            -
 *     2       in: feed flow                   total feed                   total enthalpy
 *     3       vapour flow                     total vapour                 enthalpy of the vapour
 *     4       liquid flow                     total liquid                 enthalpy of the liquid
 *     5       second-liquid flow              total second liquid          enthalpy of the second liquid
 *     6       vapour composition              vapour fraction of the feed  -
 *     7       liquid composition              liquid fraction              -
 *     8       second-liquid composition       second-liquid fraction       -
 *
 *   Enthalpies are mole flow times J/mol divided by 1000: with kmol they are MJ. SCAL row NC+2, column 2 is the
 *   target of codes 8 and 9, not 0 for code 8 at level 0; for all other codes it is set to 0 on entry. Component numbers
 *   are 2 to 1246 (GETTALIXPROPS lists them); they are cut to integers.
 *
 *   TPROPS, column 1 vapour, 2 liquid, 3 second liquid; a phase that is absent has zeros. All rows are per
 * mole or per gram as their unit says, whatever the basis of the flows.
 *
 *     row  quantity                              unit
 *     1    mean molar mass                       g/mol
 *     2    density                               kg/m3
 *     3    isothermal compressibility            1/bar
 *     4    ideal-gas enthalpy                    J/mol
 *     5    ideal-gas entropy                     J/(mol K)
 *     6    ideal-gas heat capacity               J/(mol K)
 *     7    enthalpy                              J/mol
 *     8    entropy                               J/(mol K)
 *     9    heat capacity at constant volume      J/(g K)
 *     10   heat capacity at constant pressure    J/(g K)
 *     11   speed of sound                        m/s
 *     12   Joule-Thomson coefficient             K/bar
 *     13   viscosity                             mPa s
 *     14   thermal conductivity                  W/(m K)
 *     15   surface tension                       mN/m
 *
 *   Viscosity and conductivity are 0 where the library has no value for them. The surface tension stands with the
 *   liquids and is that against the vapour beside them, or against an ideal gas of the liquid's composition where there
 *   is no vapour; it is 0 where that is not less dense than the liquid. Conductivities of liquids are those at 1 bar.
 *
 *   Enthalpies and entropies of the ideal gas are 0 at 273.15 K, entropies at 1 bar. A one-phase mixture far
 *   from its phase boundary is reported in the column of the phase that the equation of state identifies; above
 *   the pseudo-critical temperature that is the vapour column.
 *
 *   Two levels, chosen by SETTALIXVERIFY.
 *
 *   Level 0: the flashes alone. Code 3 starts from low pressure and as a rule gives the lower one of two dew
 *   pressures; the upper one is not sought. Code 7 gives no text when it finds no temperature: its answer then is a
 *   loose or a wrong one. So do codes 2, 4 and 7 when they run into 1 K or 1773.15 K, and codes 1, 3 and 6 when they
 *   run into 900 bar. Near and above the critical point of a mixture all of them may end with two phases that are
 *   alike, and codes 5 and 10 report two such phases for many a dense gas. A second liquid is not sought.
 *
 *   Level 1, as from the start: what a flash finds is checked in 64-bit reals, and where it does not hold the state is
 *   solved anew; where the check cannot settle it, or no such state exists, a text says so. No answer is left loose.
 *     - Codes 5 and 10: one phase is stable against every other phase that the search tries; two phases have equal
 *       fugacities, differ, and have a lower Gibbs energy than the feed as one phase. A feed that is proven to be one
 *       phase is not flashed at all.
 *     - Codes 1 to 4, 6 and 7: two different phases in equilibrium at the fraction that was asked for. Where there are
 *       several such states (a gas may have two dew pressures at one temperature, and two dew temperatures at one
 *       pressure) the one nearest to the start value counts: to P on entry, as the ratio of pressures, for codes 1, 3
 *       and 6 (a start value of 0 counts as 2 bar), to T on entry for codes 2, 4 and 7. Where there is none, the text
 *       names the limit that was passed. Where a liquid parts into two before anything boils, and the lighter one goes
 *       over into vapour without a jump, codes 1 to 4 give the point at which they part, with a warning; the lighter
 *       liquid then stands in the column of the vapour.
 *     - Codes 8 and 9: the checked state at the pressure that has the enthalpy. A target out of reach gets a text with
 *       the range of enthalpies at that pressure. Code 8 takes a target of 0 too.
 *     - Two liquids in equilibrium stand in the columns liquid and second liquid with a vapour fraction of 0; in the
 *       first the denser one, by its molar volume over the mean critical volume of its components. Where a third
 *       phase would lower the Gibbs energy further the best two phases stand, and a warning that begins with a full
 *       stop names the third.
 *     - The smallest flow of a phase, 2E-8 mol, is one of a feed of about 1: a total feed outside 0.1 to 1E+4 mol is
 *       flashed as the same feed times a power of two, and its results are multiplied back, so that feeds of any size
 *       have the same fractions and properties. What is too small or too large is refused as at level 0.
 *     - A result does not depend on earlier calls. None is handed out that is not a finite number.
 *     - A call makes at most 20,500 engine calls with codes 1 to 7 and 10 and at most 100,000 with codes 8 and 9: the
 *       check at most 20,000, the rest within the step limits of the flashes. As a rule a check makes fewer than 70
 *       with codes 5, 8, 9 and 10, and 30 to some thousand with the others, which follow the saturation line where the
 *       answer of the flash does not settle which of several states is the nearest. In front of the check code 8 is
 *       searched without leaving out components; at level 0, where it does, it may make up to 950,000 in theory (fifty
 *       shortened feeds, ninety temperatures each, a hundred passes each; the most that was met is 90,000, with 44
 *       components).
 *     - A text that stands at the end is echoed once; the texts of a search that is mended are not.
 *
 *   A component list whose load failed is not tried again: every call with it ends with the reason in STR,
 *   until the list changes or SETTALIXINSTALL is called.
 *
 *   Failures (the name behind each text is that of the routine that found it):
 *     " Number of components not between 0 and 50, no calculation (TALIX)"
 *     " One of the component numbers is not a number, no calculation (TALIX)"
 *     " Temperature not between 0 and 1773 K, no calculation (TALIX)"
 *     " Pressure not between 0 and  900 bar, no calculation (TALIX)"
 *     " Pressure not above 0, no calculation (TALIX)"            codes without a flash
 *     " Fraction vapour not between 0 and 1, no calculation (TALIX)"
 *     " One of the components has a feed that is not a number, no calculation (TALIX)"
 *     " One of the components has a negative feed, no calculation (TALIX)"
 *     " No feed specified, no calculation (TALIX)"
 *     " Total feed rate greater than 1.0E+9, no calculation (TALIX)"  codes without a flash
 *     " Feed too small to form a phase, no calculation (TALIX)"  2.1E-8 mol or less
 *     " Component list not loaded, component number n not between 2 and 1246, no calculation (TALIX)"
 *     " Component list not loaded, no component has the number n, no calculation (TALIX)"
 *     " Component list not loaded, record n not readable, no calculation (TALIX)"
 *         the component file ends before the record of component n
 *     " Component list not loaded, data file not found or not readable, no calculation (TALIX)"
 *     " Component list not loaded, engine start failed at stage n, no calculation (TALIX)"
 *         stage 1 component list, 2 model, 3 databases, 4 reference temperature
 *     " Unable to find accurate specific heat, no calculation (TALIX)"  the tables are written
 *     " One feed stream negative or too big, no flash calculation (FLTP)"   above 1.0E+9
 *     " Total feed rate greater than 1.0E+9, no flash calculation (FLTP)"
 *     " Pressure not above 0, no flash calculation (FLTP)"
 *     " Flash unable to converge to a solution (FLTP)"
 *     " K-values unusually dependent on composition, no convergence (FLTP)"
 *     " Temperature not between 0 and 1773 K, no flash calculation (FLVT)"  below 1 K, codes 1, 3 and 6
 *     " Feed flow not between 1.0E-9 and 1.0E+9, no flash calculation (FLVT)"
 *     " No convergence after MAXIT iterations, calculation suspended(FLVT)"
 *     " Pressure not between 0 and  900 bar, no flash calculation (FLVP)"   a pressure of 0, codes 2, 4 and 7
 *     " Feed flow not between 1.0E-9 and 1.0E+9, no flash calculation (FLVP)"
 *     " No convergence after 80 iterations, calculation suspended (FLVP)"   codes 2, 4 and 8
 *     " Fraction vapour insolvable, non-condensables present (FLVP)"        codes 2, 4 and 8
 *     " Flash flow not between 1.0E-9 and 1.0E+9, no calculation (FLPQ)"     codes 8 and 9
 *     " Temperature not between 0 and 1773 K, no flash calculation (FLPQ)"  below 1 K, codes 8 and 9
 *     " Pressure not between 0 and  900 bar, no flash calculation (FLPQ)"   a pressure of 0, codes 8 and 9
 *     " Adiabatic flash did not converge in 80 iterations (FLPQ)"           codes 8 and 9
 *     " Adiabatic flash has changed enthalpy by xxxxx.xxxx% (FLPQ3)"        code 8; the tables are written
 *     " Pressure not above 0, no flash calculation (FLTP3)"                 code 10
 *     " Argument missing, no calculation (TALIX)"                a null pointer
 *     " Not enough memory, no calculation (TALIX)"               while a component list was loaded
 *   Failures at level 1 only, where ... stands for a number; the temperatures of these texts are in kelvin:
 *     " Isothermal flash could not be settled at ... K and ... bar (TALIX)"      codes 5 and 10
 *     " No bubble point at ... K (TALIX)", or "No dew point", or "No state with vapour fraction ..."; or at ... bar.
 *         Codes 1 to 4, 6 and 7. Behind the state stands what is known of the reason:
 *         ": above the cricondentherm of ... K"   ": above the cricondenbar of ... bar"
 *         ": above the critical temperature of ... K"   ": above the critical pressure of ... bar"
 *         ": above 900 bar"   ": none up to 900 bar"   ": none from 50 to 1200 K"
 *     " Saturation point could not be settled at ... K (TALIX)", or bar           codes 1 to 4, 6 and 7
 *     " Enthalpy of ... kJ/mol out of reach at ... bar: from ... to ... kJ/mol (TALIX)"  codes 8, 9
 *     " Adiabatic flash could not be settled at ... bar (TALIX)"                  codes 8 and 9
 *     " Target enthalpy is not a number, no calculation (TALIX)"                  codes 8 and 9
 *     " A result is not a number, no calculation (TALIX)"
 *   The texts about convergence above are those of level 0.
 *   Warnings, with results:
 *     ".Adiabatic flash is having convergence trouble (FLPQ)"                codes 8 and 9
 *     ".Warning: adiabatic flash only achieved by eliminating some components (FLPQ3)"  code 8
 *     ". A third phase, liquid, would lower the Gibbs energy further (TALIX)", or vapour  level 1, codes 1 to 10
 *     ". Enthalpy missed by ... kJ/mol: a third phase is left out at ... K (TALIX)"      level 1, codes 8 and 9: no two
 *         phases have the enthalpy; the nearest state stands
 */
TALIX_CALL void TALIX(int32_t* NC, float* T, float* P, float* FRV, char* UNIT, int32_t UNIT_LENGTH,
                      int32_t* IFLASH, float* SCAL, float* TPROPS, char* STR, int32_t STR_LENGTH);

/*
 * SETTALIXINSTALL: the install directory, without a separator behind it. Its folder Zandor holds the data
 * files. The next TALIX call loads its component list again.
 *
 *   PATH         in  the directory; back-slashes and, where the platform has them, slashes separate folders
 *   PATH_LENGTH      characters that PATH holds
 *   LEN          in  characters in use, at most 256 together with the file names behind them
 */
TALIX_CALL void SETTALIXINSTALL(const char* PATH, int32_t PATH_LENGTH, const int32_t* LEN);

/*
 * SETTALIXUSAGE: where a message goes besides STR. Without this call it goes to standard error.
 *
 *   USAGE1   in  stored, not used
 *   MSGHOOK  in  0: a line to unit MSGUNIT; any other value: to the line hook, which does nothing
 *   MSGUNIT  in  0 standard error, 6 standard output, any other (for instance -1) drops the line
 */
TALIX_CALL void SETTALIXUSAGE(const int32_t* USAGE1, const int32_t* MSGHOOK, const int32_t* MSGUNIT);

/*
 * SETTALIXVERIFY: whether a check stands behind the flashes. Kept until it is set again.
 *
 *   LEVEL  in  0: the flashes run alone. 1, as from the start: what a flash finds is checked and, where it does not
 *              hold, solved anew; see the levels at TALIX. Any other value, or a null pointer, changes nothing
 */
TALIX_CALL void SETTALIXVERIFY(const int32_t* LEVEL);

/*
 * TALIXERRORREPORT: appends to the file talix.err in the install directory which kinds of failures the flashes met
 * since the library was loaded, and in which order they last occurred. Nothing is written where there were none, or
 * where the file cannot be opened.
 */
TALIX_CALL void TALIXERRORREPORT(void);

/* CLEARSCAL, CLEARTPROPS: all entries of a 52 by 8 and of a 15 by 3 table become 0. */
TALIX_CALL void CLEARSCAL(float* SCAL);
TALIX_CALL void CLEARTPROPS(float* TPROPS);

/* NORMALISECOMPONENTS: divides each of N fractions by their sum. A sum of 0 is not guarded. */
TALIX_CALL void NORMALISECOMPONENTS(const int32_t* N, float* COMPONENTFRACTIONS);

/*
 * WEIGHTTOMOLE: mass fractions to mole fractions. Each call reads the whole component file.
 *
 *   ZANDORNOS        in       N component numbers
 *   N                in       number of entries
 *   WEIGHTFRACTIONS  in, out  N mass fractions; normalised in place
 *   MOLEFRACTIONS    out      N mole fractions; all 0 when a number has no molar mass in the component file
 */
TALIX_CALL void WEIGHTTOMOLE(const int32_t* ZANDORNOS, const int32_t* N, float* WEIGHTFRACTIONS,
                             float* MOLEFRACTIONS);

/*
 * GETTALIXPROPS: constants of all records of the component file. Entry i of an array belongs to component
 * number i; every array has 1246 entries. The six real arrays are cleared first.
 *
 *   COUNT      out  records read; 0 without a file
 *   OUTDCRITT  out  critical temperature [K]
 *   OUTDCRITP  out  critical pressure [MPa]
 *   OUTDMOLWT  out  molar mass [g/mol]
 *   OUTDAPBPT  out  normal boiling point [K]
 *   OUTDFRZPT  out  freezing point [K]
 *   OUTDHEATC  out  heat of combustion [J/mol]
 *   OUTPNAME   out  1246 names of NAME_LENGTH characters each, one behind the other
 *   NAME_LENGTH     characters of one name, normally 28
 */
TALIX_CALL void GETTALIXPROPS(int32_t* COUNT, float* OUTDCRITT, float* OUTDCRITP, float* OUTDMOLWT,
                              float* OUTDAPBPT, float* OUTDFRZPT, float* OUTDHEATC, char* OUTPNAME,
                              int32_t NAME_LENGTH);

/*
 * GETTALIXPROPSID: the same for record ID alone. STATUS is 0, or -1 on any failure, with zero values and a
 * blank name.
 */
TALIX_CALL void GETTALIXPROPSID(const int32_t* ID, float* CRITT, float* CRITP, float* MOLWT, float* APBPT,
                                float* FRZPT, float* HEATC, char* PNAME, int32_t NAME_LENGTH,
                                int32_t* STATUS);

/*
 * GETTALIXAPPROPS: correlation coefficients of all records, as they stand in the component file. The values
 * of one record stand side by side: OUTDCPV[8 * (i - 1)] is the first of component i. Entries beyond COUNT
 * are left alone.
 *
 *   OUTDCPV   out   8 values a record: ideal-gas heat capacity
 *   OUTDHVAP  out  17 values a record: heat of vaporisation
 *   OUTDDLIQ  out   3 values a record: liquid density
 *   OUTDWAG   out   4 values a record: vapour pressure
 */
TALIX_CALL void GETTALIXAPPROPS(int32_t* COUNT, float* OUTDCPV, float* OUTDHVAP, float* OUTDDLIQ,
                                float* OUTDWAG);

/* GETTALIXELEMENTS: atoms per molecule of all records, as reals. Entries beyond COUNT are left alone. */
TALIX_CALL void GETTALIXELEMENTS(int32_t* COUNT, float* NOCARBON, float* NOHYDROGEN, float* NONITROGEN,
                                 float* NOOXYGEN, float* NOSULPHUR, float* NOFLUORINE, float* NOCHLORINE,
                                 float* NOBROMINE, float* NOIODINE);

#ifdef __cplusplus
}
#endif

#endif /* TALIX_TALIX_H */
