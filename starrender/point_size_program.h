#pragma once
// A vertex program that gives every star point its own size, so that points of all sizes go
// to the renderer in the order they are drawn without a point-size change between them.
//
// It transforms and colours a vertex exactly as the fixed pipeline does and takes the size
// from a vertex attribute. Only the renderers whose smooth points are known to come out the
// same are given it: on Mesa's software rasterisers smooth points pass through a stage that
// draws every fixed point size of 2 pixels or less as 2 pixels, which the program
// reproduces. Elsewhere stars are drawn a batch per point size.

struct PointSizeProgram {
    unsigned program = 0;    // 0: draw with the fixed pipeline and glPointSize
    int sizeAttribute = -1;  // generic vertex attribute that holds the point size
};

// The program of the current GL context, made the first time it is asked for.
PointSizeProgram pointSizeProgram();

// Lets tests and benchmarks draw with the fixed pipeline alone (false) or with the program
// where it is known to be faithful (true, the default).
void allowPointSizeProgram(bool allowed);
