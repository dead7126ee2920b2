#pragma once
// What the orrery needs from the scene: its settings, the framework's field of view and
// frame-number flag, and the Earth's three models. The scene fills these from its own
// settings every frame.

struct GLMmodel;

struct OrrerySettings {
    int daysFromToday = 0;           // the chosen moment is now plus these days ...
    double hoursFromNow = 0.0;       // ... and these hours
    double orbitLengthDays = 150.0;  // length of the planet trails
    bool showPlanetLabels = true;
    float labelSize = 1.0f;              // multiplies the planet labels
    bool showEarthThousandfold = false;  // the Earth a thousand times its size
    double fovy = 60.0;                  // the framework's field of view, degrees
    bool showFrameInfo = false;          // the framework's frame-number overlay is shown
};

// The Earth's day, night-lights and cloud models, each scaled to unit size. A missing model
// is not drawn.
struct EarthModels {
    GLMmodel* day = nullptr;
    GLMmodel* night = nullptr;
    GLMmodel* cloud = nullptr;
};

// The chosen moment in GMT seconds: nowSeconds plus the truncated whole seconds of
// (daysFromToday + hoursFromNow / 24) days. An offset beyond a million years (or not a
// number) is held at that bound.
long long orreryMoment(const OrrerySettings& settings, long long nowSeconds);
// The chosen moment from the system clock.
long long orreryMomentNow(const OrrerySettings& settings);
