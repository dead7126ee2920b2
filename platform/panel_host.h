#pragma once
// The panel host: Dear ImGui inside the GLUT windows, for the control panel and the message
// boxes.
//
// GLUT input is fed to ImGui as it arrives and queued; right after the next ImGui frame has
// started, each queued event goes either to the panel (when ImGui wants the mouse or the
// keyboard) or to the HostCallbacks::input function. A press and release that arrive between
// two frames are kept apart so ImGui sees both. Drags that began outside the panel stay
// outside it to their release. While a modal message box is open, keys answer the box and no
// input reaches HostCallbacks::input.
//
// Frame order in the main window's display callback:
//     if (platform::beginInterfaceFrame()) { ...draw the scene...; read back if needed;
//                                            platform::drawInterface(); }
//     swap
// beginInterfaceFrame returns false inside another interface frame (a redisplay run from a
// panel callback or an input handler) or before the host exists: then draw the scene only.

namespace platform {

enum class InputKind { Keyboard, Special, Mouse, Motion, PassiveMotion };

struct InputEvent {
    InputKind kind = InputKind::Keyboard;
    int key = 0;                // Keyboard: the character as typed; Special: GLUT_KEY_*
    int button = 0, state = 0;  // Mouse: GLUT button and GLUT_DOWN / GLUT_UP
    int x = 0, y = 0;           // GLUT window coordinates, y from the top
    int modifiers = 0;          // GLUT_ACTIVE_* bits at the last key or button event
    double time = 0.0;          // wall clock when the event arrived
};

struct HostCallbacks {
    void (*input)(const InputEvent& event) = nullptr;  // input the panel does not take
    void (*reshape)(int width, int height) = nullptr;  // the main window's new size
};

// Sets up ImGui for mainWindow (made current) and registers its reshape, keyboard (down and
// up), special (down and up), mouse, motion, passive-motion and wheel callbacks. The caller
// keeps the display and idle callbacks.
void initPanelHost(int mainWindow, const HostCallbacks& callbacks);
bool panelHostReady();

bool beginInterfaceFrame();
void drawInterface();
bool interfaceFrameActive();

// Modifiers of the event being routed (glutGetModifiers() is invalid outside GLUT's own
// callbacks, and routing happens after them).
int currentModifiers();

// The control panel: build() is called every frame inside the panel's ImGui window (issue
// ImGui widgets in it; their actions run right there, on the GLUT thread).
using PanelBuilder = void (*)();
enum class PanelPlacement {
    RightColumn,  // a column on the right of the main window; the 3-D viewport is the rest
    OwnWindow,    // a GLUT window of its own titled "Skyrama Panel"
};
void createPanel(PanelBuilder build, PanelPlacement placement);
bool panelExists();
PanelPlacement panelPlacement();
int panelWindow();  // GLUT id of the panel's own window, 0 when it has none
constexpr int kDefaultPanelColumnWidth = 250;
void setPanelColumnWidth(int pixels);
int panelColumnWidth();

// The part of the main window left to the 3-D drawing, in GL window coordinates (x, y from the
// bottom left): the whole window, or what the right column leaves.
void freeViewportArea(int& x, int& y, int& width, int& height);

// Posts a redisplay of the panel's own window (the column is redrawn with the main window).
void redisplayPanel();

}  // namespace platform
