// The running viewer driven through the X server (xdotool) as a user would.

#include <gtest/gtest.h>

#include <X11/Xlib.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "image/pnm_file.h"
#include "tests/support/child_process.h"
#include "tests/support/scratch_files.h"
#include "tests/support/x_input.h"

namespace {

int tagCounter = 0;

// The test viewer on a script with the "=" state key, found by a tag in its title.
class RunningViewer : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!testsupport::haveDisplay() || !testsupport::haveProgram("xdotool"))
            GTEST_SKIP() << "no display or no xdotool";
        dir_ = testsupport::freshDir("viewer_keys");
    }
    void TearDown() override { testsupport::removeDir(dir_); }

    void start(const std::string& script, const std::vector<std::string>& sceneWords = {}) {
        const std::string tag =
            "keys-" + std::to_string(getpid()) + "-" + std::to_string(tagCounter++);
        std::vector<std::string> argv{
            TEST_VIEWER, SKYRAMA_SOURCE_DIR "/tests/framework/scripts/" + script, tag, "keys"};
        argv.insert(argv.end(), sceneWords.begin(), sceneWords.end());
        testsupport::RunOptions options;
        options.workingDir = dir_;
        window_ = testsupport::startWithWindow(viewer_, argv, options, tag);
        ASSERT_FALSE(window_.empty()) << viewer_->err();
        testsupport::sleepSeconds(0.3);
    }
    void keys(const std::vector<std::string>& k) { testsupport::pressKeys(window_, k); }
    // The scene's "state ..." line after pressing "=", and one value of it.
    std::string state() {
        keys({"equal"});
        const auto lines = testsupport::linesStartingWith(viewer_->out(), "state ");
        return lines.empty() ? "" : lines.back();
    }
    double stateValue(const std::string& name) {
        const std::string s = state();
        const std::size_t at = s.find(name + "=");
        return at == std::string::npos ? -1e9 : std::atof(s.c_str() + at + name.size() + 1);
    }
    std::string tailFrom(const std::string& text) {
        const std::string err = viewer_->err();
        const std::size_t at = err.rfind(text);
        return at == std::string::npos ? err : err.substr(at);
    }

    std::string dir_;
    std::unique_ptr<testsupport::BackgroundProgram> viewer_;
    std::string window_;
};

}  // namespace

TEST_F(RunningViewer, FrameKeysSensitivityAndTheCurrentViewPrintout) {
    ASSERT_NO_FATAL_FAILURE(start("twentyone_frames.scp"));
    keys({"F10", "i"});
    // Frame 20: the eye at (2, 0, 3) m, normalised; looking down -z, fovy 45, aspect 4:3.
    EXPECT_EQ(
        "\nCurrent View\n"
        "viewPos   = 0.55470 -0.00000 0.83205 0.55697\n"
        "viewDir   = -0.00000 -0.00000 -1.00000\n"
        "viewUp    = 0.00000 1.00000 0.00000\n"
        "fovy      = 45.00000\n"
        "aspect    = 1.33333\n"
        "Modelview:\n"
        "  1.000   0.000   0.000   0.000\n"
        "  0.000   1.000   0.000   0.000\n"
        "  0.000   0.000   1.000   0.000\n"
        " -0.555   0.000  -0.832   1.000\n"
        "Projection:\n"
        "  1.811   0.000   0.000   0.000\n"
        "  0.000   2.414   0.000   0.000\n"
        "  0.000   0.000  -1.000  -1.000\n"
        "  0.000   0.000  -0.020   0.000\n"
        "Viewport: 0 0 96 72\n",
        tailFrom("\nCurrent View\n"));
    EXPECT_EQ(20.0, stateValue("frame"));
    keys({"F5"});
    EXPECT_EQ(8.0, stateValue("frame"));     // 20 x 4 / 9
    keys({"F1", "Next", "Right", "Right"});  // Page Down at frame 0 stays; two frames on
    EXPECT_EQ(2.0, stateValue("frame"));
    keys({"Prior", "Home", "Home", "Home", "less", "End"});  // 10, held at 20, -1, -5
    EXPECT_EQ(14.0, stateValue("frame"));
    keys(std::vector<std::string>(8, "braceleft"));
    EXPECT_DOUBLE_EQ(0.01, stateValue("sensitivity"));
    keys(std::vector<std::string>(10, "braceright"));
    EXPECT_DOUBLE_EQ(5.0, stateValue("sensitivity"));
}

TEST_F(RunningViewer, XTwicePlaysOnceThenStops) {
    ASSERT_NO_FATAL_FAILURE(start("long.scp"));
    keys({"x"});
    testsupport::sleepSeconds(0.3);
    EXPECT_NE(std::string::npos, state().find("playCount=1"));
    keys({"x"});
    const double stoppedAt = stateValue("frame");
    EXPECT_NE(std::string::npos, state().find("playCount=0"));
    EXPECT_GT(stoppedAt, 0.0);
    testsupport::sleepSeconds(0.3);
    EXPECT_EQ(stoppedAt, stateValue("frame"));
    EXPECT_EQ(2, testsupport::countLines(viewer_->err(), "Play every frame"));
}

TEST_F(RunningViewer, RealTimePlaybackReachesTheEnd) {
    ASSERT_NO_FATAL_FAILURE(start("three_frames.scp"));
    keys({"X"});
    testsupport::sleepSeconds(0.4);
    EXPECT_NE(std::string::npos, state().find("frame=2.0 sensitivity=1 playCount=0"));
    EXPECT_EQ(1, testsupport::countLines(viewer_->err(), "Play at realtime (may skip frames)"));
    EXPECT_EQ(1, testsupport::countLines(viewer_->err(), "-> Frame: [2.0]"));
}

TEST_F(RunningViewer, F12FiveTimesComesBackToTheNormalProjectionAndInsertDumpsTheScreen) {
    ASSERT_NO_FATAL_FAILURE(start("three_frames.scp"));
    keys({"F12", "F12", "F12", "F12", "F12", "i", "Insert", "Insert", "Insert"});
    const std::string err = viewer_->err();
    std::size_t at = 0;
    for (const char* q : {"left-top", "right-top", "left-bottom", "right-bottom"}) {
        const std::string line = std::string("sheared view (zoom to ") + q + ")";
        EXPECT_EQ(1, testsupport::countLines(err, line)) << q;
        EXPECT_NE(std::string::npos, at = err.find(line + "\n", at)) << q;  // in this order
    }
    EXPECT_NE(std::string::npos, err.find("Projection:\n"  // symmetric: fovy 40, aspect 4:3
                                          "  2.061   0.000   0.000   0.000\n"
                                          "  0.000   2.747   0.000   0.000\n"));
    for (int i = 0; i < 3; ++i) {
        const std::string name = "screen.000" + std::to_string(i) + ".pnm";
        EXPECT_EQ(1, testsupport::countLines(err, "Screen dumped to file [" + name + "]."));
        EXPECT_TRUE(testsupport::fileExists(dir_ + "/" + name));  // its pixels: RunningEmptyScene
    }
    keys({"F11"});  // one step back: the last quarter
    EXPECT_EQ(2, testsupport::countLines(viewer_->err(), "sheared view (zoom to right-bottom)"));
}

TEST_F(RunningViewer, MiddleDragMovesTheViewByTheSensitivity) {
    ASSERT_NO_FATAL_FAILURE(start("twentyone_frames.scp", {"mouse-log"}));
    keys({"braceleft"});  // sensitivity 0.5
    testsupport::xdotool({"mousemove", "--window", window_, "20", "30"});
    testsupport::sleepSeconds(0.2);
    testsupport::xdotool({"mousedown", "2"});
    for (int x = 30; x <= 60; x += 10) {
        testsupport::sleepSeconds(0.1);
        testsupport::xdotool({"mousemove", "--window", window_, std::to_string(x), "30"});
    }
    testsupport::sleepSeconds(0.2);
    testsupport::xdotool({"mouseup", "2"});
    testsupport::sleepSeconds(0.2);
    keys({"i"});
    // 40 pixels x 0.5 x 0.01 x 45 / 90 = 0.1 to the right, in eye space.
    EXPECT_NE(std::string::npos, tailFrom("Modelview:\n").find(" 0.100   0.000  -1.000   1.000\n"))
        << viewer_->err();
    // The scene saw the press and the release, y counted from the bottom (72 - 1 - 30).
    EXPECT_NE(std::string::npos, viewer_->out().find("mouse 1 0 20 41 modifiers=0"));
    EXPECT_NE(std::string::npos, viewer_->out().find("mouse 1 1 60 41 modifiers=0"));
}

TEST_F(RunningViewer, QuitAsksFirstAndTheSceneWaitsForTheAnswer) {
    ASSERT_NO_FATAL_FAILURE(start("three_frames.scp"));
    keys({"q", "equal"});  // the question is open: the scene gets nothing
    EXPECT_TRUE(testsupport::linesStartingWith(viewer_->out(), "state ").empty());
    keys({"Escape"});  // No
    EXPECT_FALSE(state().empty());
    keys({"q", "n"});
    EXPECT_TRUE(viewer_->running());
    keys({"Escape", "y"});  // Escape asks again; y answers Yes
    EXPECT_EQ(0, viewer_->wait(5.0));
    EXPECT_NE(std::string::npos, viewer_->out().find("quitScene\n"));
}

TEST_F(RunningViewer, ClosingTheWindowRunsQuitSceneAndEndsWithCodeZero) {
    ASSERT_NO_FATAL_FAILURE(start("three_frames.scp"));
    // What a window manager sends when the user closes a window.
    Display* display = XOpenDisplay(nullptr);
    ASSERT_NE(nullptr, display);
    XEvent e{};
    e.xclient.type = ClientMessage;
    e.xclient.window = std::strtoul(window_.c_str(), nullptr, 10);
    e.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    e.xclient.format = 32;
    e.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
    e.xclient.data.l[1] = CurrentTime;
    XSendEvent(display, e.xclient.window, False, NoEventMask, &e);
    XCloseDisplay(display);
    EXPECT_EQ(0, viewer_->wait(10.0));
    EXPECT_EQ(1, testsupport::countLines(viewer_->out(), "quitScene"));
}

TEST(RunningEmptyScene, FrameNumberAndOverlaySwitchesShowInScreenDumps) {
    if (!testsupport::haveDisplay() || !testsupport::haveProgram("xdotool")) GTEST_SKIP();
    const testsupport::ScratchDir dir("overlay_keys");
    testsupport::RunOptions options;
    options.workingDir = dir.path();
    std::unique_ptr<testsupport::BackgroundProgram> viewer;
    const std::string window = testsupport::startWithWindow(
        viewer, {EMPTY_VIEWER, SKYRAMA_SOURCE_DIR "/data/movies/demo.scp"}, options, "demo.scp");
    ASSERT_FALSE(window.empty()) << viewer->err();
    testsupport::sleepSeconds(0.3);
    // Axes and metre cubes; n adds the frame number; a and b take the axes and cubes away.
    testsupport::pressKeys(window, {"n", "Insert", "a", "b", "Insert", "n", "Insert"});
    // Magenta pixels (the frame number's colour), lit ones, and lit ones outside the lower
    // left corner where the frame number is written.
    const auto count = [&](const std::string& name) {
        int w = 0, h = 0, c = 0;
        std::vector<int> n(3, 0);
        const auto data = read_pnm(dir.file(name).c_str(), &w, &h, &c);
        EXPECT_EQ(512u * 384u * 3u, data.size()) << name;
        for (std::size_t i = 0; i + 2 < data.size(); i += 3) {
            const bool on = data[i] + data[i + 1] + data[i + 2] > 0;
            n[0] += data[i] > 200 && data[i + 1] < 130 && data[i + 2] > 200;
            n[1] += on;
            n[2] += on && (i / 3 % 512 > 300 || i / 3 / 512 < 330);
        }
        return n;
    };
    const std::vector<int> all = count("screen.0000.pnm"), numberOnly = count("screen.0001.pnm");
    EXPECT_GT(all[0], 50);   // "Frame 0/60 (*)"
    EXPECT_GT(all[2], 500);  // and the axes and cubes
    EXPECT_GT(numberOnly[0], 50);
    EXPECT_EQ(0, numberOnly[2]);
    EXPECT_EQ(0, count("screen.0002.pnm")[1]);  // nothing left: black
}
