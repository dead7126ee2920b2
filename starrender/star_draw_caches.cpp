// Per-star values kept for drawing: positions in plain metres-based coordinates, absolute
// magnitudes and colours with exposure applied, made again only when positions or colour
// settings change.

#include <cmath>
#include <cstdio>

#include "catalogue/star_list.h"
#include "starrender/star_frame.h"

void StarList::releaseDrawCaches() {
    if (drawCache != nullptr) release(drawCache);
    if (drawSlots != nullptr) release(drawSlots);
    drawCache = nullptr;
    drawSlots = nullptr;
    drawCacheCount = 0;
    cartesianEpoch = 0;
    colourCacheEpoch = 0;
    colourCacheFlags = -1;
}

bool StarList::refreshDrawCaches(int renderFlags) {
    if (count <= 0) return true;
    if (drawCacheCount != count || drawCache == nullptr || drawSlots == nullptr) {
        releaseDrawCaches();
        drawCache = allocateRecords<StarDrawCache>(static_cast<std::size_t>(count));
        drawSlots =
            allocateRecords<StarDrawSlot>(static_cast<std::size_t>(count) + 1 + kDrawSlotBlock);
        if (drawCache == nullptr || drawSlots == nullptr) {
            releaseDrawCaches();
            std::fprintf(stderr, "Err : allocating memory for drawing the stars!\n\n");
            return false;
        }
        drawCacheCount = count;
    }
    if (cartesianEpoch != positionEpoch) {
        for (int i = 0; i < count; ++i) {
            const Phc& p = stars[i].pos;
            const double f = std::pow(10.0, p.w - kDrawCacheLog);
            StarDrawCache& c = drawCache[i];
            c.pos[0] = p.x * f;
            c.pos[1] = p.y * f;
            c.pos[2] = p.z * f;
            c.absMag = stars[i].absMag;
        }
        cartesianEpoch = positionEpoch;
    }
    const int colourFlags =
        renderFlags & (kStarColorFile | kStarColorMap | kStarColorWhite | kStarColorDistance);
    if (colourCacheEpoch != colourEpoch || colourCacheFlags != colourFlags) {
        for (int i = 0; i < count; ++i)
            starColourRGB(stars[i], colourFlags, drawCache[i].rgb);
        colourCacheEpoch = colourEpoch;
        colourCacheFlags = colourFlags;
    }
    return true;
}
