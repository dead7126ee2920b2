#include "platform/message_box.h"

#include <imgui.h>

#include <cstdio>
#include <utility>

#include "platform/panel_host.h"

namespace platform {

namespace {

struct Question {
    bool open = false;
    bool closing = false;  // answered by a key: the popup still has to be closed in ImGui
    std::string caption, text;
    BoxIcon icon = BoxIcon::Exclamation;
    std::function<void(bool)> onAnswer;
};

struct Box {
    int id = 0;
    std::string caption;
    std::vector<std::string> pages;
    std::size_t page = 0;
    bool withCancel = false;  // pages: OK goes on, Cancel closes
    BoxIcon icon = BoxIcon::Information;
    bool open = true;
};

Question question;
std::vector<Box> boxes;
int nextBoxId = 1;

bool cannotShow() {
    if (panelHostReady()) return false;
    std::fprintf(stderr, "Error: cannot open message box.\n");
    return true;
}

// A caption must not end the ImGui window label early or change its identity.
std::string captionLabel(const std::string& caption, const std::string& id) {
    std::string label;
    label.reserve(caption.size() + id.size() + 3);
    for (std::size_t i = 0; i < caption.size(); ++i) {
        label += caption[i];
        if (caption[i] == '#' && i + 1 < caption.size() && caption[i + 1] == '#') label += ' ';
    }
    return label + "###" + id;
}

void drawIcon(BoxIcon icon) {
    if (icon == BoxIcon::Exclamation) {
        ImGui::TextColored(ImVec4(1.0f, 0.75f, 0.1f, 1.0f), "/!\\");
    } else {
        ImGui::TextColored(ImVec4(0.45f, 0.7f, 1.0f, 1.0f), "(i)");
    }
    ImGui::SameLine();
}

void answer(bool yes) {
    if (!question.open) return;
    question.open = false;
    question.closing = true;
    std::function<void(bool)> onAnswer = std::move(question.onAnswer);
    question.onAnswer = nullptr;
    if (onAnswer) onAnswer(yes);
}

// Wide enough for the caption in the title bar, within the window.
void fitCaption(const std::string& caption) {
    const ImGuiStyle& style = ImGui::GetStyle();
    const ImGuiIO& io = ImGui::GetIO();
    float width = ImGui::CalcTextSize(caption.c_str()).x + style.WindowPadding.x * 2.0f +
                  style.FramePadding.x * 2.0f;
    if (width > io.DisplaySize.x) width = io.DisplaySize.x;
    ImGui::SetNextWindowSizeConstraints(ImVec2(width, 0.0f),
                                        ImVec2(io.DisplaySize.x, io.DisplaySize.y));
}

ImVec2 windowCentre() {
    const ImGuiIO& io = ImGui::GetIO();
    return ImVec2(io.DisplaySize.x * 0.5f, io.DisplaySize.y * 0.5f);
}

void drawBoxes() {
    for (Box& b : boxes) {
        const std::string label = captionLabel(b.caption, "box" + std::to_string(b.id));
        ImGui::SetNextWindowPos(windowCentre(), ImGuiCond_Appearing, ImVec2(0.5f, 0.5f));
        fitCaption(b.caption);
        const ImGuiWindowFlags flags = ImGuiWindowFlags_AlwaysAutoResize |
                                       ImGuiWindowFlags_NoCollapse |
                                       ImGuiWindowFlags_NoSavedSettings;
        if (ImGui::Begin(label.c_str(), nullptr, flags)) {
            drawIcon(b.icon);
            ImGui::TextUnformatted(b.pages[b.page].c_str());
            if (ImGui::Button("OK")) {
                if (b.withCancel) {
                    b.page = (b.page + 1) % b.pages.size();
                } else {
                    b.open = false;
                }
            }
            if (b.withCancel) {
                ImGui::SameLine();
                if (ImGui::Button("Cancel")) b.open = false;
            }
        }
        ImGui::End();
    }
    for (std::size_t i = boxes.size(); i-- > 0;) {
        if (!boxes[i].open) boxes.erase(boxes.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

void drawQuestion() {
    if (!question.open && !question.closing) return;
    const std::string label = captionLabel(question.caption, "question");
    if (question.open && !ImGui::IsPopupOpen(label.c_str())) ImGui::OpenPopup(label.c_str());
    ImGui::SetNextWindowPos(windowCentre(), ImGuiCond_Always, ImVec2(0.5f, 0.5f));
    fitCaption(question.caption);
    int clicked = -1;
    const ImGuiWindowFlags flags = ImGuiWindowFlags_AlwaysAutoResize |
                                   ImGuiWindowFlags_NoSavedSettings | ImGuiWindowFlags_NoMove;
    if (ImGui::BeginPopupModal(label.c_str(), nullptr, flags)) {
        if (question.closing) {
            ImGui::CloseCurrentPopup();
        } else {
            drawIcon(question.icon);
            ImGui::TextUnformatted(question.text.c_str());
            if (ImGui::Button("Yes")) clicked = 1;
            ImGui::SameLine();
            // No is the default answer: it stands out.
            ImGui::PushStyleColor(ImGuiCol_Button, ImGui::GetStyle().Colors[ImGuiCol_ButtonActive]);
            if (ImGui::Button("No")) clicked = 0;
            ImGui::PopStyleColor();
            ImGui::SetItemDefaultFocus();
            if (clicked >= 0) ImGui::CloseCurrentPopup();
        }
        ImGui::EndPopup();
    }
    question.closing = false;
    if (clicked >= 0) {
        answer(clicked == 1);
        question.closing = false;  // closed above
    }
}

}  // namespace

void askYesNo(const std::string& caption, const std::string& text, BoxIcon icon,
              std::function<void(bool yes)> onAnswer) {
    if (cannotShow()) {
        if (onAnswer) onAnswer(false);
        return;
    }
    if (question.open) return;  // one question at a time: the first one stays
    question.open = true;
    question.closing = false;
    question.caption = caption;
    question.text = text;
    question.icon = icon;
    question.onAnswer = std::move(onAnswer);
}

bool modalBoxOpen() {
    return question.open;
}

bool showMessage(const std::string& caption, const std::string& text, BoxIcon icon) {
    if (cannotShow()) return false;
    Box b;
    b.id = nextBoxId++;
    b.caption = caption;
    b.pages.push_back(text.substr(0, kMessageTextMax));
    b.icon = icon;
    boxes.push_back(std::move(b));
    return true;
}

bool showPages(const std::string& caption, const std::vector<std::string>& pages, BoxIcon icon) {
    if (cannotShow()) return false;
    if (pages.empty()) return true;
    Box b;
    b.id = nextBoxId++;
    b.caption = caption;
    b.pages = pages;
    b.withCancel = true;
    b.icon = icon;
    boxes.push_back(std::move(b));
    return true;
}

int openMessageBoxes() {
    return static_cast<int>(boxes.size()) + (question.open ? 1 : 0);
}

void drawMessageBoxes() {
    drawBoxes();
    drawQuestion();
}

bool messageBoxKey(unsigned char key) {
    if (!question.open) return false;
    switch (key) {
        case 'y':
        case 'Y':
            answer(true);
            break;
        case 'n':
        case 'N':
        case 13:  // Enter: No is the default button
        case 27:  // Escape
            answer(false);
            break;
        default:
            break;
    }
    return true;
}

}  // namespace platform
