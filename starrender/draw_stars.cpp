// Drawing the stars with GL: anti-aliased points batched by size, textured sprites for the
// large ones, and named points for picking.

#include <GL/gl.h>

#include <cstdio>
#include <cstdlib>

#include "catalogue/star_list.h"
#include "starrender/star_draw_sink.h"
#include "starrender/star_frame.h"

namespace {

class GlStarSink : public StarDrawSink {
  public:
    GlStarSink(unsigned texture) : texture_(texture) {}

    void beginPoints(float pointSize) override {
        glPointSize(pointSize);
        glBegin(GL_POINTS);
    }
    void point(const double vertex[3], const float rgba[4]) override {
        glColor4fv(rgba);
        glVertex3dv(vertex);
        // Hand what is there to the renderer now and then, so that it draws while the
        // remaining stars are still being worked out (the batch goes on at the same size).
        if (++pending_ == kFlushEvery) {
            glEnd();
            glFlush();
            glBegin(GL_POINTS);
            pending_ = 0;
        }
    }
    void endPoints() override { glEnd(); }

    void beginSprites() override {
        glEnable(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, texture_);
        glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE);
    }
    void sprite(const StarSprite& s) override {
        const float t0 = s.texMin;
        const float tex[4][2] = {{t0, t0}, {1.0f, t0}, {t0, 1.0f}, {1.0f, 1.0f}};
        glColor4fv(s.rgba);
        glBegin(GL_QUAD_STRIP);
        for (int c = 0; c < 4; ++c) {
            glTexCoord2fv(tex[c]);
            glVertex3dv(s.corner[c]);
        }
        glEnd();
    }
    void endSprites() override {
        glDisable(GL_TEXTURE_2D);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    }

    void namedPoint(int name, float pointSize, const double* vertex) override {
        glPointSize(pointSize);
        glLoadName(static_cast<GLuint>(name));
        glBegin(GL_POINTS);
        glVertex3dv(vertex);
        glEnd();
    }

  private:
    static constexpr int kFlushEvery = 4096;  // points
    unsigned texture_;
    int pending_ = 0;
};

}  // namespace

void StarList::drawStars(double currLogScale, int renderFlags, int viewportWidth,
                         int viewportHeight) {
    if (param.texScale < 1e-7) return;

    double modelview[16], projection[16];
    int viewport[4];
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    glGetIntegerv(GL_VIEWPORT, viewport);
    if (viewportWidth >= 1 && viewportHeight >= 1) {
        viewport[2] = viewportWidth;
        viewport[3] = viewportHeight;
    }
    const StarFrame frame = makeStarFrame(modelview, projection, viewport, currLogScale);

    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadMatrixd(frame.rotation);
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glPointSize(1.0f);
    glEnable(GL_POINT_SMOOTH);
    glHint(GL_POINT_SMOOTH_HINT, GL_NICEST);
    glDisable(GL_CULL_FACE);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_LIGHTING);
    glEnable(GL_BLEND);
    glDepthMask((renderFlags & kStarDepthWrite) ? GL_TRUE : GL_FALSE);

    const bool textured = (renderFlags & kStarTextured) && !pickMode;
    if (textured && param.textureSource != kStarTextureNone && textureName == 0) {
        if (createStarTexture() < 0) {
            std::fprintf(stderr, "Err : failed to create the star texture.\n\n");
            std::exit(1);
        }
    }
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);

    GlStarSink sink(textureName);
    drawStarsInto(frame, renderFlags, sink);

    glPopAttrib();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}
