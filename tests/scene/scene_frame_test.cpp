// The scene in this process, on the test data tree, in a small window: what a frame shows at
// the ends of the scales (the Sun's particles, the cubes around a picked star), and what the
// panel's numbered actions do to the view, the star list and the examine windows.

#include <gtest/gtest.h>

#include <GL/freeglut.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <string>
#include <thread>

#include "framework/framework_state.h"
#include "framework/scene_registry.h"
#include "framework/view_control.h"
#include "scene/control_panel.h"
#include "scene/examine_windows.h"
#include "scene/panel_state.h"
#include "scene/pick_state.h"
#include "scene/picking.h"
#include "scene/scene.h"
#include "scene/scene_mouse.h"
#include "scene/scene_objects.h"
#include "scene/scene_settings.h"
#include "scene/star_velocity.h"
#include "tests/scene/scene_tree.h"
#include "tests/support/gl_test_window.h"
#include "tests/support/scratch_files.h"

using namespace scenetest;
using testsupport::freshDir;
using testsupport::removeDir;

namespace {

constexpr int kSize = 160;

class SceneFrame : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        if (!testsupport::openTestWindow(kSize, kSize)) return;
        const std::string dir = freshDir("scene_frame");
        tree_ = writeSceneTree(dir, "frame.star");
        std::filesystem::current_path(dir);
        setenv("TOPDIR", dir.c_str(), 1);
        std::string star = tree_.starFile;
        char* argv[] = {star.data(), nullptr};
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        ready_ = initScene(1, argv) == 0;
        testing::internal::GetCapturedStdout();
        testing::internal::GetCapturedStderr();
    }
    static void TearDownTestSuite() {
        quitScene();
        if (!tree_.root.empty()) {
            std::filesystem::current_path(tree_.root + "/..");
            removeDir(tree_.root);
        }
    }

    void SetUp() override {
        SKYRAMA_REQUIRE_WINDOW(kSize, kSize);
        ASSERT_TRUE(ready_);
        glViewport(0, 0, kSize, kSize);
        mainWindow = glutGetWindow();
        winWidth = winHeight = kSize;
        panelEmbedded = false;
        sceneSettings = SceneSettings{};
        sceneSettings.showMilkyWay = false;
        sceneSettings.showSolarSystem = false;
        sceneSettings.showStarInfo = false;
        meterCubesShown = parsecCubesShown = false;
        resetPickState();
    }

    // The eye one unit from the origin on -x, looking along +x, at log scale s.
    static void lookAlongX(double s) {
        View v;
        v.viewPos = {-1.0, 0.0, 0.0, s};
        v.viewDir = {1.0, 0.0, 0.0};
        v.viewUp = {0.0, 0.0, 1.0};
        v.fovy = 60.0;
        v.aspect = 1.0;
        applyView(v);
    }

    static std::vector<unsigned char> frameAt(double s) {
        glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glEnable(GL_TEXTURE_2D);
        glEnable(GL_LIGHTING);
        glPushMatrix();
        drawScene(0.0, 3, renderFlagsWord(), s, 0);
        glPopMatrix();
        glPopAttrib();
        glFinish();
        return testsupport::readBackRGB(kSize, kSize);
    }

    static int brightness(const std::vector<unsigned char>& rgb, int x, int y) {
        const testsupport::Rgb p = testsupport::pixelAt(rgb, kSize, x, y);
        return p.r + p.g + p.b;
    }

    static int yellowPixels(const std::vector<unsigned char>& rgb) {
        int n = 0;
        for (std::size_t i = 0; i + 2 < rgb.size(); i += 3)
            n += rgb[i] > 40 && rgb[i + 1] > 40 && rgb[i + 2] < rgb[i] / 2;
        return n;
    }

    static SceneTree tree_;
    static bool ready_;
};

SceneTree SceneFrame::tree_;
bool SceneFrame::ready_ = false;

}  // namespace

TEST_F(SceneFrame, TheStarAheadNeedsStarsOnTheSunsParticlesShowFromScale5To15) {
    lookAlongX(17.0);
    sceneSettings.showSun = false;
    EXPECT_GT(brightness(frameAt(17.0), kSize / 2, kSize / 2), 200);
    sceneSettings.showStars = false;
    EXPECT_EQ(0, brightness(frameAt(17.0), kSize / 2, kSize / 2));
    sceneSettings.showSun = true;
    for (double s : {4.99, 5.0, 10.0, 15.0, 15.01}) {
        lookAlongX(s);
        const int centre = brightness(frameAt(s), kSize / 2, kSize / 2);
        if (s >= 5.0 && s <= 15.0) {
            EXPECT_GT(centre, 30) << "scale " << s;
        } else {
            EXPECT_EQ(0, centre) << "scale " << s;
        }
    }
}

TEST_F(SceneFrame, CubesSurroundAPickedStarOnlyWithinTenUnits) {
    sceneSettings.showStars = false;
    sceneSettings.showSun = false;
    sceneSettings.cubeAtPickedStar = true;
    meterCubesShown = true;
    ASSERT_TRUE(findStar("1001", kFindByHD));  // 10 parsecs: 10^17.4894 m
    lookAlongX(16.6);                          // the star 7.7 units away
    EXPECT_GT(yellowPixels(frameAt(16.6)), 30);
    lookAlongX(16.48);  // 10.2 units away
    EXPECT_EQ(0, yellowPixels(frameAt(16.48)));
}

TEST_F(SceneFrame, FindingStarsByNumberNameAndTheirNonsense) {
    testing::internal::CaptureStderr();
    for (const auto& typed : {std::make_pair("0", kFindByHD), std::make_pair("-1001", kFindByHD),
                              std::make_pair("12x", kFindByHIC), std::make_pair("", kFindByName)})
        EXPECT_FALSE(findStar(typed.first, typed.second)) << typed.first;
    EXPECT_EQ(
        "Err (findStar): no star has HD number [0].\n"
        "Err (findStar): no star has HD number [-1001].\n"
        "Err (findStar): HIC number [12x] is not a whole number.\n"
        "Err (findStar): no name given.\n",
        testing::internal::GetCapturedStderr());
    EXPECT_FALSE(pickState.starPicked);

    EXPECT_TRUE(findStar("502", kFindByHIC));
    EXPECT_EQ(kBetaHD, pickState.pickedStar.hd);
    EXPECT_TRUE(findStar("Minor", kFindByName));
    EXPECT_EQ(kGammaHD, pickState.pickedStar.hd);
    EXPECT_STREQ("1003", pickState.texts.hdNumber.c_str());
    EXPECT_TRUE(findStar("anchor", kFindByName));
    EXPECT_FALSE(pickState.starPicked);
    EXPECT_TRUE(sceneSettings.showAnchor);
    EXPECT_STREQ("anchor", pickState.texts.commonName.c_str());
}

TEST_F(SceneFrame, CopyingTheAverageIntoTheLsrStopsTheSelectedStars) {
    StarList& stars = *sceneStars();
    testing::internal::CaptureStdout();
    initStarVelocityPanel(stars);  // as the panel does when it is made
    panelCallback(110);
    EXPECT_EQ(
        "average velocity for 3/3 stars is [2.333333,8.000000,2.333333]\n"
        "average velocity for 3/3 stars is [2.333333,8.000000,2.333333]\n",
        testing::internal::GetCapturedStdout());
    EXPECT_EQ("3/3 stars involved\n", velocityPanel.involved);
    panelCallback(111);
    panelCallback(113);
    const double* lsr = stars.getStarParameter().lsr;
    EXPECT_NEAR(-7.0 / 3.0, lsr[0], 1e-12);
    EXPECT_NEAR(-8.0, lsr[1], 1e-12);
    Vec3 mean;
    for (int i = 1; i < stars.getNumRecords(); ++i)
        mean = mean + stars.getStarArray()[i].motion.xyz();
    EXPECT_NEAR(0.0, length(mean), 1e-3);  // metres per year over three stars
    panelCallback(114);  // the default comes back into the fields, not into the list
    EXPECT_NEAR(1.0, velocityPanel.currentLSR[0], 1e-12);
    EXPECT_NEAR(-8.0, stars.getStarParameter().lsr[1], 1e-12);
}

TEST_F(SceneFrame, ALockedViewKeepsItsFieldOfViewAndFixedAspectFollowsTheWindow) {
    lookAlongX(16.0);
    sceneSettings.lockView = true;
    panelState.fovy = 30.0f;
    panelCallback(10);
    EXPECT_DOUBLE_EQ(60.0, fovy);
    EXPECT_FLOAT_EQ(60.0f, panelState.fovy);
    panelState.logScale = 3.0f;
    panelCallback(17);
    EXPECT_DOUBLE_EQ(16.0, currLogScale);

    sceneSettings.lockView = false;
    winWidth = 200;
    winHeight = 100;
    panelState.fixAspect = true;
    panelState.aspect = 0.5f;
    panelCallback(11);
    EXPECT_DOUBLE_EQ(2.0, aspect);
    EXPECT_FLOAT_EQ(2.0f, panelState.aspect);
    EXPECT_TRUE(aspectFollowsWindow);
}

TEST_F(SceneFrame, LookAtStarTurnsTheViewOntoThePickedStar) {
    lookAlongX(17.0);
    ASSERT_TRUE(findStar("1002", kFindByHD));  // Beta Testi: along +y, out of the view
    sceneSettings.lockView = true;
    testing::internal::CaptureStderr();
    lookAtPickedStar();
    EXPECT_EQ("Screen locked.\n", testing::internal::GetCapturedStderr());
    EXPECT_FALSE(spinActive());

    sceneSettings.lockView = false;
    lookAtPickedStar();
    ASSERT_TRUE(spinActive());
    for (int i = 0; i < 400 && spinActive(); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        continueSpin();
    }
    EXPECT_FALSE(spinActive());  // the turn ends by itself after about 1.5 s
    // From the eye, one unit out on -x, the star lies at (1, 10^0.4894, 0) units.
    const Vec3 expected = normalized(Vec3{1.0, std::pow(10.0, 17.4894 - 17.0), 0.0});
    const View v = currentView();
    EXPECT_NEAR(expected.x, v.viewDir.x, 1e-3);
    EXPECT_NEAR(expected.y, v.viewDir.y, 1e-3);
    EXPECT_NEAR(0.0, v.viewDir.z, 1e-3);
}

TEST_F(SceneFrame, ShiftDragsTurnAboutThePickedStarAndALockedViewTakesNone) {
    lookAlongX(17.0);
    ASSERT_TRUE(findStar("1001", kFindByHD));  // straight ahead, 4.09 units from the eye
    setEventModifiers(GLUT_ACTIVE_SHIFT);
    sceneMouse(GLUT_LEFT_BUTTON, GLUT_DOWN, 50, 50);
    EXPECT_EQ(1, sceneMotion(60, 50));  // a roll of 10 x 0.5 x 0.3 = 1.5 degrees
    sceneMouse(GLUT_LEFT_BUTTON, GLUT_UP, 60, 50);
    View v = currentView();
    EXPECT_NEAR(1.0, v.viewDir.x, 1e-9);  // the star stays in the middle
    EXPECT_NEAR(1.5, std::acos(v.viewUp.z) * 180.0 / M_PI, 1e-3);

    sceneMouse(GLUT_MIDDLE_BUTTON, GLUT_DOWN, 50, 50);
    EXPECT_EQ(1, sceneMotion(50, 70));  // orbit the star by 10 degrees
    sceneMouse(GLUT_MIDDLE_BUTTON, GLUT_UP, 50, 70);
    v = currentView();
    const Vec3 star = phcToDrawing(pickState.pickedStar.pos, 17.0);
    Phc eye = v.viewPos;
    const Vec3 e = phcToDrawing(eye, 17.0);
    EXPECT_NEAR(4.0861, length(star - e), 1e-3);  // still as far from the star
    EXPECT_NEAR(10.0, angleBetween(v.viewDir, Vec3{1.0, 0.0, 0.0}) * 180.0 / M_PI, 1e-3);

    sceneSettings.lockView = true;
    setEventModifiers(0);
    double before[16], after[16];
    glGetDoublev(GL_MODELVIEW_MATRIX, before);
    sceneMouse(GLUT_LEFT_BUTTON, GLUT_DOWN, 50, 50);
    EXPECT_EQ(1, sceneMotion(80, 90));  // consumed: the framework does not turn the view
    sceneMouse(GLUT_LEFT_BUTTON, GLUT_UP, 80, 90);
    glGetDoublev(GL_MODELVIEW_MATRIX, after);
    EXPECT_TRUE(std::equal(before, before + 16, after));
}

TEST_F(SceneFrame, ExamineWindowsThroughThePanel) {
    resetMeasurementState(kSize, kSize);
    panelCallback(62);  // one window left: nothing happens
    EXPECT_EQ(1, examineWindows.windowCount);
    for (int i = 1; i < kMaxExamineWindows; ++i)
        panelCallback(61);
    testing::internal::CaptureStderr();
    panelCallback(61);
    EXPECT_EQ("cannot add more window\n", testing::internal::GetCapturedStderr());
    EXPECT_EQ(kMaxExamineWindows, examineWindows.windowCount);
    examineWindows.shownWidth = 40;
    panelCallback(63);
    EXPECT_EQ(40, examineWindows.windows[examineWindows.current].width);
}

TEST_F(SceneFrame, SpectralRangesAllAndNoneReachTheStarList) {
    StarList& stars = *sceneStars();
    panelState.sptype[4].on = true;  // G
    panelCallback(109);
    EXPECT_TRUE(stars.getStarParameter().sptypeRangeOn[4]);
    EXPECT_EQ(-1.0f, stars.getStarParameter().sptypeRange[4][1]);
    EXPECT_EQ("G [-1.0,-1.0]", panelState.sptype[4].label);
    panelCallback(108);
    EXPECT_EQ(10.0f, stars.getStarParameter().sptypeRange[4][1]);
    panelState.sptype[4].on = false;
    panelCallback(104);
    EXPECT_FALSE(stars.getStarParameter().sptypeRangeOn[4]);
}
