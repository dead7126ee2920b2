// Starting the program on a data tree: the messages of the scene's start-up, how data files
// are found (from the working folder, under TOPDIR, two folders up), the no-orrery mode and
// the ephemeris cache. Each run dumps the 3-frame movie of the tree and ends (exit code 1).

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/support/child_process.h"
#include "tests/support/scratch_files.h"
#include "tests/scene/scene_tree.h"

using namespace scenetest;
using namespace testsupport;

namespace {

class SceneStart : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!haveDisplay()) GTEST_SKIP() << "no display";
        holdDisplay();
    }
    void TearDown() override {
        if (!dir_.empty()) removeDir(dir_);
    }

    // A fresh folder for this test, removed when it ends.
    std::string scratch(const std::string& name) {
        dir_ = freshDir(name);
        return dir_;
    }

    // The movie of the tree dumped to frames in the working folder.
    RunResult dump(const std::string& workingDir, const std::vector<EnvChange>& env,
                   const std::vector<std::string>& starFiles) {
        std::vector<std::string> argv{skyramaProgram(), "-dump", "frame", "0", tree_.script};
        argv.insert(argv.end(), starFiles.begin(), starFiles.end());
        RunOptions options;
        options.workingDir = workingDir;
        options.env = env;
        RunResult f = runProgram(argv, options);
        EXPECT_EQ(std::string::npos, f.err.find("Sanitizer")) << f.err;
        EXPECT_EQ(std::string::npos, f.err.find("runtime error")) << f.err;
        return f;
    }

    SceneTree tree_;
    std::string dir_;
};

}  // namespace

TEST_F(SceneStart, WithoutStarFilesItStopsBeforeReadingAnything) {
    const std::string dir = scratch("start_nostars");
    tree_ = writeSceneTree(dir, "nostars.star");
    const RunResult f = dump(dir, {{"TOPDIR", dir}}, {});
    EXPECT_EQ(1, f.exitCode);
    EXPECT_NE(std::string::npos,
              f.err.find("Err: (initScene) Please input a list of .star files after movie "
                         "script.\n\n"));
    EXPECT_EQ(std::string::npos, f.out.find("star objects"));
    EXPECT_FALSE(std::filesystem::exists(dir + "/frame.0000.pnm"));
}

TEST_F(SceneStart, FilesOnlyUnderTopdirAreFoundThereQuietly) {
    const std::string dir = scratch("start_topdir");
    tree_ = writeSceneTree(dir + "/tree", "topdir.star");
    const std::string run = dir + "/elsewhere";
    std::filesystem::create_directories(run);
    const RunResult f = dump(run, {{"TOPDIR", tree_.root}}, {tree_.starFile});
    EXPECT_EQ(1, f.exitCode) << f.err;
    EXPECT_EQ(std::string::npos, f.err.find("failed to open")) << f.err;
    // The particles come from the data root: nothing is said about them.
    EXPECT_EQ(std::string::npos, f.out.find("particles read from")) << f.out;
    // No ephemeris: the orrery runs without one, and the frames are still written.
    EXPECT_NE(std::string::npos, f.out.find("try to setup orrery ... ")) << f.out;
    const std::string under = tree_.root + "/data/ephemerisdata/binp_all.405";
    EXPECT_NE(std::string::npos, f.err.find("Fail to open [data/ephemerisdata/binp_all.405] or [" +
                                            under + "] - use no orrery mode.\n"))
        << f.err;
    EXPECT_EQ(std::string::npos, f.out.find("datasize"));
    for (const char* frame : {"frame.0000.pnm", "frame.0001.pnm", "frame.0002.pnm"})
        EXPECT_TRUE(std::filesystem::exists(run + "/" + frame)) << frame;
}

TEST_F(SceneStart, TwoFoldersBelowTheTreeEverythingIsFoundWithoutTopdir) {
    const std::string dir = scratch("start_updir");
    tree_ = writeSceneTree(dir, "updir.star", 3);
    const std::string run = dir + "/a/b";
    std::filesystem::create_directories(run);
    const RunResult f = dump(run, {{"TOPDIR", std::nullopt}}, {tree_.starFile});
    EXPECT_EQ(1, f.exitCode) << f.err;
    EXPECT_EQ(std::string::npos, f.err.find("Err")) << f.err;
    // A 3-record ephemeris with the default cache of 256 records is cached whole.
    EXPECT_NE(std::string::npos,
              f.out.find("try to setup orrery ... datasize = [24456]\ncachesize = [24456 "
                         "bytes].\n"))
        << f.out;
}

TEST_F(SceneStart, FromTheTreeItselfTheRelativePathsWorkAndSaySo) {
    const std::string dir = scratch("start_here");
    tree_ = writeSceneTree(dir, "here.star");
    const RunResult f = dump(dir, {{"TOPDIR", "/nonexistent"}}, {tree_.starFile});
    EXPECT_EQ(1, f.exitCode) << f.err;
    EXPECT_NE(std::string::npos,
              f.out.find("- 1 particles read from data/prtdata/SolarSystem/sun.prt\n"))
        << f.out;
    EXPECT_NE(std::string::npos, f.err.find("num_bright_stars = 3\n")) << f.err;
}

TEST_F(SceneStart, MissingOrBrokenDataSaysWhatIsWrongAndNeverCrashes) {
    const std::string dir = scratch("start_broken");
    tree_ = writeSceneTree(dir, "broken.star");
    std::filesystem::remove(dir + "/data/stardata/skyrama.txt");
    RunResult f = dump(dir, {{"TOPDIR", dir}}, {tree_.starFile});
    EXPECT_EQ(1, f.exitCode);
    EXPECT_NE(std::string::npos, f.err.find("Err: failed to open [data/stardata/skyrama.txt] or [" +
                                            dir + "/data/stardata/skyrama.txt]\n"))
        << f.err;
    EXPECT_FALSE(std::filesystem::exists(dir + "/frame.0000.pnm"));

    tree_ = writeSceneTree(dir, "broken.star");
    writeFile(dir + "/data/stardata/broken.star", "NUM_STARS 2000000000\nSIZE 1 16.4894\n1 2\n");
    f = dump(dir, {{"TOPDIR", dir}}, {tree_.starFile});
    EXPECT_EQ(1, f.exitCode);  // not ended by a signal
    EXPECT_NE(std::string::npos, f.err.find("Err")) << f.err;

    tree_ = writeSceneTree(dir, "broken.star");
    std::filesystem::remove(dir + "/data/objdata/earthCloud.obj");
    f = dump(dir, {{"TOPDIR", dir}}, {tree_.starFile});
    EXPECT_EQ(1, f.exitCode);
    EXPECT_NE(std::string::npos,
              f.out.find("Err: reading obj model [data/objdata/earthCloud.obj] or [" + dir +
                         "/data/objdata/earthCloud.obj]\n"))
        << f.out;
}
