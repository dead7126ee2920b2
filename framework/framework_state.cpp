#include "framework/framework_state.h"

#include "platform/clock.h"

std::string scriptFileName;
std::string windowTitle;
std::string bannerText;

std::unique_ptr<MovieRecord> movie;

int winWidth = 0, winHeight = 0;
int screenWidth = 0, screenHeight = 0;
int mainWindow = 0;

int jitterSize = 1;
const JitterOffset* jitterTable = nullptr;

bool dumpMode = false;
std::string movieFileHead;
int frameNumOffset = 0;
int frameSkip = 0;
bool doubleRate = false;
bool fullscreen = false;
bool gzipFrames = false;

double currFrame = 0.0;
double currLogScale = 0.0;
double fovy = 60.0;
double aspect = 1.0;

std::array<int, 3> renderFlags{2, 16, 4};

bool panelEmbedded = false;
bool frameworkMenu = true;
std::int64_t perfFrequency = 1000;

int playCount = 0;
bool playEveryFrame = false;
double lastPlayTime = kNotStarted;
double firstDisplayTime = 0.0;
bool firstDisplayArmed = false;
bool measureFrameRate = false;
double frameRate = 0.0;
bool showFrameInfo = false;

bool pickPending = false;
int pickX = 0, pickY = 0;

bool aspectFollowsWindow = true;

double sensitivity = 1.0;
int shearQuadrant = 0;

bool axesShown = false;
bool meterCubesShown = false;
bool parsecCubesShown = false;
bool antiAliasing = true;
bool cubesSuppressed = false;

int controlledLight = 0;
std::array<bool, kNumLights> lightOn{true, false, false, false, false, false, false, false};

int renderFlagsWord() {
    return renderFlags[0] | renderFlags[1] | renderFlags[2];
}

bool setScriptFileName(const std::string& name) {
    if (name.size() > kScriptFileNameMax) return false;
    scriptFileName = name;
    return true;
}

bool setMovieFileHead(const std::string& head) {
    if (head.size() > kMovieFileHeadMax) return false;
    movieFileHead = head;
    return true;
}

void setWindowTitle(const std::string& title) {
    windowTitle = title.substr(0, kWindowTitleMax);
}

void setBannerText(const std::string& text) {
    bannerText = text.substr(0, kBannerTextMax);
}

int totalFrames() {
    return movie ? movie->totalNumFrame() : -1;
}

bool haveMovieFrames() {
    return movie && movie->totalNumFrame() > 0;
}

double frameClockSeconds() {
    const std::int64_t frequency = perfFrequency > 0 ? perfFrequency : 1000;
    return static_cast<double>(platform::frameClockTicks()) / static_cast<double>(frequency);
}
