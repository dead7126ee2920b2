#include "scene/panel_trace.h"

#include <imgui.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <vector>

namespace {

struct Traced {
    std::string value;
    int x = 0, y = 0, w = 0, h = 0;
};

bool traceOn() {
    static const bool on = std::getenv("SKYRAMA_PANEL_TRACE") != nullptr;
    return on;
}

std::vector<std::string> sections;
std::map<std::string, int> seenThisFrame;  // repeated labels in one section get "#2", "#3"
std::map<std::string, Traced> printed;
std::string printedRollouts;

std::string currentPath(const std::string& label) {
    std::string path;
    for (const std::string& s : sections)
        path += s + "/";
    path += label;
    const int n = ++seenThisFrame[path];
    if (n > 1) path += "#" + std::to_string(n);
    return path;
}

}  // namespace

bool panelTraceOn() {
    return traceOn();
}

void tracePushSection(const std::string& name) {
    if (traceOn()) sections.push_back(name);
}

void tracePopSection() {
    if (traceOn() && !sections.empty()) sections.pop_back();
}

void traceControl(const std::string& label, const std::string& value) {
    if (!traceOn()) return;
    const std::string path = currentPath(label);
    const ImVec2 min = ImGui::GetItemRectMin();
    const ImVec2 max = ImGui::GetItemRectMax();
    Traced now{value, static_cast<int>(min.x), static_cast<int>(min.y),
               static_cast<int>(max.x - min.x), static_cast<int>(max.y - min.y)};
    auto it = printed.find(path);
    const bool isNew = it == printed.end();
    if (isNew || it->second.value != now.value)
        std::printf("panel: %s = [%s]\n", path.c_str(), now.value.c_str());
    if (isNew || it->second.x != now.x || it->second.y != now.y || it->second.w != now.w ||
        it->second.h != now.h) {
        std::printf("panel item: %s %d %d %d %d\n", path.c_str(), now.x, now.y, now.w, now.h);
    }
    printed[path] = now;
}

void traceRollouts(const std::string& description) {
    if (!traceOn() || description == printedRollouts) return;
    printedRollouts = description;
    std::printf("panel rollouts: %s\n", description.c_str());
}

void traceEndFrame() {
    if (!traceOn()) return;
    seenThisFrame.clear();
    sections.clear();
    std::fflush(stdout);
}
