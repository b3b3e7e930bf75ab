"""Short names: at most eight or twelve characters, unique, readable."""

import re

LENGTH = 8
# The library takes these two letters for the light gas itself.
LIGHT = ("H2", "HE", "N2")
# Fragments of names; the longest goes first.
FRAGMENTS = (
    ("nitrogen", "Nitrogen"), ("hydrogen", "Hyd"), ("ethylene glycol", "EG"), ("propylene glycol", "PG"),
    ("trans-", "t"), ("cis-", "c"), ("alpha-", "a"), ("beta-", "b"), ("epsilon-", "e"), ("gamma-", "g"),
    ("tert-", "t"), ("sec-", "s"), ("iso", "i"), ("cyclo", "Cy"), ("bromo", "Br"), ("chloro", "Cl"), ("fluoro", "F"),
    ("iodo", "I"), ("nitro", "NO2"), ("amino", "Am"), ("hydroxy", "OH"), ("methoxy", "MeO"), ("ethoxy", "EtO"),
    ("phenyl", "Ph"), ("vinyl", "Vi"), ("methyl", "M"), ("ethyl", "E"), ("propyl", "Pr"), ("butyl", "Bu"),
    ("pentyl", "Pe"), ("hexyl", "Hx"), ("heptyl", "Hp"), ("octyl", "Oc"), ("nonyl", "No"), ("decyl", "De"),
    ("benzyl", "Bzl"), ("benzene", "Bz"), ("toluene", "Tol"), ("naphthalene", "Nap"), ("siloxane", "Slx"),
    ("silane", "Sil"), ("mercaptan", "SH"), ("sulphide", "S"), ("chloride", "Cl"), ("bromide", "Br"),
    ("fluoride", "F"), ("acetate", "Ac"), ("formate", "Fo"), ("propionate", "Prp"), ("butyrate", "Bty"),
    ("acrylate", "Acr"), ("glycol", "Gl"), ("ether", "Ox"), ("ketone", "One"), ("anhydride", "Anh"),
    ("phenol", "PhOl"), (" acid", "Ac"), ("aniline", "Anil"), ("amine", "Am"), ("pentane", "C5"), ("hexane", "C6"),
    ("heptane", "C7"), ("octane", "C8"), ("nonane", "C9"), ("decane", "C10"), ("butane", "C4"), ("propane", "C3"),
    ("ethane", "C2"), ("methane", "C1"), ("pentene", "C5e"), ("hexene", "C6e"), ("heptene", "C7e"), ("octene", "C8e"),
    ("butene", "C4e"), ("pentadecane", "C15"), ("undecane", "C11"), ("dodecane", "C12"), ("heneicosane", "C21"),
    ("docosane", "C22"), ("tricosane", "C23"), ("tetracosane", "C24"), ("pentacosane", "C25"), ("hexacosane", "C26"),
    ("heptacosane", "C27"), ("octacosane", "C28"), ("nonacosane", "C29"), ("triacontane", "C30"),
    ("dotriacontane", "C32"), ("hexatriacontane", "C36"), ("tetracontane", "C40"), ("nonene", "C9e"),
    ("decene", "C10e"), ("undecene", "C11e"), ("dodecene", "C12e"), ("tridecene", "C13e"), ("tetradecene", "C14e"),
    ("pentadecene", "C15e"), ("hexadecene", "C16e"), ("heptadecene", "C17e"), ("octadecene", "C18e"),
    ("nonadecene", "C19e"), ("eicosene", "C20e"), ("docosene", "C22e"), ("pentyne", "C5y"), ("hexyne", "C6y"),
    ("heptyne", "C7y"), ("octyne", "C8y"), ("nonyne", "C9y"), ("decyne", "C10y"), ("butyne", "C4y"),
    ("nonanol", "C9ol"), ("decanol", "C10ol"), ("undecanol", "C11ol"), ("dodecanol", "C12ol"),
    ("tridecanol", "C13ol"), ("tetradecanol", "C14ol"), ("pentadecanol", "C15ol"), ("hexadecanol", "C16ol"),
    ("heptadecanol", "C17ol"), ("octadecanol", "C18ol"), ("nonadecanol", "C19ol"), ("eicosanol", "C20ol"),
    ("butadiene", "C4DE"), ("pentadiene", "C5DE"), ("hexadiene", "C6DE"), ("diol", "DiOl"), ("pentanol", "C5ol"),
    ("hexanol", "C6ol"), ("heptanol", "C7ol"), ("octanol", "C8ol"), ("butanol", "C4ol"), ("propanol", "C3ol"),
    ("ethanol", "C2ol"), ("pentan", "C5"), ("hexan", "C6"), ("heptan", "C7"),
)

# Counts of equal parts, at the start of a name or behind a number.
COUNTS = (("di", "2"), ("tri", "3"), ("tetra", "4"), ("penta", "5"), ("hexa", "6"), ("hepta", "7"), ("octa", "8"))


def _counted(text):
    for word, digit in COUNTS:
        text = re.sub(rf"(?<![a-z]){word}(?=[bcefhimnpstv-])(?!n[eo]|cos|dec)", digit, text)
    return text


def _plain(text):
    return re.sub(r"[^A-Za-z0-9]", "", text)


def _allowed(text):
    """Keeps clear of the light gases, whatever the case: the second character goes."""
    while text.upper().startswith(LIGHT):
        text = text[0] + text[2:]
    return text


def interface_name(name, taken):
    """Capital letters and digits, at most twelve; not among TAKEN."""
    return _brief(name, taken, 12, lambda text: text).upper()


def short_name(name, taken):
    """A short name for NAME that is not among TAKEN (upper case)."""
    return _brief(name, taken, LENGTH, _allowed)


def _brief(name, taken, length, allowed):
    brief = allowed(_plain(name[:1].upper() + name[1:]))
    if len(brief) > length:
        text = _counted(name)
        for fragment, letters in sorted(FRAGMENTS, key=lambda f: -len(f[0])):
            text = text.replace(fragment, letters)
        brief = allowed(_plain(text))
        brief = brief[:1].upper() + brief[1:]
    stem, brief, n = brief, brief[:length], 1
    while brief.upper() in taken or not brief:
        n += 1
        brief = stem[: length - len(str(n))] + str(n)
    return brief
