#include "scene/scene_keys.h"

#include <GL/freeglut.h>

#include <algorithm>
#include <string>
#include <vector>

#include "framework/framework_state.h"
#include "framework/view_control.h"
#include "platform/message_box.h"
#include "scene/control_panel.h"
#include "scene/draw_rules.h"
#include "scene/help_pages.h"
#include "scene/panel_state.h"
#include "scene/scene_objects.h"
#include "scene/scene_settings.h"
#include "wim/wim_windows.h"

namespace {

constexpr unsigned char kTab = '\t';

void applyStarSize() {
    if (StarList* stars = sceneStars()) stars->setStarTextureScale(sceneSettings.starSize);
}

void velocityErrorsToggled() {
    const SceneSettings& s = sceneSettings;
    if (!s.showVelocityErrors) {
        std::fprintf(stderr, "hide error of star velocity vector\n");
    } else if (!s.showVelocityTrails) {
        std::fprintf(stderr,
                     "please check the flag on showing star velocity vector or press [y]\n");
    } else {
        std::fprintf(stderr, "show error of star velocity vector\n");
    }
}

// The scene's own keys; false for a key it does not handle.
bool toggleByKey(unsigned char key) {
    SceneSettings& s = sceneSettings;
    switch (key) {
        case kTab:
            panelCallback(990);
            return true;
        case '+':
            s.starSize = starSizeUp(s.starSize);
            applyStarSize();
            return true;
        case '-':
            s.starSize = starSizeDown(s.starSize);
            applyStarSize();
            return true;
        case 'A':
            s.showAnchor = !s.showAnchor;
            return true;
        case 'D':
        case 'd':
            s.showGridDetail = !s.showGridDetail;
            return true;
        case 'E':
            s.showEquatorialGrid = !s.showEquatorialGrid;
            return true;
        case 'G':
            s.showGalacticGrid = !s.showGalacticGrid;
            return true;
        case 'L':
        case 'l':
            s.lockView = !s.lockView;
            panelCallback(64);
            return true;
        case 'M':
            s.showMilkyWay = !s.showMilkyWay;
            return true;
        case 'S':
            s.showConstellationBounds = !s.showConstellationBounds;
            return true;
        case 'T':
            s.showSpanningTree = !s.showSpanningTree;
            return true;
        case 'U':
            s.showSolarSystem = !s.showSolarSystem;
            return true;
        case 'Y':
            s.showVelocityErrors = !s.showVelocityErrors;
            velocityErrorsToggled();
            return true;
        case '\\':
            s.showImage = !s.showImage;
            return true;
        case 'e':
            s.showExtrasolarPlanets = !s.showExtrasolarPlanets;
            return true;
        case 'm':
            panelState.selectRolloutNext = true;
            return true;
        case 'o':
            s.showImageOverlay = !s.showImageOverlay;
            return true;
        case 'p':
            s.showStarInfo = !s.showStarInfo;
            return true;
        case 's':
            stepConstellationDisplay(s.showConstellationLines, s.showConstellationNames);
            return true;
        case 't':
            s.showTexturedStars = !s.showTexturedStars;
            return true;
        case 'u':
            s.showSun = !s.showSun;
            return true;
        case 'y':
            s.showVelocityTrails = !s.showVelocityTrails;
            return true;
        case '|':
            panelCallback(50);
            return true;
        default:
            return false;
    }
}

}  // namespace

float starSizeUp(float size) {
    return std::min(size * kStarSizeStep, kStarSizeMax);
}

float starSizeDown(float size) {
    return std::max(size / kStarSizeStep, kStarSizeMin);
}

int sceneKeyboard(unsigned char key, int x, int y) {
    (void)x;
    (void)y;
    if (panelState.selectRolloutNext) {
        panelState.selectRolloutNext = false;
        panelState.rollouts.selectByKey(static_cast<char>(key));
        refreshPanel();
        return 1;
    }
    if (toggleByKey(key)) {
        refreshPanel();
        return 1;
    }
    addHistoryView(currentView());
    return 0;
}

int sceneSpecial(int key, int x, int y) {
    (void)x;
    (void)y;
    if (sceneSettings.lockView && (key == GLUT_KEY_UP || key == GLUT_KEY_DOWN)) return 1;
    if (key >= GLUT_KEY_F1 && key <= GLUT_KEY_F10) {
        panelState.fixAspect = false;
        aspectFollowsWindow = false;
        refreshPanel();
    } else if (key == GLUT_KEY_INSERT) {
        panelCallback(86);
    }
    addHistoryView(currentView());
    return 0;
}

int sceneHelp(std::FILE* out) {
    (void)out;
    std::vector<std::string> pages{kMouseHelpPage, kKeyboardHelpPage};
    if (movie) pages.emplace_back(kMovieHelpPage);
    if (!platform::showPages(windowTitle, pages, platform::BoxIcon::Information))
        std::fprintf(stderr, "Error: creation menu.\n");
    return 1;
}
