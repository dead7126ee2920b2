#pragma once
// The help pages shown by "h" and the Help button: mouse, keyboard and movie control.

extern const char* const kMouseHelpPage;
extern const char* const kKeyboardHelpPage;
extern const char* const kMovieHelpPage;
