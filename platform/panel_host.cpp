#include "platform/panel_host.h"

#include <GL/freeglut.h>
#include <imgui.h>
#include <imgui_impl_glut.h>
#include <imgui_impl_opengl2.h>

#include <algorithm>
#include <array>
#include <deque>
#include <iterator>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/message_box.h"

namespace platform {

namespace {

constexpr int kImGuiButtons = 5;  // ImGuiIO::MouseDown
constexpr int kImGuiKeys = 512;   // ImGuiIO::KeysDown
// Bounds on what waits for the next frame; beyond them new input is dropped.
constexpr std::size_t kMaxQueuedEvents = 4096;
constexpr std::size_t kMaxHeldChanges = 4096;
constexpr int kPanelWindowWidth = 270;
constexpr int kPanelWindowHeight = 720;

// A change of ImGui's input state that waits until a frame has seen the change before it
// (ImGui 1.86 reads button and key states once per frame: a press and its release within
// one frame would be lost).
struct HeldChange {
    bool hasPosition = false;
    ImVec2 position;
    std::vector<std::pair<int, bool>> buttons;  // ImGui button index, down
    std::vector<std::pair<int, bool>> keys;     // KeysDown index, down
};

struct HostWindow {
    int glutId = 0;
    ImGuiContext* context = nullptr;
    std::deque<InputEvent> events;  // waiting to be routed after the next NewFrame
    std::deque<HeldChange> held;
    std::array<bool, kImGuiButtons> buttonChanged{};  // since the last NewFrame
    std::array<bool, kImGuiKeys> keyChanged{};
    int width = 1, height = 1;
    int modifiers = 0;
    int sceneButtons = 0;  // GLUT button bits whose press went to the scene
    int panelButtons = 0;  // ... whose press went to the panel
};

HostWindow mainHost;
HostWindow panelHost;
HostCallbacks hostCallbacks;
bool hostReady = false;
bool frameActive = false;
int routingModifiers = 0;

PanelBuilder panelBuilder = nullptr;
PanelPlacement placement = PanelPlacement::RightColumn;
bool panelCreated = false;
int columnWidth = kDefaultPanelColumnWidth;

class ContextScope {
  public:
    explicit ContextScope(ImGuiContext* context) : previous_(ImGui::GetCurrentContext()) {
        ImGui::SetCurrentContext(context);
    }
    ~ContextScope() { ImGui::SetCurrentContext(previous_); }
    ContextScope(const ContextScope&) = delete;
    ContextScope& operator=(const ContextScope&) = delete;

  private:
    ImGuiContext* previous_;
};

HostWindow* hostOf(int window) {
    if (window != 0 && window == mainHost.glutId) return &mainHost;
    if (window != 0 && window == panelHost.glutId) return &panelHost;
    return nullptr;
}

// Runs one ImGui backend input function; when its effect has to wait for a later frame, the
// effect is taken back and held.
template <class Feed>
void feedImGui(HostWindow& w, Feed&& feed) {
    ContextScope scope(w.context);
    ImGuiIO& io = ImGui::GetIO();
    std::array<bool, kImGuiButtons> buttonsBefore;
    std::array<bool, kImGuiKeys> keysBefore;
    for (int i = 0; i < kImGuiButtons; ++i)
        buttonsBefore[i] = io.MouseDown[i];
    for (int i = 0; i < kImGuiKeys; ++i)
        keysBefore[i] = io.KeysDown[i];
    const ImVec2 positionBefore = io.MousePos;

    feed();

    HeldChange change;
    if (io.MousePos.x != positionBefore.x || io.MousePos.y != positionBefore.y) {
        change.hasPosition = true;
        change.position = io.MousePos;
    }
    bool blocked = !w.held.empty();
    for (int i = 0; i < kImGuiButtons; ++i) {
        if (io.MouseDown[i] != buttonsBefore[i]) {
            change.buttons.emplace_back(i, io.MouseDown[i]);
            blocked = blocked || w.buttonChanged[i];
        }
    }
    for (int i = 0; i < kImGuiKeys; ++i) {
        if (io.KeysDown[i] != keysBefore[i]) {
            change.keys.emplace_back(i, io.KeysDown[i]);
            blocked = blocked || w.keyChanged[i];
        }
    }
    if (!blocked) {
        for (const auto& b : change.buttons)
            w.buttonChanged[b.first] = true;
        for (const auto& k : change.keys)
            w.keyChanged[k.first] = true;
        return;
    }
    io.MousePos = positionBefore;
    for (const auto& b : change.buttons)
        io.MouseDown[b.first] = !b.second;
    for (const auto& k : change.keys)
        io.KeysDown[k.first] = !k.second;
    if (w.held.size() < kMaxHeldChanges) w.held.push_back(std::move(change));
}

// Right after NewFrame: the frame has seen every change so far; apply what was held back, in
// order, up to the first change that needs yet another frame.
void releaseHeldChanges(HostWindow& w) {
    w.buttonChanged.fill(false);
    w.keyChanged.fill(false);
    ImGuiIO& io = ImGui::GetIO();
    while (!w.held.empty()) {
        const HeldChange& c = w.held.front();
        bool conflict = false;
        for (const auto& b : c.buttons)
            conflict = conflict || w.buttonChanged[b.first];
        for (const auto& k : c.keys)
            conflict = conflict || w.keyChanged[k.first];
        if (conflict) break;
        if (c.hasPosition) io.MousePos = c.position;
        for (const auto& b : c.buttons) {
            io.MouseDown[b.first] = b.second;
            w.buttonChanged[b.first] = true;
        }
        for (const auto& k : c.keys) {
            io.KeysDown[k.first] = k.second;
            w.keyChanged[k.first] = true;
        }
        w.held.pop_front();
    }
}

void queueEvent(HostWindow& w, const InputEvent& e) {
    if (w.events.size() < kMaxQueuedEvents) w.events.push_back(e);
    glutPostRedisplay();
}

InputEvent makeEvent(InputKind kind, const HostWindow& w, int x, int y) {
    InputEvent e;
    e.kind = kind;
    e.x = x;
    e.y = y;
    e.modifiers = w.modifiers;
    e.time = wallClockSeconds();
    return e;
}

// While the modal question is open, the panel's own window takes no input either.
bool panelInputBlocked(const HostWindow& w) {
    return &w == &panelHost && modalBoxOpen();
}

// The modifier keys, each with its GLUT_ACTIVE_* bit and its left and right special keys.
struct ModifierKey {
    int bit, left, right;
};
constexpr ModifierKey kModifierKeys[] = {
    {GLUT_ACTIVE_SHIFT, GLUT_KEY_SHIFT_L, GLUT_KEY_SHIFT_R},
    {GLUT_ACTIVE_CTRL, GLUT_KEY_CTRL_L, GLUT_KEY_CTRL_R},
    {GLUT_ACTIVE_ALT, GLUT_KEY_ALT_L, GLUT_KEY_ALT_R},
    {GLUT_ACTIVE_SUPER, GLUT_KEY_SUPER_L, GLUT_KEY_SUPER_R},
};

// The GLUT_ACTIVE_* bit of a modifier key, 0 for any other special key.
int modifierBit(int specialKey) {
    for (const ModifierKey& m : kModifierKeys) {
        if (specialKey == m.left || specialKey == m.right) return m.bit;
    }
    return 0;
}

// Where the GLUT backend keeps a special key in ImGui's KeysDown.
bool& specialKeyDown(ImGuiIO& io, int key) {
    return io.KeysDown[256 + key];
}

// GLUT reports with an event the modifiers held before it: exact for a button or an ordinary
// key, one step behind for a modifier key's own press and release (a released Shift still
// shows). The modifier keys' down states in ImGui follow their own events; an exact report
// brings the others into line (a modifier pressed or released while another window had the
// keyboard).
void matchModifierKeys(int reported, int ownBit) {
    ImGuiIO& io = ImGui::GetIO();
    for (const ModifierKey& m : kModifierKeys) {
        if (m.bit == ownBit) continue;
        const bool held = specialKeyDown(io, m.left) || specialKeyDown(io, m.right);
        const bool wanted = (reported & m.bit) != 0;
        if (wanted && !held) specialKeyDown(io, m.left) = true;
        if (!wanted && held) specialKeyDown(io, m.left) = specialKeyDown(io, m.right) = false;
    }
}

// Just before a new frame: Shift, Ctrl, Alt and Super as the frame sees their keys (the key
// changes ImGui has been given so far, in the order the events came).
void setModifiersFromKeys() {
    ImGuiIO& io = ImGui::GetIO();
    bool* const flags[] = {&io.KeyShift, &io.KeyCtrl, &io.KeyAlt, &io.KeySuper};
    for (std::size_t i = 0; i < std::size(kModifierKeys); ++i) {
        const ModifierKey& m = kModifierKeys[i];
        *flags[i] = specialKeyDown(io, m.left) || specialKeyDown(io, m.right);
    }
}

// A key or button going down or up: ImGui is fed (when feed is set) with the modifier keys
// matched to GLUT's report, and the window's modifiers follow. ownBit is the modifier the
// event's own key is (0 for other keys and buttons).
template <class Feed>
void feedKeyOrButton(HostWindow& w, bool down, int ownBit, bool feed, Feed&& feedBackend) {
    const int reported = glutGetModifiers();
    w.modifiers = down ? (reported | ownBit) : (reported & ~ownBit);
    if (!feed) return;
    feedImGui(w, [&] {
        feedBackend();
        matchModifierKeys(reported, ownBit);
    });
}

void onKeyboard(unsigned char key, int x, int y) {
    HostWindow* w = hostOf(glutGetWindow());
    if (w == nullptr) return;
    feedKeyOrButton(*w, true, 0, !panelInputBlocked(*w),
                    [&] { ImGui_ImplGLUT_KeyboardFunc(key, x, y); });
    InputEvent e = makeEvent(InputKind::Keyboard, *w, x, y);
    e.key = key;
    queueEvent(*w, e);
}

void onKeyboardUp(unsigned char key, int x, int y) {
    HostWindow* w = hostOf(glutGetWindow());
    if (w == nullptr) return;
    feedKeyOrButton(*w, false, 0, true, [&] { ImGui_ImplGLUT_KeyboardUpFunc(key, x, y); });
    glutPostRedisplay();
}

void onSpecial(int key, int x, int y) {
    HostWindow* w = hostOf(glutGetWindow());
    if (w == nullptr) return;
    feedKeyOrButton(*w, true, modifierBit(key), !panelInputBlocked(*w),
                    [&] { ImGui_ImplGLUT_SpecialFunc(key, x, y); });
    InputEvent e = makeEvent(InputKind::Special, *w, x, y);
    e.key = key;
    queueEvent(*w, e);
}

void onSpecialUp(int key, int x, int y) {
    HostWindow* w = hostOf(glutGetWindow());
    if (w == nullptr) return;
    feedKeyOrButton(*w, false, modifierBit(key), true,
                    [&] { ImGui_ImplGLUT_SpecialUpFunc(key, x, y); });
    glutPostRedisplay();
}

void onMouse(int button, int state, int x, int y) {
    HostWindow* w = hostOf(glutGetWindow());
    if (w == nullptr) return;
    feedKeyOrButton(*w, state == GLUT_DOWN, 0, !panelInputBlocked(*w) || state == GLUT_UP,
                    [&] { ImGui_ImplGLUT_MouseFunc(button, state, x, y); });
    InputEvent e = makeEvent(InputKind::Mouse, *w, x, y);
    e.button = button;
    e.state = state;
    queueEvent(*w, e);
}

void onMouseWheel(int wheel, int direction, int x, int y) {
    HostWindow* w = hostOf(glutGetWindow());
    if (w == nullptr || panelInputBlocked(*w)) return;
    feedImGui(*w, [&] { ImGui_ImplGLUT_MouseWheelFunc(wheel, direction, x, y); });
    glutPostRedisplay();
}

// Motion, with or without a button held: ImGui's pointer follows; the event is routed.
void onPointerMove(InputKind kind, int x, int y) {
    HostWindow* w = hostOf(glutGetWindow());
    if (w == nullptr) return;
    feedImGui(*w, [&] { ImGui_ImplGLUT_MotionFunc(x, y); });
    queueEvent(*w, makeEvent(kind, *w, x, y));
}

void onMotion(int x, int y) {
    onPointerMove(InputKind::Motion, x, y);
}

void onPassiveMotion(int x, int y) {
    onPointerMove(InputKind::PassiveMotion, x, y);
}

void onMainReshape(int width, int height) {
    mainHost.width = width > 0 ? width : 1;
    mainHost.height = height > 0 ? height : 1;
    {
        ContextScope scope(mainHost.context);
        ImGui_ImplGLUT_ReshapeFunc(mainHost.width, mainHost.height);
    }
    if (hostCallbacks.reshape != nullptr) hostCallbacks.reshape(width, height);
}

void onPanelReshape(int width, int height) {
    panelHost.width = width > 0 ? width : 1;
    panelHost.height = height > 0 ? height : 1;
    ContextScope scope(panelHost.context);
    ImGui_ImplGLUT_ReshapeFunc(panelHost.width, panelHost.height);
    glViewport(0, 0, panelHost.width, panelHost.height);
    glutPostRedisplay();
}

void deliver(const InputEvent& e) {
    routingModifiers = e.modifiers;
    if (hostCallbacks.input != nullptr) hostCallbacks.input(e);
}

// The main window's queued input: to the panel (already fed to ImGui) or to the scene.
void routeMainEvents() {
    const ImGuiIO& io = ImGui::GetIO();
    const bool wantMouse = io.WantCaptureMouse;
    const bool wantKeyboard = io.WantCaptureKeyboard;
    HostWindow& w = mainHost;
    while (!w.events.empty()) {
        const InputEvent e = w.events.front();
        w.events.pop_front();
        const bool modal = modalBoxOpen();
        switch (e.kind) {
            case InputKind::Keyboard:
                if (modal) {
                    messageBoxKey(static_cast<unsigned char>(e.key));
                } else if (!wantKeyboard) {
                    deliver(e);
                }
                break;
            case InputKind::Special:
                if (!modal && !wantKeyboard) deliver(e);
                break;
            case InputKind::Mouse: {
                const int bit = 1 << (e.button & 31);
                if (e.state == GLUT_DOWN) {
                    if (modal || wantMouse) {
                        w.panelButtons |= bit;
                    } else {
                        w.sceneButtons |= bit;
                        deliver(e);
                    }
                } else if (w.sceneButtons & bit) {
                    // A drag the scene started ends in the scene, wherever the pointer is.
                    w.sceneButtons &= ~bit;
                    deliver(e);
                } else if (w.panelButtons & bit) {
                    w.panelButtons &= ~bit;
                } else if (!modal && !wantMouse) {
                    deliver(e);
                }
                break;
            }
            case InputKind::Motion:
                if (modal) break;
                if (w.sceneButtons != 0 || (w.panelButtons == 0 && !wantMouse)) deliver(e);
                break;
            case InputKind::PassiveMotion:
                if (!modal && !wantMouse) deliver(e);
                break;
        }
    }
}

// Keys typed in the panel's own window that the panel does not want go to the scene as if
// typed in the main window; its mouse input belongs to the panel.
void routePanelEvents() {
    const bool wantKeyboard = ImGui::GetIO().WantCaptureKeyboard;
    HostWindow& w = panelHost;
    while (!w.events.empty()) {
        const InputEvent e = w.events.front();
        w.events.pop_front();
        if (e.kind == InputKind::Keyboard) {
            if (modalBoxOpen()) {
                messageBoxKey(static_cast<unsigned char>(e.key));
            } else if (!wantKeyboard) {
                deliver(e);
            }
        } else if (e.kind == InputKind::Special) {
            if (!modalBoxOpen() && !wantKeyboard) deliver(e);
        }
    }
}

void buildPanel(float x, float y, float width, float height) {
    if (panelBuilder == nullptr) return;
    ImGui::SetNextWindowPos(ImVec2(x, y));
    ImGui::SetNextWindowSize(ImVec2(width, height));
    const ImGuiWindowFlags flags = ImGuiWindowFlags_NoTitleBar | ImGuiWindowFlags_NoResize |
                                   ImGuiWindowFlags_NoMove | ImGuiWindowFlags_NoCollapse |
                                   ImGuiWindowFlags_NoSavedSettings |
                                   ImGuiWindowFlags_NoBringToFrontOnFocus;
    ImGui::Begin("##skyrama-panel", nullptr, flags);
    panelBuilder();
    ImGui::End();
}

void setUpContext(HostWindow& w) {
    w.context = ImGui::CreateContext();
    ContextScope scope(w.context);
    ImGuiIO& io = ImGui::GetIO();
    io.IniFilename = nullptr;  // runs leave no settings file behind
    io.LogFilename = nullptr;
    ImGui::StyleColorsDark();
    ImGui_ImplGLUT_Init();
    ImGui_ImplOpenGL2_Init();
    w.width = glutGet(GLUT_WINDOW_WIDTH) > 0 ? glutGet(GLUT_WINDOW_WIDTH) : 1;
    w.height = glutGet(GLUT_WINDOW_HEIGHT) > 0 ? glutGet(GLUT_WINDOW_HEIGHT) : 1;
    ImGui_ImplGLUT_ReshapeFunc(w.width, w.height);
}

void registerInput() {
    glutKeyboardFunc(onKeyboard);
    glutKeyboardUpFunc(onKeyboardUp);
    glutSpecialFunc(onSpecial);
    glutSpecialUpFunc(onSpecialUp);
    glutMouseFunc(onMouse);
    glutMouseWheelFunc(onMouseWheel);
    glutMotionFunc(onMotion);
    glutPassiveMotionFunc(onPassiveMotion);
}

void panelWindowDisplay() {
    if (frameActive) {  // asked for from inside another frame: draw it next time round
        glutPostRedisplay();
        return;
    }
    frameActive = true;
    {
        ContextScope scope(panelHost.context);
        setModifiersFromKeys();
        ImGui_ImplOpenGL2_NewFrame();
        ImGui_ImplGLUT_NewFrame();
        releaseHeldChanges(panelHost);
        // Panel callbacks and routed keys act on the main window's GL state, as they would
        // from the column inside it.
        glutSetWindow(mainHost.glutId);
        routePanelEvents();
        buildPanel(0.0f, 0.0f, static_cast<float>(panelHost.width),
                   static_cast<float>(panelHost.height));
        ImGui::SetCurrentContext(panelHost.context);
        ImGui::Render();
        frameActive = false;
        if (panelHost.glutId == 0) return;  // closed meanwhile
        if (glutGetWindow() != panelHost.glutId) glutSetWindow(panelHost.glutId);
        glViewport(0, 0, panelHost.width, panelHost.height);
        const ImVec4 bg = ImGui::GetStyle().Colors[ImGuiCol_WindowBg];
        glClearColor(bg.x, bg.y, bg.z, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
        ImGui_ImplOpenGL2_RenderDrawData(ImGui::GetDrawData());
    }
    glutSwapBuffers();
    if (!panelHost.held.empty()) glutPostRedisplay();
}

// Closing the panel's own window leaves the program running without it.
void onPanelClose() {
    glutSetOption(GLUT_ACTION_ON_WINDOW_CLOSE, GLUT_ACTION_CONTINUE_EXECUTION);
    panelHost.glutId = 0;
    panelHost.events.clear();
    panelHost.held.clear();
}

}  // namespace

void initPanelHost(int window, const HostCallbacks& callbacks) {
    if (hostReady) return;
    const int previous = glutGetWindow();
    glutSetWindow(window);
    IMGUI_CHECKVERSION();
    mainHost.glutId = window;
    hostCallbacks = callbacks;
    setUpContext(mainHost);
    ImGui::SetCurrentContext(mainHost.context);
    glutReshapeFunc(onMainReshape);
    registerInput();
    hostReady = true;
    if (previous != 0 && previous != window) glutSetWindow(previous);
}

bool panelHostReady() {
    return hostReady;
}

bool interfaceFrameActive() {
    return frameActive;
}

int currentModifiers() {
    return routingModifiers;
}

bool beginInterfaceFrame() {
    if (!hostReady || frameActive) return false;
    frameActive = true;
    ImGui::SetCurrentContext(mainHost.context);
    setModifiersFromKeys();
    ImGui_ImplOpenGL2_NewFrame();
    ImGui_ImplGLUT_NewFrame();
    releaseHeldChanges(mainHost);
    routeMainEvents();
    // Input handlers may have switched windows or ImGui contexts.
    ImGui::SetCurrentContext(mainHost.context);
    if (panelCreated && placement == PanelPlacement::RightColumn) {
        const int w = std::min(columnWidth, mainHost.width);
        buildPanel(static_cast<float>(mainHost.width - w), 0.0f, static_cast<float>(w),
                   static_cast<float>(mainHost.height));
    }
    drawMessageBoxes();
    ImGui::Render();
    frameActive = false;
    if (!mainHost.held.empty()) glutPostWindowRedisplay(mainHost.glutId);
    return true;
}

void drawInterface() {
    if (!hostReady || frameActive) return;
    ContextScope scope(mainHost.context);
    ImDrawData* data = ImGui::GetDrawData();
    if (data == nullptr) return;
    GLint viewport[4];
    glGetIntegerv(GL_VIEWPORT, viewport);
    glViewport(0, 0, mainHost.width, mainHost.height);
    ImGui_ImplOpenGL2_RenderDrawData(data);
    glViewport(viewport[0], viewport[1], viewport[2], viewport[3]);
    if (panelHost.glutId != 0) glutPostWindowRedisplay(panelHost.glutId);
}

void createPanel(PanelBuilder build, PanelPlacement where) {
    panelBuilder = build;
    placement = where;
    panelCreated = true;
    if (where != PanelPlacement::OwnWindow || panelHost.glutId != 0 || !hostReady) return;

    const int previousWindow = glutGetWindow();
    ImGuiContext* previousContext = ImGui::GetCurrentContext();
    const int savedMode = glutGet(GLUT_INIT_DISPLAY_MODE);
    const int savedWidth = glutGet(GLUT_INIT_WINDOW_WIDTH);
    const int savedHeight = glutGet(GLUT_INIT_WINDOW_HEIGHT);
    glutInitDisplayMode(GLUT_DOUBLE | GLUT_RGBA);
    glutInitWindowSize(kPanelWindowWidth, kPanelWindowHeight);
    panelHost.glutId = glutCreateWindow("Skyrama Panel");
    setUpContext(panelHost);
    glutDisplayFunc(panelWindowDisplay);
    glutReshapeFunc(onPanelReshape);
    glutCloseFunc(onPanelClose);
    registerInput();
    glutInitDisplayMode(static_cast<unsigned int>(savedMode));
    glutInitWindowSize(savedWidth, savedHeight);
    ImGui::SetCurrentContext(previousContext);
    if (previousWindow != 0) glutSetWindow(previousWindow);
}

bool panelExists() {
    return panelCreated;
}

PanelPlacement panelPlacement() {
    return placement;
}

int panelWindow() {
    return panelHost.glutId;
}

void setPanelColumnWidth(int pixels) {
    columnWidth = pixels > 0 ? pixels : 1;
}

int panelColumnWidth() {
    return columnWidth;
}

void freeViewportArea(int& x, int& y, int& width, int& height) {
    x = 0;
    y = 0;
    width = mainHost.width;
    height = mainHost.height;
    if (panelCreated && placement == PanelPlacement::RightColumn) {
        width = mainHost.width - columnWidth;
        if (width < 1) width = 1;
    }
}

void redisplayPanel() {
    if (panelHost.glutId != 0) glutPostWindowRedisplay(panelHost.glutId);
}

}  // namespace platform
