#pragma once
// The viewer framework's process-wide state: one instance of each, shared by the frame loop,
// the input handlers, the dumps and the scene. Everything runs on the one GLUT thread.

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "framework/jitter_tables.h"
#include "movie/movie_record.h"

// Text capacities (characters, without the terminator).
constexpr std::size_t kScriptFileNameMax = 511;
constexpr std::size_t kMovieFileHeadMax = 511;
constexpr std::size_t kWindowTitleMax = 1023;
constexpr std::size_t kBannerTextMax = 1023;

// Movie script given on the command line; the reload action reads it again. Set it through
// setScriptFileName, which refuses a name longer than kScriptFileNameMax (a cut path would
// name another file).
extern std::string scriptFileName;
// Title of the main window and caption of every message box. setWindowTitle cuts a longer
// text at kWindowTitleMax characters (a shortened title is harmless).
extern std::string windowTitle;
// Authors and release date, shown by the About box; setBannerText cuts at kBannerTextMax.
extern std::string bannerText;

// The loaded movie script. The program always runs with one; it is null only after quit
// has released it (or when the scene's window-close handler has taken it away).
extern std::unique_ptr<MovieRecord> movie;

extern int winWidth, winHeight;        // drawing area in pixels (the 3-D viewport)
extern int screenWidth, screenHeight;  // size of the primary display
extern int mainWindow;                 // GLUT id of the window the framework draws into

extern int jitterSize;                   // jittered passes per frame; 1 = none
extern const JitterOffset* jitterTable;  // jitterSize offsets, or null when jitterSize is 1

extern bool dumpMode;              // -dump / -dumpSkip: dump the whole movie, then end
extern std::string movieFileHead;  // file-name head of dumped frames (at most 511 characters)
extern int frameNumOffset;         // added to every dumped frame number, >= 0
extern int frameSkip;              // first image index to dump, >= 0
extern bool doubleRate;            // -double: frame steps of 0.5
extern bool fullscreen;            // -fullscreen
extern bool gzipFrames;            // -gzip: compress every dumped frame

extern double currFrame;     // movie frame shown; -1.0 when the movie gives no frame
extern double currLogScale;  // log10 of the drawing unit in metres
extern double fovy;          // vertical field of view, degrees
extern double aspect;        // width / height

// Render words A, B and C (start 2, 16, 4), handed to drawScene OR-ed together.
extern std::array<int, 3> renderFlags;
int renderFlagsWord();

extern bool panelEmbedded;          // the control panel shares the main window (set by the scene)
extern bool frameworkMenu;          // the framework's own popup menu; the scene clears it
extern std::int64_t perfFrequency;  // ticks per second of the frame clock

// Playback (frame loop).
constexpr int kPlayForever = 2147483647;
extern int playCount;        // 0 stopped, 1 play once, kPlayForever loop
extern bool playEveryFrame;  // fixed step per idle call instead of real time at 30 frames/s
extern double lastPlayTime;  // wall clock of the last real-time advance; kNotStarted = not yet
constexpr double kNotStarted = 1.7976931348623157e308;  // the largest double
extern double firstDisplayTime;                         // frame clock at the first display
extern bool firstDisplayArmed;  // set by the first display; -dump waits one second after it
extern bool measureFrameRate;
extern double frameRate;    // Hz, last measured
extern bool showFrameInfo;  // frame-number overlay

// Picking: the scene's mouse hook sets pickPending and the position (bottom-up y); the next
// display runs drawScene in selection mode.
extern bool pickPending;
extern int pickX, pickY;

extern bool aspectFollowsWindow;  // reshape recomputes aspect from the window

// Navigation.
extern double sensitivity;  // multiplies every mouse displacement, 0.01 .. 5.0
extern int shearQuadrant;   // 0 normal projection, 1 .. 4 one quarter enlarged

// Overlay and drawing switches (keys a, b, B, g; actions 104 .. 107). The scene's own
// settings of similar meaning mirror these every frame.
extern bool axesShown;         // labelled axes Gx, Gy, Gz
extern bool meterCubesShown;   // power-of-ten cubes in metres
extern bool parsecCubesShown;  // power-of-ten cubes in parsecs
extern bool antiAliasing;      // point and line smoothing
extern bool cubesSuppressed;   // the scene keeps the framework from drawing its cubes

// Lights: light 0 is the one the scene controls; lights 1 .. 7 start off.
constexpr int kNumLights = 8;
extern int controlledLight;
extern std::array<bool, kNumLights> lightOn;

// Setters enforcing the capacities above. setScriptFileName and setMovieFileHead return false
// (and change nothing) for a text that is too long.
bool setScriptFileName(const std::string& name);
bool setMovieFileHead(const std::string& head);
void setWindowTitle(const std::string& title);
void setBannerText(const std::string& text);

// Frames of the loaded movie; -1 without a movie.
int totalFrames();
// A movie with at least one frame is loaded (playback and frame steps need one).
bool haveMovieFrames();

// The frame clock in seconds: high-resolution ticks / perfFrequency.
double frameClockSeconds();
