// Builds <data>/texturedata/font.tga: 256 glyphs (byte values, Latin-1) in a 16 x 16 grid,
// glyph n in column n % 16 and row n / 16 from the top, rasterised from a monospaced
// TrueType face: white, with the glyph's coverage as alpha, 32 bits.
#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <cstdio>

#include "tools/datatree/core/data_error.h"
#include "tools/datatree/core/raster.h"

namespace {

constexpr int kCell = 16;  // texels per glyph cell; the image is 16 cells square (256 x 256)
constexpr int kGrid = 16;

bool hasGlyph(int code) {
    return (code >= 32 && code <= 126) || (code >= 160 && code <= 255);
}

class FontFace {
  public:
    explicit FontFace(const std::string& path) {
        if (FT_Init_FreeType(&library_)) throw DataError("cannot start the font rasteriser");
        if (FT_New_Face(library_, path.c_str(), 0, &face_)) {
            FT_Done_FreeType(library_);
            throw DataError(path + ": not a readable font");
        }
    }
    ~FontFace() {
        FT_Done_Face(face_);
        FT_Done_FreeType(library_);
    }
    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;
    FT_Face face() const { return face_; }

  private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
};

}  // namespace

int main(int argc, char** argv) {
    const char* program = "datatree_font";
    if (argc != 3) return usage(program, "<unpacked-sources> <data-dir>");
    return runConverter(program, [&] {
        std::string path =
            std::string(argv[1]) + "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf";
        FontFace font(path);
        FT_Face face = font.face();
        // The largest pixel size whose ascender and descender fit in a cell.
        int pixels = kCell;
        int ascender = 0;
        for (; pixels > 4; --pixels) {
            if (FT_Set_Pixel_Sizes(face, 0, FT_UInt(pixels)))
                throw DataError(path + ": cannot size the face");
            ascender = int(face->size->metrics.ascender >> 6);
            int descender = int(-face->size->metrics.descender >> 6);
            if (ascender + descender <= kCell) break;
        }
        Raster atlas;
        atlas.width = atlas.height = kCell * kGrid;
        atlas.components = 4;
        atlas.pixels.assign(std::size_t(atlas.width) * atlas.height * 4, 0);
        for (std::size_t i = 0; i < atlas.pixels.size(); i += 4) {
            atlas.pixels[i] = atlas.pixels[i + 1] = atlas.pixels[i + 2] = 255;
        }
        int drawn = 0;
        for (int code = 0; code < kGrid * kGrid; ++code) {
            if (!hasGlyph(code)) continue;
            if (FT_Load_Char(face, FT_ULong(code), FT_LOAD_RENDER)) {
                throw DataError(path + ": cannot render character " + std::to_string(code));
            }
            const FT_GlyphSlot g = face->glyph;
            const FT_Bitmap& b = g->bitmap;
            int cellX = (code % kGrid) * kCell, cellY = (code / kGrid) * kCell;
            int advance = int(g->advance.x >> 6);
            int left = cellX + (kCell - advance) / 2 + g->bitmap_left;
            int top = cellY + ascender - g->bitmap_top;
            for (unsigned row = 0; row < b.rows; ++row) {
                for (unsigned col = 0; col < b.width; ++col) {
                    int x = left + int(col), y = top + int(row);
                    if (x < cellX || x >= cellX + kCell || y < cellY || y >= cellY + kCell)
                        continue;
                    unsigned char v = b.buffer[int(row) * b.pitch + int(col)];
                    atlas.at(x, y, 3) = std::max(atlas.at(x, y, 3), v);
                }
            }
            ++drawn;
        }
        writeTgaAtomically(std::string(argv[2]) + "/texturedata/font.tga", atlas);
        std::printf("%d glyphs at %d pixels in %d x %d\n", drawn, pixels, atlas.width,
                    atlas.height);
        return kExitOk;
    });
}
