// The panel in a GLUT window of its own ("Skyrama Panel"): its clicks stay in the panel, the
// keys it does not want reach the scene with the main window current, and panel actions run
// with the main window current.

#include <gtest/gtest.h>

#include <GL/freeglut.h>
#include <imgui.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "platform/panel_host.h"
#include "tests/support/gl_test_window.h"

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

void pump(double seconds) {
    const auto end = std::chrono::steady_clock::now() +
                     std::chrono::milliseconds(static_cast<int>(seconds * 1000));
    while (std::chrono::steady_clock::now() < end) {
        glutPostWindowRedisplay(mainWindow);
        glutMainLoopEvent();
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
}

// A busy shared X server refuses a connection now and then: such a command is run again.
bool xdo(const std::string& words) {
    bool ok = false;
    for (int attempt = 0; attempt < 4 && !ok; ++attempt) {
        ok = std::system(("xdotool " + words + " >/dev/null 2>&1").c_str()) == 0;
    }
    pump(0.3);
    return ok;
}

}  // namespace

TEST(PanelWindow, ClicksStayInThePanelAndKeysGoToTheScene) {
    if (std::getenv("DISPLAY") == nullptr || std::system("command -v xdotool >/dev/null") != 0) {
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
    pump(0.6);

    int x = -1, y = -1, w = -1, h = -1;
    platform::freeViewportArea(x, y, w, h);
    EXPECT_EQ(160, w);  // the whole main window is the scene's
    EXPECT_EQ(120, h);

    const std::string panel = "$(xdotool search --name '^Skyrama Panel$' | head -1)";
    ASSERT_TRUE(xdo("mousemove --window " + panel + " 100 25 click 1"));
    pump(0.3);
    EXPECT_EQ(1, clicks);
    EXPECT_EQ(mainWindow, windowDuringClick);
    EXPECT_TRUE(sceneEvents.empty());

    ASSERT_TRUE(xdo("windowfocus --sync " + panel));
    ASSERT_TRUE(xdo("key a"));
    ASSERT_EQ(1u, sceneEvents.size());
    EXPECT_EQ(platform::InputKind::Keyboard, sceneEvents[0].kind);
    EXPECT_EQ('a', sceneEvents[0].key);
    EXPECT_EQ(mainWindow, windowDuringEvent[0]);
}
