#include "scene/scene_layout.h"

#include <GL/freeglut.h>

#include "framework/framework_state.h"
#include "framework/window_scope.h"

namespace {

int windowWidth = 0, windowHeight = 0;  // the main window's size as asked for

}  // namespace

void chooseSceneLayout() {
    if (fullscreen) {
        panelEmbedded = false;
        windowWidth = windowHeight = 0;
        return;
    }
    panelEmbedded = true;
    windowWidth = winWidth + kPanelColumnWidth;
    windowHeight = winHeight;
    resizeMainWindowForPanel();
}

void resizeMainWindowForPanel() {
    if (windowWidth <= 0 || windowHeight <= 0 || mainWindow == 0) return;
    WindowScope scope(mainWindow);
    glutReshapeWindow(windowWidth, windowHeight);
}
