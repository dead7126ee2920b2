#pragma once
// The star scene's settings: one process-wide set of flags and values shared by the scene
// drawing, the control panel and the scene's keys. Flags are bools; the panel binds its check
// boxes and spinners straight to these fields.

struct SceneSettings {
    // Layers.
    bool showStars = true;
    bool showMilkyWay = true;
    bool showGalacticAxes = false;  // mirrors the framework's axes switch every frame
    bool showMeterCubes = false;    // mirrors the framework's metre cubes
    bool showParsecCubes = false;   // mirrors the framework's parsec cubes
    bool cubeAtPickedStar = false;
    bool showGalacticGrid = false;
    bool showEquatorialGrid = false;
    bool showGridDetail = false;
    bool showConstellationLines = false;
    bool showConstellationNames = false;
    bool showConstellationBounds = false;
    bool constellationOfPickedOnly = false;
    bool showExtrasolarPlanets = false;
    bool showPlanetHostNames = true;
    bool showSun = true;
    bool showSolarSystem = true;
    bool showPlanetLabels = true;
    bool showOrreryClock = false;
    bool showEarthThousandfold = false;
    bool showDarkSky = false;
    bool showColorMap = true;
    bool showTexturedStars = true;
    bool showRaDec = false;
    bool showCommonName = false;
    bool lockView = false;
    bool showDistanceErrorBars = false;
    bool errorBarOfPickedStars = false;
    bool showVelocityTrails = false;
    bool showVelocityErrors = false;
    bool showAnchor = false;
    bool showStarInfo = true;
    bool showPlanetInfo = true;
    bool showSpanningTree = false;
    bool showImage = false;
    bool showImageLabels = false;
    bool showImageOverlay = false;
    bool showExamineWindows = false;

    // Values.
    int starAtYear = 2002;         // years
    int trailLengthYears = 20000;  // years of motion shown by a velocity trail
    float velocityErrorScale = 1.0f;
    float labelSize = 1.0f;  // from the star parameters at start
    float milkyWayAlpha = 0.35f;
    float starSize = 0.9f;           // the star texture scale set by "+", "-" and the panel
    float orbitScale = 1.0f;         // extrasolar orbits; from the star parameters at start
    float orbitLengthDays = 150.0f;  // planet trails of the orrery
    int daysFromToday = 0;           // the orrery's moment ...
    float hoursFromNow = 0.0f;       // ... and its hours

    // Star look without a panel control of its own, applied by panel actions.
    float exposure = 0.9f;
    float luminosityIncrease = 0.0f;
    float starScale = 1.0f;
    float pointFaint = 0.05f;
    bool gaussianStarTexture = true;  // false: the image "data/stardata/star.sgi" at size 1.5
    float textureFilterSize = 0.2f;
    float textureCutoff = 1.0f;

    // The registration image's opacity (the "image opacity" spinner).
    float imageOpacity = 0.5f;
};

// The one instance.
extern SceneSettings sceneSettings;

// Every setting back to its default.
void resetSceneSettings();

// Limits of the settings that keys change.
constexpr float kStarSizeMin = 0.01f;
constexpr float kStarSizeMax = 15.0f;
constexpr float kStarSizeStep = 1.05f;  // "+" multiplies, "-" divides
