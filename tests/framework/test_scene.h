#pragma once
// A small scene for the framework's window tests: a background whose colour tells the frame
// and a smooth-shaded triangle whose edges show every sub-pixel shift.

struct TestRgb {
    int r, g, b;
};

// The background colour drawn for a frame (exact bytes).
TestRgb backgroundFor(double frame);

// Draws the pattern with the current matrices (the background fills the viewport whatever
// they are). Sets all the GL state it depends on.
void drawTestPattern(double frame);
