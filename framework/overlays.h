#pragma once
// Reference overlays drawn over the scene: labelled axes, power cubes of 10^n metres or
// parsecs, celestial sky grids around the eye, and the stroke-text helpers they rest on
// (billboard text, screen text, screen boxes). The drawing functions need a current GL
// context with GLUT initialised; the layout functions below them are plain computations.

#include <array>
#include <functional>
#include <string>
#include <vector>

// ---------------------------------------------------------------------------------------
// Settings

// Multiplies the size (and the fade) of the power-cube labels; starts at 1.0.
float getLabelSize();
// Returns 1, or -1 with a message (keeping the old value) when the size is negative or
// not a finite number.
int setLabelSize(float size);

// ---------------------------------------------------------------------------------------
// Drawing

// Unit axes from the origin in red, green and blue, labelled "<prefix>x", "<prefix>y",
// "<prefix>z" at 1.1 when labels is true. The frame loop uses drawAxes(true, "G", 1.0f).
void drawAxes(bool labels, const char* prefix, float labelSize);

// Nested cubes of 10^n metres (parsecs) centred at the origin of the current modelview
// matrix, faded by how far their size is from the eye's distance to that origin.
void drawMeterCubes(double currLogScale);
void drawParsecCubes(double currLogScale);

// The wire unit cube (corners at +-0.5) with its power label "10^n <unit>" on one edge,
// in yellow scaled by fade. The current matrix is left as it was.
void drawPowerCube(int n, float fade, const char* unit);

// "1 <unit>" for n = 0, else "10" with a raised n, then the unit; centred on the origin, in
// the Roman stroke font scaled by size. Leaves the depth function at GL_LESS.
void drawPowerLabel(int n, float size, const char* unit);

// Mono-spaced stroke text at the current modelview origin, always facing the viewer.
// alignment 1: starts at the origin; 2: centred; otherwise ends at the origin. offset moves
// it by that many widths of "-".
void drawBillboardText(const char* text, float size, int alignment, float offset);

// The grid on a sphere of radius 1000 around the eye. kind 1: equatorial (hours); 2:
// galactic; 3: the fixed-matrix frame. detail adds labels at the grid crossings. fovy in
// degrees sets the line density and the label sizes.
void drawSkyGrid(int kind, bool detail, double fovy);

// A sphere of meridians and parallels about the z axis; at most 512 slices and 512 stacks.
void myGlutWireSphere(double radius, int slices, int stacks);

// Roman stroke text at (x, y) in window fractions, y counted from the top. alignment 1
// anchors the left end at x, 2 centres it, any other value anchors the right end;
// dashCount shifts it right by that many widths of "-".
void drawScreenText(const char* text, float x, float y, float size, int alignment, int dashCount);

// A filled rectangle in window fractions (y from the top), optionally outlined.
void drawScreenBox(float x, float y, float width, float height, const float fill[4], bool outline,
                   const float outlineColor[4]);

// Width of a text in a GLUT stroke font (GLUT_STROKE_ROMAN or GLUT_STROKE_MONO_ROMAN), in
// font units: the sum of the characters' exact widths. Needs GLUT initialised.
double strokeTextWidth(void* font, const std::string& text);

// ---------------------------------------------------------------------------------------
// Layout computations (no GL)

// The base-10 logarithm of the eye's distance from the modelview origin in metres: the
// eye -R^T t of the column-major modelview matrix, at exponent currLogScale, normalised.
// An eye at the origin gives currLogScale.
double eyeDistanceExponent(const double modelview[16], double currLogScale);

// Fade of the cube of 10^n units seen from exponent e, before the square root:
// 1 - |n - (e - 0.5)| / 2. The cube is drawn only when it is positive.
double powerCubeWeight(int n, double e);

struct PowerCubeFade {
    int n;        // the cube's edge is 10^n units
    double fade;  // sqrt of the weight, in (0, 1]
};
// The cubes drawn from exponent e: n from e truncated towards zero to that plus 6, those of
// positive weight. Empty for an exponent that is not finite or beyond +-1e6.
std::vector<PowerCubeFade> powerCubeFades(double e);

// Width of a text in stroke-font units, as the GL code measures it with the GLUT fonts.
using StrokeWidthFn = std::function<double(const std::string&)>;

// One run of stroke text placed in the label's own font units.
struct StrokePiece {
    std::string text;
    double x = 0.0;      // start of the run
    double y = 0.0;      // baseline height
    double scale = 1.0;  // 0.5 for a raised exponent
};
// The runs of the power label for exponent n: the base "1" or "10", the exponent "%d" at
// half size raised by 0.75 width of "-" (n not 0), then the unit; centred on x = 0.
std::vector<StrokePiece> powerLabelLayout(int n, const char* unit, const StrokeWidthFn& width);

// Where billboard text starts along x, in font units: 0, -width / 2 or -width by alignment,
// plus offset widths of "-". Blanks count as the width of "-".
double billboardTextStart(const char* text, int alignment, float offset,
                          const StrokeWidthFn& width);
// The modelview matrix for billboard text: the upper-left 3 x 3 replaced by size times the
// identity, the origin moved along x by start x size.
std::array<double, 16> billboardMatrix(const double modelview[16], float size, double start);

// A blank of screen text is this many font units wide per unit of text size.
constexpr double kScreenBlankPerSize = 200000.0;

// The x offset o of screen text in font units (the text is moved by o x size): minus the
// text's width unless alignment is 1 (halved for 2), a blank counting 200000 x size, then
// plus dashCount widths of "-".
double screenTextOffset(const char* text, float size, int alignment, int dashCount,
                        const StrokeWidthFn& width);

// Sky grid spheres: alpha weights of the 24 x 12, 72 x 36 and 144 x 72 spheres (slices x
// stacks) at field of view fovy; 0 means the sphere is not drawn.
std::array<double, 3> skyGridSphereWeights(double fovy);

struct GridLabel {
    double longitude;  // degrees, about z
    double latitude;   // degrees, towards +z
    std::string text;
    bool major = true;    // drawn in the label colour
    double weight = 1.0;  // alpha multiplier of minor labels
};
// The main labels: latitudes -90 .. 90 (at longitude 0) and longitudes 15 .. 345 (at
// latitude 0) every 15 degrees; kind 1 names longitudes in hours.
std::vector<GridLabel> skyGridMainLabels(int kind);
// The crossing labels of the detailed grid at field of view fovy, without the crossings
// that carry a main label.
std::vector<GridLabel> skyGridCrossingLabels(int kind, double fovy);

// Wire sphere limits: more than 512 stacks or slices prints a warning and is cut to 512.
// Returns false (with a warning) when a count is below 1 and there is nothing to draw.
constexpr int kWireSphereMaxCount = 512;
bool limitWireSphereCounts(int& slices, int& stacks);

// Sines and cosines of the slice angles 2 pi i / slices (i = 0 .. slices) and of the stack
// latitudes pi (0.5 - j / stacks) times the radius (j = 0 .. stacks).
struct WireSphereTable {
    double radius = 0.0;
    int slices = 0;
    int stacks = 0;
    std::vector<double> sliceSin, sliceCos;
    std::vector<double> stackSin, stackCos;

    // Rebuilds the tables when the radius or a count differs from the last build; returns
    // true when it rebuilt them.
    bool update(double newRadius, int newSlices, int newStacks);
};
