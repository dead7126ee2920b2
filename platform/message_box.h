#pragma once
// Message boxes drawn by the panel host over the main window: a modal Yes/No question, plain
// information boxes and sequences of OK/Cancel pages. The GLUT loop keeps running while any
// box is open; boxes never appear in dumped frames.

#include <functional>
#include <string>
#include <vector>

namespace platform {

enum class BoxIcon { Information, Exclamation };

// A modal question with Yes and No; No is the default. Enter, Escape and "n" answer No, "y"
// answers Yes, or a click on a button. Until it is answered no input reaches the scene.
// onAnswer(yes) runs on the GLUT thread. Without a panel host the box cannot be shown:
// "Error: cannot open message box.\n" is printed and the question counts as answered No.
void askYesNo(const std::string& caption, const std::string& text, BoxIcon icon,
              std::function<void(bool yes)> onAnswer);
bool modalBoxOpen();

// A box with the text and an OK button; returns at once. Text beyond kMessageTextMax bytes is
// cut. Returns false (after "Error: cannot open message box.\n") without a panel host.
constexpr std::size_t kMessageTextMax = 1024;
bool showMessage(const std::string& caption, const std::string& text, BoxIcon icon);

// A box showing pages one at a time with OK and Cancel: OK goes on to the next page (after the
// last, back to the first), Cancel closes the box. Each call opens a box of its own.
bool showPages(const std::string& caption, const std::vector<std::string>& pages, BoxIcon icon);

// Number of boxes open (the question included).
int openMessageBoxes();

// Used by the panel host: draws every open box inside the main window's interface frame, and
// offers a key to the modal question (true when the question took it).
void drawMessageBoxes();
bool messageBoxKey(unsigned char key);

}  // namespace platform
