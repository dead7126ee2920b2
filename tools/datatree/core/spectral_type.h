#pragma once
// Spectral class, subclass and luminosity class of a catalogue spectral-type string such
// as "A1V+DA", "K0IIIb", "B9.5Va", "kA2hA5mA7V" or "M".

#include <string>

struct SpectralType {
    std::string spectralClass = "---";    // one or two letters ("G", "DA", "WN"), "---" if none
    double number = 0.0;                  // subclass 0..10; 0 when the string gives none
    std::string luminosityClass = "---";  // "I", "II", "III", "IV" or "V", else "---"
};

// Rules:
// - The class is the first of O B A F G K M L T S C N R W D (with W and D taking a second
//   letter, as in "WN" or "DA"); in the metallic-line notation ("kA2hA5mA7V") the hydrogen
//   type after "h" is used.
// - The subclass is the number right after the class, kept only within [0, 10];
//   intermediate types after it ("K2/3III", "G8/K0III") are passed over.
// - The luminosity class is the Roman numeral after the subclass: its suffixes go (Ia, Iab,
//   IIIb, Va -> I, III, V), an intermediate class keeps its first part (IV-V, III/IV ->
//   IV, III), and a class outside I..V (VI, VII, a bare 0) gives "---". The old prefixes d
//   (dwarf), g (giant) and c (supergiant) give V, III and I; "sd" gives "---".
SpectralType parseSpectralType(const std::string& text);
