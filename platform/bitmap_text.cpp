#include "platform/bitmap_text.h"

#include <GL/freeglut.h>

namespace platform {

namespace {

void* glutFont(BitmapFont font) {
    switch (font) {
        case BitmapFont::Fixed8x13:
            return GLUT_BITMAP_8_BY_13;
        case BitmapFont::Fixed9x15:
            return GLUT_BITMAP_9_BY_15;
        case BitmapFont::TimesRoman10:
            return GLUT_BITMAP_TIMES_ROMAN_10;
        case BitmapFont::TimesRoman24:
            return GLUT_BITMAP_TIMES_ROMAN_24;
        case BitmapFont::Helvetica10:
            return GLUT_BITMAP_HELVETICA_10;
        case BitmapFont::Helvetica12:
            return GLUT_BITMAP_HELVETICA_12;
        case BitmapFont::Helvetica18:
            return GLUT_BITMAP_HELVETICA_18;
    }
    return GLUT_BITMAP_HELVETICA_12;
}

}  // namespace

void drawBitmapText(double x, double y, double z, std::string_view text, BitmapFont font) {
    glRasterPos3d(x, y, z);
    void* f = glutFont(font);
    for (char c : text)
        glutBitmapCharacter(f, static_cast<unsigned char>(c));
}

int bitmapTextWidth(std::string_view text, BitmapFont font) {
    void* f = glutFont(font);
    int width = 0;
    for (char c : text)
        width += glutBitmapWidth(f, static_cast<unsigned char>(c));
    return width;
}

int bitmapFontHeight(BitmapFont font) {
    return glutBitmapHeight(glutFont(font));
}

}  // namespace platform
