#pragma once
// Frame-buffer read-back of the current GL window, depth maps, and the shared image tools:
// row flips, conversions, crop and paste, difference measures, the clock and bitmap text.
// Read-back images come top row first.

#include <cstddef>
#include <vector>

#include "image/array_helpers.h"
#include "image/image_arithmetic.h"
#include "image/image_buffer.h"

// Reads the rectangle (x, y, width, height) of the given GL read buffer (GL_BACK, GL_FRONT...)
// as RGB bytes, top row first. If any of x, y, width, height is negative the whole viewport is
// read; the returned width and height are the size actually read. Empty after
// "readImg : Not enough memory to allocate for img!\n\n".
ImageBuffer readImg(unsigned int buffer, int x, int y, int width, int height);

// Reverses the row order of an RGB image (rows of 3 * width bytes) in place; the middle row of
// an odd height stays. Without scratch memory: "upsidedownImage : Not enough memory to
// allocate for buf!\n\n" and exit status 1.
void upsidedownImage(unsigned char* image, int width, int height);
// The same for a map of floats (rows of width values), "upsidedownDepth : ..." message.
void upsidedownDepth(float* depth, int width, int height);

// Reads the viewport's depth buffer, with the depth range set to (nearValue, farValue), top row
// first. Empty after "readRawDepth : Not enough memory to allocate for depth!\n\n".
DepthMap readRawDepth(double nearValue, double farValue);

// Draws a depth map (top row first) of the viewport's size into the depth buffer at the current
// raster position with the depth range set to (nearValue, farValue). Returns 1, or -1 after
// "writeRawDepth : size of depth map doesn't match current window size!\n\n" or
// "writeRawDepth : Not enough memory to allocate for depth!\n\n".
int writeRawDepth(const float* depth, int width, int height, double nearValue, double farValue);

// Reads the viewport's depth buffer and turns every value into the distance from the eye of
// the unprojected point (identity modelview, current projection and viewport), top row first.
// Empty after "readDepth : Not enough memory to allocate for depth!\n\n".
DepthMap readDepth();

// Wall-clock time in seconds, millisecond resolution.
double nowSeconds();

// Sets the raster position to (x, y) and draws text with a GLUT bitmap font
// (GLUT_BITMAP_HELVETICA_12 ...).
void drawBitmapString(float x, float y, const char* text, void* font);
