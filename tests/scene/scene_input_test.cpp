// The running program driven with real input events through the X server (xdotool): picking
// with the right button, the anchor on the empty sky, the scene's keys and rollout selection,
// typing into the panel's fields, and the locked view. The panel's shown values are read
// from its echo on standard output (SKYRAMA_PANEL_TRACE).

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "image/pnm_file.h"
#include "tests/support/child_process.h"
#include "tests/support/scratch_files.h"
#include "tests/support/x_input.h"
#include "tests/scene/scene_tree.h"

using namespace scenetest;
using namespace testsupport;

namespace {

const std::string kPicked = "Star [P]icked or To Pick/";
const std::string kChecks = "[C]heckboxes/";
const std::string kBasic = "Basic [A]djustment/";

int runCounter = 0;

struct Rect {
    int x = -1, y = -1, w = 0, h = 0;
    bool found() const { return x >= 0; }
};

class RunningScene : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!haveDisplay()) GTEST_SKIP() << "no display";
        holdDisplay();
        if (!haveProgram("xdotool")) GTEST_SKIP() << "no xdotool";
        const std::string tag =
            "scene" + std::to_string(getpid()) + "x" + std::to_string(runCounter++);
        dir_ = freshDir(tag);
        tree_ = writeSceneTree(dir_, tag + ".star");
        RunOptions options;
        options.workingDir = dir_;
        options.env = {{"TOPDIR", dir_}, {"SKYRAMA_PANEL_TRACE", "1"}};
        program_ = std::make_unique<BackgroundProgram>(
            std::vector<std::string>{skyramaProgram(), tree_.script, tree_.starFile}, options);
        ASSERT_TRUE(program_->started());
        window_ = findWindow(tag, 15.0, program_.get());
        ASSERT_FALSE(window_.empty()) << program_->err();
        // The panel column is laid out once the window has its final size.
        ASSERT_TRUE(program_->waitForOut("panel item: Quit 4", 10.0)) << program_->out();
        sleepSeconds(0.3);
    }

    void TearDown() override {
        if (program_) {
            EXPECT_TRUE(program_->running()) << "the program ended: " << program_->err();
            EXPECT_EQ(std::string::npos, program_->err().find("runtime error")) << program_->err();
        }
        program_.reset();
        if (!dir_.empty()) removeDir(dir_);
    }

    void keys(const std::vector<std::string>& names) {
        xdotool({"windowfocus", "--sync", window_});
        for (const std::string& k : names) {
            xdotool({"key", "--window", window_, k});
            sleepSeconds(0.25);
        }
    }

    // Empties the text field being edited.
    void clearField() {
        keys({"End"});
        for (int i = 0; i < 24; ++i)
            xdotool({"key", "--window", window_, "BackSpace"});
        sleepSeconds(0.3);
    }

    void type(const std::string& text) {
        xdotool({"type", "--window", window_, "--delay", "60", text});
        sleepSeconds(0.3);
    }

    void click(int x, int y, int button = 1) {
        xdotool({"mousemove", "--window", window_, std::to_string(x), std::to_string(y)});
        sleepSeconds(0.1);
        xdotool({"click", std::to_string(button)});
        sleepSeconds(0.3);
    }

    void clickItem(const std::string& path) {
        const Rect r = item(path);
        ASSERT_TRUE(r.found()) << path;
        click(r.x + r.w / 2, r.y + r.h / 2);
    }

    // What follows prefix on the last output line that starts with it; "" when none does.
    std::string lastLine(const std::string& prefix) {
        std::string rest;
        std::istringstream lines(program_->out());
        for (std::string line; std::getline(lines, line);)
            if (line.compare(0, prefix.size(), prefix) == 0) rest = line.substr(prefix.size());
        return rest;
    }

    // The last value shown for a control, "" when it was never shown.
    std::string shown(const std::string& path) {
        const std::string value = lastLine("panel: " + path + " = [");
        return value.empty() ? value : value.substr(0, value.size() - 1);
    }
    std::string rollouts() { return lastLine("panel rollouts: "); }

    // The value once it equals expected (or starts with it), or the last one after three
    // seconds (the program may need a few frames under load).
    template <typename Read>
    std::string settled(Read read, const std::string& expected, bool prefix = false) {
        std::string value = read();
        for (int i = 0; i < 60 && (prefix ? value.compare(0, expected.size(), expected) != 0
                                          : value != expected);
             ++i) {
            sleepSeconds(0.05);
            value = read();
        }
        return value;
    }
    std::string shownAs(const std::string& path, const std::string& expected) {
        return settled([&] { return shown(path); }, expected);
    }
    std::string rolloutsAs(const std::string& expected) {
        return settled([&] { return rollouts(); }, expected, true);
    }

    Rect item(const std::string& path) {
        Rect r;
        std::istringstream(lastLine("panel item: " + path + " ")) >> r.x >> r.y >> r.w >> r.h;
        return r;
    }

    // Pixels of the 3-D view dumped by the Insert key ("ppm file:" name, skyrama.ppm).
    std::vector<unsigned char> dumpView(int& width, int& height) {
        const std::string path = dir_ + "/skyrama.ppm";
        std::remove(path.c_str());
        keys({"Insert"});
        int components = 0;
        std::vector<unsigned char> rgb;
        const std::size_t whole = static_cast<std::size_t>(kScriptWidth) * kScriptHeight * 3;
        for (int i = 0; i < 60 && rgb.size() != whole; ++i) {
            sleepSeconds(0.05);
            std::FILE* f = std::fopen(path.c_str(), "rb");
            if (f == nullptr) continue;
            std::fclose(f);
            rgb = read_pnm(path.c_str(), &width, &height, &components);
        }
        return rgb;
    }

    std::string dir_;
    SceneTree tree_;
    std::unique_ptr<BackgroundProgram> program_;
    std::string window_;
};

// Pixels of the information box's magenta text in the box's corner of the view.
int infoTextPixels(const std::vector<unsigned char>& rgb, int width, int height) {
    int count = 0;
    for (int y = 0; y < height * 22 / 100 && y < height; ++y) {
        for (int x = 0; x < width * 28 / 100; ++x) {
            const unsigned char* p = &rgb[(static_cast<std::size_t>(y) * width + x) * 3];
            if (p[0] > p[1] + 50 && p[2] > p[1] + 50) ++count;
        }
    }
    return count;
}

}  // namespace

TEST_F(RunningScene, RightClickOnAStarDescribesItInThePanelAndOnScreen) {
    keys({"m", "p"});
    EXPECT_EQ('P', rolloutsAs("P")[0]) << rollouts();
    int width = 0, height = 0;
    const std::vector<unsigned char> before = dumpView(width, height);
    ASSERT_EQ(static_cast<std::size_t>(kScriptWidth * kScriptHeight * 3), before.size());
    EXPECT_EQ(0, infoTextPixels(before, width, height));

    // With Shift held the right button does not pick.
    xdotool({"mousemove", "--window", window_, std::to_string(kScriptWidth / 2),
             std::to_string(kScriptHeight / 2)});
    xdotool({"keydown", "shift", "click", "3", "keyup", "shift"});
    sleepSeconds(0.4);
    EXPECT_EQ("", shownAs(kPicked + "HD number:", ""));

    // Alpha Testi lies straight ahead, in the middle of the view.
    click(kScriptWidth / 2, kScriptHeight / 2, 3);
    EXPECT_EQ("1001", shownAs(kPicked + "HD number:", "1001"));
    EXPECT_EQ("501", shownAs(kPicked + "HIC number:", "501"));
    EXPECT_EQ("Alpha Testi", shownAs(kPicked + "Common name:", "Alpha Testi"));
    clickItem(kPicked + "1.Color Info.");
    EXPECT_EQ("G2.0(V)", shownAs(kPicked + "1.Color Info./SpType:", "G2.0(V)")) << program_->out();
    EXPECT_EQ("0.650000", shownAs(kPicked + "1.Color Info./BV:", "0.650000"));

    const std::vector<unsigned char> after = dumpView(width, height);
    EXPECT_GT(infoTextPixels(after, width, height), 20);

    // "print (console)" prints the star's description on standard output.
    clickItem(kPicked + "print (console)");
    EXPECT_TRUE(program_->waitForOut("HD(1001) HIC(501) CommonName(Alpha Testi)", 3.0))
        << program_->out().substr(0, 2000);
}

TEST_F(RunningScene, RightClickOnEmptySkyPutsTheAnchorThreeAndAHalfDecadesOut) {
    keys({"m", "p"});
    click(40, 40, 3);
    EXPECT_EQ("anchor", shownAs(kPicked + "Common name:", "anchor"));
    EXPECT_EQ("", shownAs(kPicked + "HD number:", ""));
    clickItem(kPicked + "2.Position Info.");
    EXPECT_EQ("19.500000", shownAs(kPicked + "2.Position Info./log10 scale (m):", "19.500000"));
    // Up and to the left of the view along +x: towards +y (left) and +z (up).
    const std::string l = shown(kPicked + "2.Position Info./Galactic l:");
    const std::string b = shown(kPicked + "2.Position Info./Galactic b:");
    EXPECT_GT(std::atof(l.c_str()), 0.0) << l;
    EXPECT_LT(std::atof(l.c_str()), 90.0) << l;
    EXPECT_GT(std::atof(b.c_str()), 0.0) << b;
}

TEST_F(RunningScene, KeysToggleSettingsAndSelectRollouts) {
    keys({"m", "c"});
    EXPECT_EQ("Cas", rolloutsAs("Cas").substr(0, 3));
    const std::string lines = kChecks + "show constellat.lines (s)";
    const std::string names = kChecks + "show constellat.names (s)";
    EXPECT_EQ("off", shownAs(lines, "off"));
    const char* const expected[][2] = {{"on", "off"}, {"on", "on"}, {"off", "on"}, {"off", "off"}};
    for (const auto& e : expected) {
        keys({"s"});
        EXPECT_EQ(e[0], shownAs(lines, e[0]));
        EXPECT_EQ(e[1], shownAs(names, e[1]));
    }
    keys({"E", "A", "y"});
    EXPECT_EQ("on", shownAs(kChecks + "show equatorial grid (E)", "on"));
    EXPECT_EQ("on", shownAs(kChecks + "show anchor (A)", "on"));
    EXPECT_EQ("on", shownAs(kChecks + "show star velocity trail (y)", "on"));
    keys({"Y"});
    EXPECT_NE(std::string::npos, program_->err().find("show error of star velocity vector\n"));

    // "m" then "O" opens the orrery rollout and puts it first; "m" then "o" closes it.
    keys({"m", "O"});
    EXPECT_EQ("OCasptimvew", rolloutsAs("OCasptimvew"));
    keys({"m", "o"});
    EXPECT_EQ("oCasptimvew", rolloutsAs("oCasptimvew"));
    keys({"m", "minus"});
    EXPECT_EQ("ocasptimvew", rolloutsAs("ocasptimvew"));
}

TEST_F(RunningScene, TypedNamesPickStarsAndTheAnchorAndNonsenseChangesNothing) {
    keys({"m", "p"});
    clickItem(kPicked + "Common name:");
    type("Gam");
    keys({"Return"});
    EXPECT_EQ("1003", shownAs(kPicked + "HD number:", "1003"));
    EXPECT_EQ("Gamma (Ursa)-Minor", shownAs(kPicked + "Common name:", "Gamma (Ursa)-Minor"));

    clickItem(kPicked + "HD number:");
    clearField();
    type("abc");
    keys({"Return"});
    EXPECT_NE(std::string::npos,
              program_->err().find("Err (findStar): HD number [abc] is not a whole number.\n"))
        << program_->err();
    EXPECT_EQ("1003", shownAs(kPicked + "HD number:", "1003"));  // still the picked star

    clickItem(kPicked + "Common name:");
    clearField();
    type("Zeta");
    keys({"Return"});
    EXPECT_NE(std::string::npos,
              program_->err().find("Err (findStar): no star is named [Zeta].\n"));
    EXPECT_EQ("Gamma (Ursa)-Minor", shownAs(kPicked + "Common name:", "Gamma (Ursa)-Minor"));

    clickItem(kPicked + "Common name:");
    clearField();
    type("anchor");
    keys({"Return"});
    EXPECT_EQ("anchor", shownAs(kPicked + "Common name:", "anchor"));
    EXPECT_EQ("", shownAs(kPicked + "HD number:", ""));
    click(kScriptWidth / 2, 20);  // out of the field, into the view
    keys({"m", "c"});
    EXPECT_EQ("on", shownAs(kChecks + "show anchor (A)", "on"));
}

// A Ctrl-click on a drag field would turn it into a text field that keeps the keys: a Ctrl
// pressed and released before must leave the next click a plain one.
TEST_F(RunningScene, ALockedViewRefusesTheLogScaleKeysAndAReleasedModifierLeavesClicksPlain) {
    keys({"m", "a"});
    EXPECT_EQ("16.000", shownAs(kBasic + "Log10(m) space:", "16.000"));
    keys({"Up"});
    EXPECT_EQ("16.020", shownAs(kBasic + "Log10(m) space:", "16.020"));
    keys({"L", "Up", "Up", "Down"});
    EXPECT_EQ("16.020", shownAs(kBasic + "Log10(m) space:", "16.020"));
    keys({"l", "Down", "Down"});
    EXPECT_EQ("15.980", shownAs(kBasic + "Log10(m) space:", "15.980"));
    for (const char* modifier : {"shift", "ctrl"}) {
        xdotool({"key", modifier});
        sleepSeconds(0.25);
    }
    clickItem(kBasic + "Log10(m) space:");
    keys({"Up"});
    EXPECT_EQ("16.000", shownAs(kBasic + "Log10(m) space:", "16.000"));
}
