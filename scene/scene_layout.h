#pragma once
// Where the control panel goes. The window size always comes from the movie script here (the
// command line has no size of its own; only -fullscreen asks for the whole screen): the
// panel then sits in a column to the right of the script's drawing area, and the main window
// is made that much wider, so that the 3-D view and every dumped frame keep the script's
// resolution. With -fullscreen the panel opens as a window of its own.

// Width of the panel column in pixels.
constexpr int kPanelColumnWidth = 290;

// Decides panelEmbedded and asks for the main window's size.
void chooseSceneLayout();

// Asks for the main window's size again once the panel exists, so its layout takes effect.
void resizeMainWindowForPanel();
