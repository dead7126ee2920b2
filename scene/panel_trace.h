#pragma once
// An optional echo of the control panel on standard output, for driving the program from
// scripts and tests: with the environment variable SKYRAMA_PANEL_TRACE set, each panel frame
// prints the controls whose shown value or place changed since the last print:
//   panel: <path> = [<value>]
//   panel item: <path> <x> <y> <width> <height>        (window pixels, y from the top)
//   panel rollouts: <letters in order, upper case when open>
// A path is the control's label prefixed by the rollouts that hold it ("[O]rrery/orbit ...").

#include <string>

bool panelTraceOn();

// The rollout path of the controls that follow.
void tracePushSection(const std::string& name);
void tracePopSection();

// The control just issued: its shown value and its rectangle.
void traceControl(const std::string& label, const std::string& value);
void traceRollouts(const std::string& description);

// Prints what changed; called once at the end of every panel frame.
void traceEndFrame();
