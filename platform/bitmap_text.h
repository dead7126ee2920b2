#pragma once
// Text in GLUT's bitmap fonts at a raster position.

#include <string_view>

namespace platform {

enum class BitmapFont {
    Fixed8x13,
    Fixed9x15,
    TimesRoman10,
    TimesRoman24,
    Helvetica10,
    Helvetica12,
    Helvetica18
};

// Sets the raster position to (x, y, z) in the current matrices and draws the text. A raster
// position outside the viewport draws nothing (OpenGL drops it).
void drawBitmapText(double x, double y, double z, std::string_view text,
                    BitmapFont font = BitmapFont::Helvetica12);
// Width of the text in pixels.
int bitmapTextWidth(std::string_view text, BitmapFont font = BitmapFont::Helvetica12);
// Line height of the font in pixels.
int bitmapFontHeight(BitmapFont font);

}  // namespace platform
