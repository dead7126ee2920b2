// Label text as one draw of line segments. The stroke font draws each stroke of each character
// as its own strip and moves the matrix after every character, which makes every character a
// draw of its own on a software renderer. Here each glyph's segments are read back once, in
// font units, through GL feedback (identity matrices scaled by a power of two and a viewport
// that maps clip coordinates to themselves, so the numbers come back unchanged), and a label's
// text becomes one array of segments with every character moved by its advance.

#include "starrender/label_strokes.h"

#include <GL/freeglut.h>

#include <string>
#include <unordered_map>
#include <vector>

namespace {

// Glyphs are scaled by this while read back, so that the font (about -33 .. 120 units) stays
// well inside the clip volume.
constexpr float kCaptureScale = 1.0f / 256.0f;
constexpr int kFeedbackFloats = 16384;
constexpr int kFirstGlyph = 32;
constexpr int kLastGlyph = 126;
// Kept texts; beyond this many the cache starts again (labels come from a small set).
constexpr std::size_t kMaxCachedTexts = 4096;

struct Glyph {
    std::vector<float> segments;  // x, y pairs, two per segment, in font units
    float advance = 0.0f;
};

struct GlyphSet {
    bool tried = false;
    bool ready = false;
    Glyph glyphs[kLastGlyph - kFirstGlyph + 1];
};

// Reads back one glyph; false when feedback gives anything but whole segments inside the clip
// volume.
bool captureGlyph(int c, Glyph& glyph) {
    std::vector<GLfloat> buffer(kFeedbackFloats);
    glFeedbackBuffer(kFeedbackFloats, GL_3D, buffer.data());
    glRenderMode(GL_FEEDBACK);
    glLoadIdentity();
    glScalef(kCaptureScale, kCaptureScale, kCaptureScale);
    glutStrokeCharacter(GLUT_STROKE_MONO_ROMAN, c);
    GLfloat m[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, m);
    const GLint n = glRenderMode(GL_RENDER);
    if (n < 0) return false;
    glyph.advance = m[12] / kCaptureScale;
    for (GLint i = 0; i < n;) {
        const GLfloat token = buffer[i];
        if ((token != GL_LINE_TOKEN && token != GL_LINE_RESET_TOKEN) || i + 7 > n) return false;
        for (int v = 0; v < 2; ++v) {
            const GLfloat* p = &buffer[i + 1 + v * 3];
            if (!(p[0] > -1.0f && p[0] < 1.0f && p[1] > -1.0f && p[1] < 1.0f)) return false;
            glyph.segments.push_back(p[0] / kCaptureScale);
            glyph.segments.push_back(p[1] / kCaptureScale);
        }
        i += 7;
    }
    return true;
}

// The glyphs, read once per process with whatever context is current.
const GlyphSet& glyphSet() {
    static GlyphSet set;
    if (set.tried) return set;
    set.tried = true;
    GLint mode = 0;
    glGetIntegerv(GL_RENDER_MODE, &mode);
    if (mode != GL_RENDER) {
        set.tried = false;  // try again when drawing for the screen
        return set;
    }
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glDisable(GL_LINE_STIPPLE);
    glDisable(GL_CLIP_PLANE0);
    glViewport(-1, -1, 2, 2);
    glDepthRange(0.0, 1.0);
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    bool ok = true;
    for (int c = kFirstGlyph; c <= kLastGlyph && ok; ++c)
        ok = captureGlyph(c, set.glyphs[c - kFirstGlyph]);
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
    glPopAttrib();
    set.ready = ok;
    return set;
}

// The segments of a text in font units (x y 0 per vertex), characters side by side; null when
// a character has no glyph here.
const std::vector<float>* textSegments(const GlyphSet& set, const char* text) {
    static std::unordered_map<std::string, std::vector<float>> cache;
    auto found = cache.find(text);
    if (found != cache.end()) return &found->second;
    std::vector<float> vertices;
    float advance = 0.0f;
    for (const char* c = text; *c != '\0'; ++c) {
        const int code = static_cast<unsigned char>(*c);
        if (code < kFirstGlyph || code > kLastGlyph) return nullptr;
        const Glyph& g = set.glyphs[code - kFirstGlyph];
        for (std::size_t i = 0; i < g.segments.size(); i += 2) {
            vertices.push_back(g.segments[i] + advance);
            vertices.push_back(g.segments[i + 1]);
            vertices.push_back(0.0f);
        }
        advance += g.advance;
    }
    if (cache.size() >= kMaxCachedTexts) cache.clear();
    return &cache.emplace(text, std::move(vertices)).first->second;
}

}  // namespace

bool drawStrokeTextSegments(const char* text) {
    const GlyphSet& set = glyphSet();
    if (!set.ready) return false;
    const std::vector<float>* vertices = textSegments(set, text);
    if (vertices == nullptr) return false;
    if (vertices->empty()) return true;
    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glEnableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_COLOR_ARRAY);
    glDisableClientState(GL_NORMAL_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    glDisableClientState(GL_EDGE_FLAG_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, vertices->data());
    glDrawArrays(GL_LINES, 0, static_cast<GLsizei>(vertices->size() / 3));
    glPopClientAttrib();
    return true;
}
