// Drawing the spanning tree: a segment between the two stars of each edge, placed where the
// stars are drawn. Each end takes its star's colour by the star drawing flags (file colour,
// colormap colour, or white; the plain colour of uncoloured stars otherwise) at half opacity.

#include <GL/gl.h>

#include <vector>

#include "catalogue/star_list.h"
#include "starrender/star_labels.h"
#include "starrender/star_labels_gl.h"

namespace {

constexpr float kTreeAlpha = 0.5f;

}  // namespace

void StarList::drawMST(double currLogScale, int renderFlags) {
    int numEdges = 0;
    const std::int32_t* edges = getMSTEdges(&numEdges);
    if (edges == nullptr || numEdges == 0) return;

    EyeRelativeScope scope(currLogScale);
    const StarFrame& frame = scope.frame();
    std::vector<Vec3> vertex(static_cast<std::size_t>(count));
    std::vector<char> placed(static_cast<std::size_t>(count), 0);
    auto at = [&](int i) -> const Vec3& {
        if (!placed[i]) {
            vertex[i] = eyeRelativeVertex(frame, stars[i].pos);
            placed[i] = 1;
        }
        return vertex[i];
    };
    const bool anyColour =
        (renderFlags & (kStarColorFile | kStarColorMap | kStarColorWhite | kStarColorDistance)) !=
        0;
    auto colour = [&](int i) {
        float rgba[4] = {plainColor[0], plainColor[1], plainColor[2], kTreeAlpha};
        if (anyColour) {
            for (int c = 0; c < 3; ++c)
                rgba[c] = baseColor[c];
            if (renderFlags & kStarColorFile) {
                for (int c = 0; c < 3; ++c)
                    rgba[c] *= stars[i].fileColor[c];
            }
            if ((renderFlags & kStarColorMap) && hasColorMap()) {
                for (int c = 0; c < 3; ++c)
                    rgba[c] *= stars[i].colormapColor[c];
            }
        }
        glColor4fv(rgba);
    };

    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glBegin(GL_LINES);
    for (int e = 0; e < numEdges; ++e) {
        const int child = edges[2 * e], parent = edges[2 * e + 1];
        if (child < 0 || child >= count || parent < 0 || parent >= count) continue;
        colour(child);
        const Vec3& a = at(child);
        glVertex3d(a.x, a.y, a.z);
        colour(parent);
        const Vec3& b = at(parent);
        glVertex3d(b.x, b.y, b.z);
    }
    glEnd();
}
