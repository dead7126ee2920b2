// The panel host in a real window, driven through the X server with xdotool: clicks and keys
// go to the panel when it wants them and to the scene otherwise, a quick click is not lost,
// a drag that began in the scene ends there, and the modal question holds all input back.

#include <gtest/gtest.h>

#include <GL/freeglut.h>
#include <imgui.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <vector>

#include "platform/message_box.h"
#include "platform/panel_host.h"
#include "tests/support/child_process.h"
#include "tests/support/gl_test_window.h"
#include "tests/support/x_input.h"

namespace {

constexpr int kWidth = 400, kHeight = 300, kColumn = 200;

std::vector<platform::InputEvent> sceneEvents;
int buttonClicks = 0;
char text[64] = "";
float dragValue = 0.0f;
int dragX = 0, dragY = 0;  // the middle of the drag field
int mainWindow = 0;
std::string windowId;  // the X window, for xdotool

void record(const platform::InputEvent& e) {
    sceneEvents.push_back(e);
}

void buildPanel() {
    if (ImGui::Button("Press me", ImVec2(-1.0f, 40.0f))) ++buttonClicks;
    ImGui::InputText("##text", text, sizeof text);
    ImGui::DragFloat("##drag", &dragValue);
    const ImVec2 min = ImGui::GetItemRectMin(), max = ImGui::GetItemRectMax();
    dragX = static_cast<int>((min.x + max.x) / 2);
    dragY = static_cast<int>((min.y + max.y) / 2);
}

void display() {
    const bool ui = platform::beginInterfaceFrame();
    glClearColor(0.1f, 0.1f, 0.1f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    if (ui) platform::drawInterface();
    glutSwapBuffers();
}

void pump(double seconds) {
    testsupport::pumpEvents(seconds, mainWindow);
}

// xdotool with these words, then a quarter of a second of frames.
void xdo(const std::vector<std::string>& words) {
    bool ok = false;
    testsupport::xdotool(words, &ok);
    ASSERT_TRUE(ok) << "xdotool " << words[0];
    pump(0.25);
}

// Moves the pointer to (x, y) in the window, then runs the xdotool words that follow.
void atPointer(int x, int y, std::vector<std::string> then) {
    std::vector<std::string> words{"mousemove", "--window", windowId, std::to_string(x),
                                   std::to_string(y)};
    words.insert(words.end(), then.begin(), then.end());
    xdo(words);
}

void clickAt(int x, int y, int button = 1) {
    atPointer(x, y, {"click", std::to_string(button)});
}

int countKind(platform::InputKind kind) {
    int n = 0;
    for (const auto& e : sceneEvents)
        n += e.kind == kind ? 1 : 0;
    return n;
}

class PanelHost : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        if (!testsupport::haveDisplay() || !testsupport::haveProgram("xdotool")) return;
        if (!testsupport::openTestWindow(kWidth, kHeight)) return;
        mainWindow = glutGetWindow();
        const std::string windowName = "panel-host-test-" + std::to_string(getpid());
        glutSetWindowTitle(windowName.c_str());
        glutDisplayFunc(display);
        platform::HostCallbacks callbacks;
        callbacks.input = record;
        platform::initPanelHost(glutGetWindow(), callbacks);
        platform::setPanelColumnWidth(kColumn);
        platform::createPanel(buildPanel, platform::PanelPlacement::RightColumn);
        pump(0.5);
        windowId = testsupport::findWindow(windowName, 10.0);
        if (windowId.empty()) return;
        testsupport::xdotool({"windowfocus", "--sync", windowId}, &ready);
        pump(0.3);
    }
    void SetUp() override {
        if (!ready) GTEST_SKIP() << "no display or no xdotool";
        clickAt(50, 150);  // a click in the scene: no text field keeps the keyboard
        sceneEvents.clear();
        buttonClicks = 0;
    }
    static bool ready;
};
bool PanelHost::ready = false;

}  // namespace

TEST_F(PanelHost, TheRightColumnBelongsToThePanel) {
    int x = -1, y = -1, w = -1, h = -1;
    platform::freeViewportArea(x, y, w, h);
    EXPECT_EQ(0, x);
    EXPECT_EQ(0, y);
    EXPECT_EQ(kWidth - kColumn, w);
    EXPECT_EQ(kHeight, h);
}

TEST_F(PanelHost, AQuickClickOnAPanelButtonCountsOnceAndStaysInThePanel) {
    clickAt(300, 30);
    pump(0.3);
    EXPECT_EQ(1, buttonClicks);
    EXPECT_EQ(0, countKind(platform::InputKind::Mouse));
}

TEST_F(PanelHost, ClicksBesideThePanelReachTheScene) {
    clickAt(100, 120);
    ASSERT_EQ(2, countKind(platform::InputKind::Mouse));
    const platform::InputEvent& press =
        sceneEvents[0].kind == platform::InputKind::Mouse ? sceneEvents[0] : sceneEvents[1];
    EXPECT_EQ(GLUT_LEFT_BUTTON, press.button);
    EXPECT_EQ(GLUT_DOWN, press.state);
    EXPECT_EQ(100, press.x);
    EXPECT_EQ(120, press.y);
    EXPECT_EQ(0, buttonClicks);
}

TEST_F(PanelHost, ADragStartedInTheSceneEndsThereOverThePanel) {
    atPointer(100, 100, {"mousedown", "1"});
    for (int x = 150; x <= 350; x += 50)
        atPointer(x, 100, {});
    xdo({"mouseup", "1"});
    int releases = 0;
    for (const auto& e : sceneEvents) {
        releases += (e.kind == platform::InputKind::Mouse && e.state == GLUT_UP) ? 1 : 0;
    }
    EXPECT_EQ(1, releases);
    EXPECT_GE(countKind(platform::InputKind::Motion), 4);
    EXPECT_EQ(0, buttonClicks);
}

TEST_F(PanelHost, KeysGoToAFocusedTextFieldElseToTheScene) {
    xdo({"key", "k"});
    EXPECT_EQ(1, countKind(platform::InputKind::Keyboard));
    clickAt(300, 62);  // the text field
    sceneEvents.clear();
    xdo({"type", "ab"});
    xdo({"key", "BackSpace"});
    EXPECT_EQ(0, countKind(platform::InputKind::Keyboard));
    EXPECT_STREQ("a", text);
    clickAt(50, 150);
    sceneEvents.clear();
    xdo({"key", "Up"});
    EXPECT_EQ(1, countKind(platform::InputKind::Special));
}

// A Ctrl-click turns the drag field into a text field, which then takes the keys; a plain
// click leaves it a drag field. The release of a modifier key must not leave it held.
TEST_F(PanelHost, ReleasedModifierKeysAreReleasedInThePanel) {
    for (const char* modifier : {"shift", "ctrl", "alt"}) {
        SCOPED_TRACE(modifier);
        xdo({"key", modifier});
        const ImGuiIO& io = ImGui::GetIO();
        EXPECT_FALSE(io.KeyShift || io.KeyCtrl || io.KeyAlt);
        clickAt(300, 30);
        EXPECT_EQ(1, buttonClicks);
        buttonClicks = 0;
        clickAt(dragX, dragY);
        sceneEvents.clear();
        xdo({"key", "k"});
        EXPECT_EQ(1, countKind(platform::InputKind::Keyboard));
        clickAt(50, 150);
    }
}

TEST_F(PanelHost, HeldModifierKeysReachThePanelAndTheScene) {
    atPointer(dragX, dragY, {"keydown", "ctrl", "click", "1", "keyup", "ctrl"});
    sceneEvents.clear();
    xdo({"key", "k"});
    EXPECT_EQ(0, countKind(platform::InputKind::Keyboard));  // typed into the field
    xdo({"key", "Escape"});
    clickAt(50, 150);

    sceneEvents.clear();
    atPointer(100, 120, {"keydown", "shift", "click", "1", "keyup", "shift"});
    clickAt(100, 120);
    std::vector<int> pressModifiers;
    for (const auto& e : sceneEvents) {
        if (e.kind == platform::InputKind::Mouse && e.state == GLUT_DOWN)
            pressModifiers.push_back(e.modifiers);
    }
    EXPECT_EQ((std::vector<int>{GLUT_ACTIVE_SHIFT, 0}), pressModifiers);
}

TEST_F(PanelHost, TheModalQuestionHoldsInputUntilAnswered) {
    int answer = -1;
    platform::askYesNo("caption", "Really?", platform::BoxIcon::Exclamation,
                       [&answer](bool yes) { answer = yes ? 1 : 0; });
    pump(0.2);
    EXPECT_TRUE(platform::modalBoxOpen());
    clickAt(60, 60);
    xdo({"key", "k"});
    EXPECT_TRUE(sceneEvents.empty());
    EXPECT_EQ(-1, answer);
    xdo({"key", "Return"});  // No is the default
    EXPECT_EQ(0, answer);
    EXPECT_FALSE(platform::modalBoxOpen());
    xdo({"key", "k"});
    EXPECT_EQ(1, countKind(platform::InputKind::Keyboard));

    platform::askYesNo("caption", "Really?", platform::BoxIcon::Exclamation,
                       [&answer](bool yes) { answer = yes ? 1 : 0; });
    pump(0.2);
    xdo({"key", "y"});
    EXPECT_EQ(1, answer);
    // The popup is closed for good: the scene gets clicks again.
    sceneEvents.clear();
    clickAt(100, 120);
    EXPECT_EQ(2, countKind(platform::InputKind::Mouse));
}

TEST_F(PanelHost, PagesCycleAndNoSettingsFileIsLeft) {
    ASSERT_TRUE(platform::showPages("caption", {"one", "two"}, platform::BoxIcon::Information));
    ASSERT_TRUE(
        platform::showMessage("caption", std::string(3000, 'x'), platform::BoxIcon::Information));
    pump(0.2);
    EXPECT_EQ(2, platform::openMessageBoxes());
    EXPECT_FALSE(std::ifstream("imgui.ini").good());
}
