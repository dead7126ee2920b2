#include "starrender/star_pass.h"

#include <cmath>
#include <memory>

#include "starrender/depth_log.h"
#include "starrender/star_frame.h"

const StarSizeClassifier& classifierFor(float starScale, double radiansPerPixel, double texScale,
                                        int largeLimit) {
    struct Kept {
        float starScale;
        double radiansPerPixel, texScale;
        int largeLimit;
        std::unique_ptr<StarSizeClassifier> classifier;
    };
    static Kept kept{0.0f, 0.0, 0.0, 0, nullptr};
    if (kept.classifier == nullptr || kept.starScale != starScale ||
        kept.radiansPerPixel != radiansPerPixel || kept.texScale != texScale ||
        kept.largeLimit != largeLimit) {
        kept.classifier =
            std::make_unique<StarSizeClassifier>(starScale, radiansPerPixel, texScale, largeLimit);
        kept.starScale = starScale;
        kept.radiansPerPixel = radiansPerPixel;
        kept.texScale = texScale;
        kept.largeLimit = largeLimit;
    }
    return *kept.classifier;
}

double placeVertex(double p[3], double len2) {
    const double depth = 0.5 * fastLog10(len2);
    placeVertexAtDepth(p, len2, depth);
    return depth;
}

void compressVertex(double p[3], double len2, double depth) {
    const double r =
        std::pow(10.0, (depth - kDepthCompressStart) / kDepthCompressFactor + kDepthCompressStart);
    const double f = r / std::sqrt(len2);
    p[0] *= f;
    p[1] *= f;
    p[2] *= f;
}
