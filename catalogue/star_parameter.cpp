#include "catalogue/star_parameter.h"

#include <GL/gl.h>

#include <cstring>

StarParameter defaultStarParameter() {
    StarParameter p;
    std::memset(&p, 0, sizeof p);
    p.constellationColorsGiven = false;
    p.constellationWidthsGiven = false;
    p.constellationLineStipple = 0;
    p.constellationBoundStipple = 0;
    p.labelScale = 1.0f;
    p.extrasolarPlanetOrbitScale = 50000.0f;
    p.zRangeOn = 0;
    p.zRangeMin = 10.0;
    p.zRangeMax = 25.0;
    p.vmagRangeOn = 0;
    p.vmagRangeMin = -2.0;
    p.vmagRangeMax = 10.0;
    p.absmagRangeOn = 0;
    p.absmagRangeMin = -2.0;
    p.absmagRangeMax = 10.0;
    p.sptypeOn = 0;
    for (int i = 0; i < kNumSpectralClasses; ++i) {
        p.sptypeRange[i][0] = -1.0f;
        p.sptypeRange[i][1] = 10.0f;
        p.sptypeRangeOn[i] = 0;
    }
    p.bvStart = 0.0;
    p.bvEnd = 0.0;
    p.colorMapMode = _NO_COLOR_MAP;
    p.pxsizeTex = 4;
    p.texSize = 1.0;
    p.texScale = 1.0;
    p.texParaMinFilter = GL_LINEAR_MIPMAP_LINEAR;
    p.texParaMagFilter = GL_LINEAR;
    p.textureSource = kStarTextureNone;
    p.filterSize = 1.0f;
    p.filterExp = 1.0f;
    p.filterCutoff = 1.0f;
    p.filterOrder = 1.0f;
    p.filterRGB[0] = p.filterRGB[1] = p.filterRGB[2] = 1.0f;
    p.filterType = _STAR_FILTER_CIRCULAR;
    p.telescopeDiam = 0.1f;
    p.exposure = 1.0f;
    p.tuneIntensity = 1.0f;
    p.starScale = 1.0f;
    p.vmagMin = 10.0f;
    p.starAtYear = 1991;
    p.datasetAtYear = 1991;
    return p;
}
