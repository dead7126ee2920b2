#pragma once
// Examine windows: up to 32 rectangles on the screen in which the rendered stars are compared
// with a registered photograph, and the measurement settings shown beside them in the panel.
// The scene keeps the records and the panel's view of the current one; the comparison itself
// belongs to image registration.

#include <array>
#include <vector>

#include "scene/panel_text.h"

constexpr int kMaxExamineWindows = 32;

struct ExamineWindow {
    int x = 0, y = 0;  // corner in window pixels, y from the top
    int width = 1, height = 1;
    int dragMode = 0;
    std::vector<unsigned char> modelImage;  // rendered stars in the window (RGB)
    std::vector<unsigned char> photoImage;  // the registered photograph in the window
    std::vector<unsigned char> differenceImage;
    double rms[3] = {0.0, 0.0, 0.0};
    double snr[3] = {0.0, 0.0, 0.0};

    void clearImages() {
        modelImage.clear();
        photoImage.clear();
        differenceImage.clear();
    }
};

struct ExamineWindowSet {
    std::array<ExamineWindow, kMaxExamineWindows> windows;
    int windowCount = 1;
    int current = 0;  // "current window"
    // The spinners "x-coord", "y-coord", "width", "height".
    int shownX = 0, shownY = 0, shownWidth = 1, shownHeight = 1;

    // One window, window 0 current, at (20, 20), 25 x 25 pixels or the main window's size if
    // smaller; every record's images cleared.
    void reset(int winWidth, int winHeight);
    // 60: the current window's rectangle into the spinners (when the number is in range).
    void show();
    // 61: a window at (50, 50), 25 x 25 or the window's size if smaller, made current.
    // Returns false (after "cannot add more window\n") when all 32 are in use.
    bool add(int winWidth, int winHeight);
    // 62: the last window's record moves into the current one, window 0 becomes current.
    // Does nothing with one window left.
    void removeCurrent();
    // 63: the spinners into the current window, kept within the main window.
    void store(int winWidth, int winHeight);
};

struct MeasurementSettings {
    float noiseCutoff = 0.5f;
    float jitterSize = 0.002f;
    int numberOfTrials = 10;
    int textureBorder = 2;
    int textureTileSize = 30;
    bool exportIndividualFiles = true;
    PanelText differencePath;  // "Path:", "Error/window"
    PanelText hdFile;          // "HD File:", "Sizes/"
    PanelText exportTo;        // "export to:", "texture/startex"
    PanelText rms[3];          // "rms error R:" .. (read-only)
    PanelText snr[3];          // "snr error R:" ..
};

// Requests that the next frame serves once (set by panel buttons).
struct MeasurementRequests {
    bool measurePickedStar = false;
    bool measureStarsInFile = false;
    bool extractPickedStar = false;
    bool extractStarsInFile = false;
    bool computeDifference = false;
    bool exportDifference = false;
    int jitterSearch = 0;  // 0 idle, 1 requested, 2 running

    bool anyMeasurement() const {
        return measurePickedStar || measureStarsInFile || extractPickedStar || extractStarsInFile;
    }
};

extern ExamineWindowSet examineWindows;
extern MeasurementSettings measurementSettings;
extern MeasurementRequests measurementRequests;

// Settings and requests back to their start values (window size for the first window).
void resetMeasurementState(int winWidth, int winHeight);

// Outlines of the windows in use, in window pixels: the current one in (0.9, 0.9, 0.4, 1),
// the others in (0.7, 0.7, 0.7, 1), each labelled "Examine window %d".
void drawExamineWindows(int viewportWidth, int viewportHeight);
