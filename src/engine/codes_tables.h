// Rows of the code table: 146 texts, the row number is the code.
#pragma once

#include <array>
#include <string_view>

namespace talix {

inline constexpr auto kCodeTexts = std::to_array<std::string_view>({
    "A-excess",                        // 1
    "Adiabatic pressure cf.",          // 2
    "Antoine",                         // 3
    "Benedict-Webb-Rubin-Starling",    // 4
    "TOLK model default value",        // 5
    "CUBIC",                           // 6
    "UNIFAC-DM",                       // 7
    "ELBRO",                           // 8
    "Flash failed",                    // 9
    "Keldrin",                         // 10
    "G-excess",                        // 11
    "HP9000 unix workstation",         // 12
    "Hildebrand parameter",            // 13
    "IBM 3290 mainframe",              // 14
    "Isobaric heat capacity",          // 15
    "Isochoric heat capacity",         // 16
    "Isoentropic thermal press. cf.",  // 17
    "Isothermal pressure cf.",         // 18
    "Joule-Thomson cf.",               // 19
    "Lyngby UNIFAC",                   // 20
    "Meijer's phase indicator",        // 21
    "Modified Huron Vidal 2",          // 22
    "NRTL",                            // 23
    "Negative molefraction",           // 24
    "PC with FTN77 compiler",          // 25
    "PC with Lahey compiler",          // 26
    "Peng-Robinson",                   // 27
    "Perturbed Hard Sphere Chain",     // 28
    "Poynting factor",                 // 29
    "RS6000 unix workstation",         // 30
    "Restart from input deck",         // 31
    "Restart initialise",              // 32
    "Restart save input deck",         // 33
    "Riedel",                          // 34
    "SAFT",                            // 35
    "Bramm default method",            // 36
    "Silicon Graphics Indigo",         // 37
    "Vd2d1",                           // 38
    "Vardo",                           // 39
    "Vardo phase envelope",            // 40
    "Vardo1",                          // 41
    "Vardo2",                          // 42
    "Vardo3",                          // 43
    "Vardo4",                          // 44
    "Vardo5",                          // 45
    "Vardo95",                         // 46
    "Soave-Redlich-Kwong",             // 47
    "Sternling-Samish",                // 48
    "Thermal expansion cf.",           // 49
    "Thermal pressure cf.",            // 50
    "Thodos-Wilke-Dean",               // 51
    "UNIFAC",                          // 52
    "UNIQUAC",                         // 53
    "VAX station",                     // 54
    "WP1",                             // 55
    "WP2",                             // 56
    "WP3",                             // 57
    "WP4",                             // 58
    "Waals-Platteeuw",                 // 59
    "Wagner",                          // 60
    "alkane",                          // 61
    "alkyl-benzene",                   // 62
    "alkyl-cyclo-hexane",              // 63
    "aromatic",                        // 64
    "bubble point",                    // 65
    "classical",                       // 66
    "classical 2-d",                   // 67
    "clear",                           // 68
    "compound",                        // 69
    "condensed",                       // 70
    "continue",                        // 71
    "dew point",                       // 72
    "enthalpy",                        // 73
    "entropy",                         // 74
    "equation of state",               // 75
    "fatal error",                     // 76
    "fluid",                           // 77
    "free volume UNIFAC",              // 78
    "freeze out",                      // 79
    "frost kalkwarf",                  // 80
    "gas",                             // 81
    "gibbs free energy",               // 82
    "hydrate",                         // 83
    "ice model",                       // 84
    "ideal gas",                       // 85
    "information",                     // 86
    "input",                           // 87
    "isotherm",                        // 88
    "linear UNIFAC",                   // 89
    "liquid",                          // 90
    "liquid UNIFAC",                   // 91
    "livithec",                        // 92
    "mfd code",                        // 93
    "mixture",                         // 94
    "model error",                     // 95
    "modified coventional",            // 96
    "naphthene",                       // 97
    "no",                              // 98
    "no parameters",                   // 99
    "no root",                         // 100
    "nonstandard",                     // 101
    "not available",                   // 102
    "not converged",                   // 103
    "old Sternling-Samish",            // 104
    "output",                          // 105
    "parafinic",                       // 106
    "polynomial corr.",                // 107
    "pressure",                        // 108
    "pseudo root",                     // 109
    "range",                           // 110
    "residual",                        // 111
    "severe warning",                  // 112
    "solid",                           // 113
    "speed of sound",                  // 114
    "stop",                            // 115
    "supercritical",                   // 116
    "temperature",                     // 117
    "total",                           // 118
    "unknown",                         // 119
    "unstable",                        // 120
    "van der Waals",                   // 121
    "vapour",                          // 122
    "volume",                          // 123
    "warning",                         // 124
    "yes",                             // 125
    "Element structure",               // 126
    "Liquid viscosity",                // 127
    "Thermal conductivity",            // 128
    "Heat of vaporisation",            // 129
    "Surface tension cf.",             // 130
    "steam",                           // 131
    "Solid NaCl",                      // 132
    "SRK-SimSci",                      // 133
    "Regular solution",                // 134
    "CPA",                             // 135
    "Silicon Graphics Octane",         // 136
    "SUN unix workstation",            // 137
    "SRK-Aspen",                       // 138
    "WPCPA1",                          // 139
    "WPCPA2",                          // 140
    "WPCPA3",                          // 141
    "WPCPA4",                          // 142
    "ice model cpa",                   // 143
    "Antoine",                         // 144
    "Dipper liqdens",                  // 145
    "UF-DMD group counts",             // 146
});
static_assert(kCodeTexts.size() == 146);

}  // namespace talix
