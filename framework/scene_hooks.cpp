#include "framework/scene_hooks.h"

#include "framework/scene_registry.h"

CreatePanelHook createPanelHook = nullptr;
KeyboardHook keyboardHook = nullptr;
SpecialHook specialHook = nullptr;
MouseHook mouseHook = nullptr;
MotionHook motionHook = nullptr;
PassiveMotionHook passiveMotionHook = nullptr;
IdleHook idleHook = nullptr;
HelpHook helpHook = nullptr;

namespace {
SceneEntryPoints scene;
int eventModifiers = 0;
}  // namespace

const SceneEntryPoints& activeScene() {
    return scene;
}
void setActiveScene(const SceneEntryPoints& s) {
    scene = s;
}
void setEventModifiers(int modifiers) {
    eventModifiers = modifiers;
}
int frameworkModifiers() {
    return eventModifiers;
}
