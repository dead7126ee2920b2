// panelCallback: what each numbered control of the panel does.

#include <GL/freeglut.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

#include "framework/actions.h"
#include "framework/dumps.h"
#include "framework/frame_loop.h"
#include "framework/framework_state.h"
#include "framework/input_handlers.h"
#include "framework/view_control.h"
#include "framework/window_scope.h"
#include "imagereg/image_registration.h"
#include "scene/control_panel.h"
#include "scene/data_root.h"
#include "scene/examine_windows.h"
#include "scene/panel_state.h"
#include "scene/pick_state.h"
#include "scene/picking.h"
#include "scene/scene_objects.h"
#include "scene/scene_settings.h"
#include "scene/star_names.h"
#include "scene/star_velocity.h"
#include "wim/wim_windows.h"

namespace {

constexpr const char* kStarTextureFile = "data/stardata/star.sgi";
constexpr double kStarTextureFileSize = 1.5;

void applyClearColour() {
    if (sceneSettings.showDarkSky) {
        glClearColor(0.03f, 0.03f, 0.1f, 1.0f);
    } else {
        glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    }
}

void applyVMagSelection(StarList& stars) {
    RangeSlider& v = panelState.vmag;
    v.label = rangeSliderLabel("VMag", v.range);
    if (v.on) {
        stars.setVMagRangeOn(v.range[0], v.range[1]);
    } else {
        stars.setVMagRangeOff();
    }
}

void applyDistanceSelection(StarList& stars) {
    RangeSlider& d = panelState.logDist;
    d.label = rangeSliderLabel("Log(Dist)", d.range);
    if (d.on) {
        stars.setZRangeOn(d.range[0], d.range[1]);
    } else {
        stars.setZRangeOff();
    }
}

void applySpectralSelection(StarList& stars, int k) {
    static const char* const names[kNumSpectralClasses] = {"O", "B", "A", "F",
                                                           "G", "K", "M", "Other"};
    RangeSlider& s = panelState.sptype[k];
    s.range[0] = std::max(s.range[0], kSptypeSliderMin);
    s.range[1] = std::min(s.range[1], kSptypeSliderMax);
    s.label = rangeSliderLabel(names[k], s.range);
    if (s.on) {
        stars.setSptypeRangeOn(k, s.range[0], s.range[1]);
    } else {
        stars.setSptypeRangeOff(k);
    }
}

void setEverySpectralRange(StarList& stars, float lo, float hi) {
    for (int k = 0; k < kNumSpectralClasses; ++k) {
        panelState.sptype[k].range[0] = lo;
        panelState.sptype[k].range[1] = hi;
        applySpectralSelection(stars, k);
    }
}

void applyStarTexture(StarList& stars) {
    const SceneSettings& s = sceneSettings;
    if (s.gaussianStarTexture) {
        stars.setStarTextureGauss(s.textureFilterSize, s.textureCutoff);
        return;
    }
    std::string path = kStarTextureFile;
    if (!readableFile(path)) path = underDataRoot(sceneObjects.dataRoot, kStarTextureFile);
    stars.setStarTextureFile(path.c_str(), kStarTextureFileSize);
}

// Callback 28: the angle fields' labels and the picked star's fields.
void showRaDecChoice() {
    panelState.raDecLabels = sceneSettings.showRaDec;
    if (pickState.starPicked) {
        showPickedStar();
    } else if (!pickState.texts.hdNumber.empty() || sceneSettings.showAnchor) {
        pickState.pickedStar = pickState.anchor;
        showPickedStar();
    }
}

void reloadScriptFromPanel() {
    if (!setScriptFileName(panelState.script.str())) {
        std::fprintf(stderr, "Err: script name [%s] is too long.\n", panelState.script.c_str());
        return;
    }
    frameworkAction(kActionReloadScript);
}

void dumpScreenFromPanel() {
    const char* name = panelState.ppmFile.c_str();
    std::fprintf(stderr, "Dump screen to [%s] ... ", name);
    std::fflush(stderr);
    screenDump(name);
    std::fprintf(stderr, "done.\n");
}

void dumpMovieFromPanel() {
    const std::string head = panelState.header.str();
    if (head.empty() || !setMovieFileHead(head)) {
        std::fprintf(stderr, "Err: the movie file header [%s] is empty or too long.\n",
                     head.c_str());
        return;
    }
    // The frames go into the header's folder; make it when it is missing, so that the dump
    // does not end the program at its first frame.
    const std::filesystem::path folder = std::filesystem::path(head).parent_path();
    std::error_code error;
    if (!folder.empty()) std::filesystem::create_directories(folder, error);
    if (error) {
        std::fprintf(stderr, "Err: cannot make the folder [%s] for the movie.\n",
                     folder.string().c_str());
        return;
    }
    std::fprintf(stderr, "Dump the animation [%s.[0000-%04d.ppm] (please wait) ... ", head.c_str(),
                 totalFrames());
    std::fflush(stderr);
    dumpMovie(false);
    std::fprintf(stderr, "done.\n");
}

void rewindAndPlay() {
    if (playCount == 0 && haveMovieFrames()) {
        currFrame = 0.0;
        showCurrentFrame();
    }
    frameworkAction(kActionPlayOnce);
}

// The actions on the star list; false when there is none.
bool starListAction(int number) {
    StarList* stars = sceneStars();
    if (stars == nullptr) return false;
    SceneSettings& s = sceneSettings;
    switch (number) {
        case 12:
            std::fprintf(stderr, "increase luminosity to (%f lum)\n", s.luminosityIncrease);
            // The increase multiplies every star's intensity by 1 + the increase.
            stars->setTuneIntensity(1.0f + s.luminosityIncrease);
            return true;
        case 13:
            std::fprintf(stderr, "increase star scale to (%f)\n", s.starScale);
            stars->setStarScale(s.starScale);
            return true;
        case 14:
            stars->setPtFaint(s.pointFaint);
            return true;
        case 15:
            applyVMagSelection(*stars);
            return true;
        case 16:
            applyDistanceSelection(*stars);
            return true;
        case 18:
            stars->setStarAtYear(s.starAtYear);
            // The picked star again, where it is in that year (the Sun, HD 0, stays put).
            if (parseWholeNumber(pickState.texts.hdNumber.c_str()).value_or(0) > 0)
                findStar(pickState.texts.hdNumber.c_str(), kFindByHD);
            stars->setLabelScale(s.labelSize);
            return true;
        case 19:
            stars->setLabelScale(s.labelSize);
            return true;
        case 31:
            stars->setStarTextureScale(s.starSize);
            return true;
        case 32:
            stars->setExposure(s.exposure);
            return true;
        case 35:
            applyStarTexture(*stars);
            return true;
        case 36:
            if (s.gaussianStarTexture)
                stars->setStarTextureGauss(s.textureFilterSize, s.textureCutoff);
            return true;
        case 97:
            stars->setExtrasolarPlanetOrbitScale(s.orbitScale);
            return true;
        case 108:
            setEverySpectralRange(*stars, kSptypeSliderMin, kSptypeSliderMax);
            return true;
        case 109:
            setEverySpectralRange(*stars, kSptypeSliderMin, kSptypeSliderMin);
            return true;
        case 110:
            computeAverageVelocity(*stars);
            refreshPanel();
            return true;
        case 113:
            applyEnteredLSR(*stars);
            refreshPanel();
            return true;
        default:
            if (number >= 100 && number <= 107) {
                applySpectralSelection(*stars, number - 100);
                return true;
            }
            return false;
    }
}

// The view actions: field of view, aspect, log scale.
void viewAction(int number) {
    PanelState& p = panelState;
    switch (number) {
        case 10:
            if (sceneSettings.lockView) {
                p.fovy = static_cast<float>(fovy);
            } else {
                fovy = std::max(static_cast<double>(p.fovy), 1e-7);
                reapplyCurrentView();
            }
            break;
        case 11:
            if (sceneSettings.lockView) {
                p.aspect = static_cast<float>(aspect);
                p.fixAspect = aspectFollowsWindow;
                break;
            }
            aspectFollowsWindow = p.fixAspect;
            if (p.fixAspect) {
                aspect = static_cast<double>(winWidth) / std::max(winHeight, 1);
                p.aspect = static_cast<float>(aspect);
            } else {
                aspect = p.aspect;
            }
            reapplyCurrentView();
            break;
        case 17:
            if (sceneSettings.lockView) break;
            std::fprintf(stderr, "currlogscale (%f)\n", static_cast<double>(p.logScale));
            currLogScale = p.logScale;
            break;
        default:
            break;
    }
}

void movieAction(int number) {
    if (!movie) return;
    switch (number) {
        case 81:
            frameworkAction(kActionPlayLoop);
            break;
        case 82:
            rewindAndPlay();
            break;
        case 83:
            frameworkSpecial(GLUT_KEY_LEFT, 0, 0);
            break;
        case 84:
            frameworkSpecial(GLUT_KEY_RIGHT, 0, 0);
            break;
        case 85:
            reloadScriptFromPanel();
            break;
        case 87:
            dumpMovieFromPanel();
            break;
        default:
            break;
    }
}

void registrationAction(int number) {
    PanelState& p = panelState;
    MeasurementRequests& r = measurementRequests;
    switch (number) {
        case 50:
            sceneSettings.showStars = !sceneSettings.showStars;
            sceneSettings.showImage = !sceneSettings.showImage;
            if (sceneSettings.showStars == sceneSettings.showImage)
                sceneSettings.showStars = !sceneSettings.showStars;
            break;
        case 52:
            if (imageRegistered()) computeRegistration();
            break;
        case 53:
            readAlignment(p.alignFile.c_str());
            break;
        case 54:
            writeAlignment(p.alignFile.c_str());
            break;
        case 55:
            loadRegistrationImage("", p.imageFile.c_str());
            break;
        case 56:
        case 57:
        case 58:
            takeRegistrationStar(number - 55);
            break;
        case 60:
            examineWindows.show();
            break;
        case 61:
            examineWindows.add(winWidth, winHeight);
            break;
        case 62:
            examineWindows.removeCurrent();
            break;
        case 63:
            examineWindows.store(winWidth, winHeight);
            break;
        case 65:
            r.computeDifference = true;
            break;
        case 66:
            r.computeDifference = true;
            r.exportDifference = true;
            break;
        case 67:
            r.jitterSearch = 1;
            break;
        case 70:
            r.measurePickedStar = true;
            break;
        case 71:
            r.measureStarsInFile = true;
            break;
        case 72:
            r.extractPickedStar = true;
            break;
        case 73:
            r.extractStarsInFile = true;
            break;
        default:
            break;
    }
}

}  // namespace

void panelCallback(int number) {
    if (number == -4 || number == -1) return;
    WindowScope scope(mainWindow);
    PickedStarTexts& t = pickState.texts;
    switch (number) {
        case -8:
        case -2:
            break;
        case 10:
        case 11:
        case 17:
            viewAction(number);
            break;
        case 20:
            axesShown = sceneSettings.showGalacticAxes;
            break;
        case 27:
            applyClearColour();
            break;
        case 28:
            showRaDecChoice();
            break;
        case 40:
            frameworkAction(kActionQuit);
            break;
        case 41:
            frameworkAction(kActionHelp);
            break;
        case 42:
            frameworkAction(kActionAbout);
            break;
        case 43:
            panelState.rollouts.closeAll();
            break;
        case 44:
            panelState.rollouts.rotate();
            break;
        case 64:
            if (sceneSettings.lockView) stopSpin();
            break;
        case 80:
            showFrameInfo = panelState.showFrameNumber;
            break;
        case 81:
        case 82:
        case 83:
        case 84:
        case 85:
        case 87:
            movieAction(number);
            break;
        case 86:
            dumpScreenFromPanel();
            break;
        case 90:
            printPickedStar();
            break;
        case 91:
            lookAtPickedStar();
            break;
        case 92:
            findStar(t.hdNumber.c_str(), kFindByHD);
            break;
        case 93:
            findStar(t.hicNumber.c_str(), kFindByHIC);
            break;
        case 94:
            findStar(t.commonName.c_str(), kFindByName);
            break;
        case 95:
            findConstellation(t.constellation.c_str(), false);
            break;
        case 96:
            findConstellation(t.constellationCode.c_str(), true);
            break;
        case 98:
        case 99:
            refreshPanel();
            break;
        case 111:
            copyAverageToLSR();
            break;
        case 112:
            readEnteredLSR();
            break;
        case 114:
            restoreDefaultLSR();
            break;
        case 115:
            setDefaultLSR();
            break;
        case 210:
            meterCubesShown = sceneSettings.showMeterCubes;
            break;
        case 212:
            parsecCubesShown = sceneSettings.showParsecCubes;
            break;
        case 990:
            toggleMainWim(currLogScale);
            break;
        default:
            if (!starListAction(number)) registrationAction(number);
            break;
    }
    if (mainWindow != 0) glutPostWindowRedisplay(mainWindow);
}
