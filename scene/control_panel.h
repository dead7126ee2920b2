#pragma once
// The star scene's control panel: a column of rollouts whose controls are bound to the scene
// settings and report their changes through one numbered callback.

// The framework's panel-creation hook: builds the panel inside the main window (a column on
// its right) or in a window of its own titled "Skyrama Panel".
void createScenePanel();

// The one callback of the panel's controls; also used by the scene's keys (50, 64, 990).
void panelCallback(int number);

// Shows every bound value again (the main window and the panel are redrawn).
void refreshPanel();

// Copies the view's values that differ into the panel (log scale, field of view, aspect and
// the framework's switches); refreshes the panel once when something changed.
void synchronisePanelWithView();

// The panel's contents, built once per interface frame.
void buildScenePanel();
