#pragma once
// Stroke text of the mono-spaced font drawn as one array of line segments (internal to the
// label drawing).

// Draws text as the stroke font would at the current matrix (left-aligned at the origin, one
// font unit per drawing unit), in one draw. False, with nothing drawn, when the glyphs could
// not be read back (feedback unavailable, not in render mode) or the text has a character
// outside printable ASCII: the caller then draws it character by character.
bool drawStrokeTextSegments(const char* text);
