// Drawing the stars with GL: anti-aliased points (each with its own size where the renderer
// allows, else batched by size), textured sprites for the large ones, and named points for
// picking.

#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "catalogue/star_list.h"
#include "starrender/point_size_program.h"
#include "starrender/star_draw_sink.h"
#include "starrender/star_frame.h"

namespace {

class GlStarSink final : public StarDrawSink {
  public:
    GlStarSink(unsigned texture, const PointSizeProgram& program)
        : texture_(texture), program_(program) {
        staged_.reserve(kDrawEvery);
    }

    // Points are gathered and drawn as vertex arrays, a piece at a time, each handed to the
    // renderer at once (it rasterises on threads of its own) so that it draws while the
    // remaining stars are still being worked out. With the point-size program every point
    // carries its size and pieces run across size changes; without it the point size is set
    // when a point of a new size comes, so batches that end up empty cost nothing.
    void beginPoints(float pointSize) override { size_ = pointSize; }
    void point(const double vertex[3], const float rgba[4]) override {
        if (program_.program == 0 && size_ != drawnSize_) {
            drawStaged();
            glPointSize(size_);
            drawnSize_ = size_;
        }
        StagedPoint e;
        e.pos[0] = static_cast<float>(vertex[0]);
        e.pos[1] = static_cast<float>(vertex[1]);
        e.pos[2] = static_cast<float>(vertex[2]);
        e.rgba[0] = rgba[0];
        e.rgba[1] = rgba[1];
        e.rgba[2] = rgba[2];
        e.rgba[3] = rgba[3];
        e.size = size_;
        staged_.push_back(e);
        if (staged_.size() == kDrawEvery) drawStaged();
    }
    void points(const StarBucketEntry* entries, int n) override {
        for (int i = 0; i < n; ++i)
            point(entries[i].pos, entries[i].rgba);
    }
    void endPoints() override {}
    // Draws what is still staged and leaves the fixed pipeline in place.
    void finish() {
        drawStaged();
        if (programBound_) {
            glDisableVertexAttribArray(static_cast<GLuint>(program_.sizeAttribute));
            glDisable(GL_VERTEX_PROGRAM_POINT_SIZE);
            glUseProgram(0);
            programBound_ = false;
        }
    }

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
        drawnSize_ = pointSize;
        glLoadName(static_cast<GLuint>(name));
        glBegin(GL_POINTS);
        glVertex3dv(vertex);
        glEnd();
    }

  private:
    static constexpr std::size_t kDrawEvery = 1024;  // points

    void drawStaged() {
        if (staged_.empty()) return;
        const GLsizei stride = sizeof(StagedPoint);
        if (program_.program != 0 && !programBound_) {
            // Bound at the first point: the sprites before it are drawn by the fixed pipeline.
            glUseProgram(program_.program);
            glEnable(GL_VERTEX_PROGRAM_POINT_SIZE);
            glEnableVertexAttribArray(static_cast<GLuint>(program_.sizeAttribute));
            programBound_ = true;
        }
        glVertexPointer(3, GL_FLOAT, stride, staged_.data()->pos);
        glColorPointer(4, GL_FLOAT, stride, staged_.data()->rgba);
        if (programBound_) {
            glVertexAttribPointer(static_cast<GLuint>(program_.sizeAttribute), 1, GL_FLOAT,
                                  GL_FALSE, stride, &staged_.data()->size);
        }
        glDrawArrays(GL_POINTS, 0, static_cast<GLsizei>(staged_.size()));
        unflushed_ += staged_.size();
        if (unflushed_ >= kDrawEvery) {
            glFlush();
            unflushed_ = 0;
        }
        staged_.clear();
    }

    unsigned texture_;
    PointSizeProgram program_;
    bool programBound_ = false;
    float size_ = 1.0f;
    float drawnSize_ = 1.0f;  // glPointSize(1) is set before drawing starts
    std::size_t unflushed_ = 0;
    struct StagedPoint {
        float pos[3];
        float rgba[4];
        float size;
    };
    std::vector<StagedPoint> staged_;
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

    glPushClientAttrib(GL_CLIENT_VERTEX_ARRAY_BIT);
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_COLOR_ARRAY);
    glDisableClientState(GL_NORMAL_ARRAY);
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    GlStarSink sink(textureName, pickMode ? PointSizeProgram{} : pointSizeProgram());
    drawStarsInto(frame, renderFlags, sink);
    sink.finish();
    glPopClientAttrib();

    glPopAttrib();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}
