// The panel in a GLUT window of its own ("Skyrama Panel"): its clicks stay in the panel, the
// keys it does not want reach the scene with the main window current, and panel actions run
// with the main window current.

#include <gtest/gtest.h>

#include <GL/freeglut.h>
#include <imgui.h>

#include <string>
#include <vector>

#include "platform/panel_host.h"
#include "tests/support/child_process.h"
#include "tests/support/gl_test_window.h"
#include "tests/support/x_input.h"

namespace {

int mainWindow = 0;
int clicks = 0;
int windowDuringClick = 0;
std::vector<platform::InputEvent> sceneEvents;
std::vector<int> windowDuringEvent;

void record(const platform::InputEvent& e) {
    sceneEvents.push_back(e);
    windowDuringEvent.push_back(glutGetWindow());
}

void buildPanel() {
    if (ImGui::Button("Press me", ImVec2(-1.0f, 40.0f))) {
        ++clicks;
        windowDuringClick = glutGetWindow();
    }
}

void display() {
    const bool ui = platform::beginInterfaceFrame();
    glClear(GL_COLOR_BUFFER_BIT);
    if (ui) platform::drawInterface();
    glutSwapBuffers();
}

// xdotool with these words, then frames for a while; whether it succeeded.
bool xdo(const std::vector<std::string>& words) {
    bool ok = false;
    testsupport::xdotool(words, &ok);
    testsupport::pumpEvents(0.3, mainWindow);
    return ok;
}

}  // namespace

TEST(PanelWindow, ClicksStayInThePanelAndKeysGoToTheScene) {
    if (!testsupport::haveDisplay() || !testsupport::haveProgram("xdotool")) {
        GTEST_SKIP() << "no display or no xdotool";
    }
    SKYRAMA_REQUIRE_WINDOW(160, 120);
    mainWindow = glutGetWindow();
    glutDisplayFunc(display);
    platform::HostCallbacks callbacks;
    callbacks.input = record;
    platform::initPanelHost(mainWindow, callbacks);
    platform::createPanel(buildPanel, platform::PanelPlacement::OwnWindow);
    ASSERT_NE(0, platform::panelWindow());
    EXPECT_EQ(mainWindow, glutGetWindow());  // creating the panel leaves the main window current
    testsupport::pumpEvents(0.6, mainWindow);

    int x = -1, y = -1, w = -1, h = -1;
    platform::freeViewportArea(x, y, w, h);
    EXPECT_EQ(160, w);  // the whole main window is the scene's
    EXPECT_EQ(120, h);

    const std::string panel = testsupport::findWindow("^Skyrama Panel$", 10.0);
    ASSERT_FALSE(panel.empty());
    ASSERT_TRUE(xdo({"mousemove", "--window", panel, "100", "25", "click", "1"}));
    testsupport::pumpEvents(0.3, mainWindow);
    EXPECT_EQ(1, clicks);
    EXPECT_EQ(mainWindow, windowDuringClick);
    EXPECT_TRUE(sceneEvents.empty());

    ASSERT_TRUE(xdo({"windowfocus", "--sync", panel}));
    ASSERT_TRUE(xdo({"key", "a"}));
    ASSERT_EQ(1u, sceneEvents.size());
    EXPECT_EQ(platform::InputKind::Keyboard, sceneEvents[0].kind);
    EXPECT_EQ('a', sceneEvents[0].key);
    EXPECT_EQ(mainWindow, windowDuringEvent[0]);
}
