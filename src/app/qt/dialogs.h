// Every modal exchange with the user goes through here: questions with buttons, questions with a text
// field, and the file and folder choosers. All are modal, on the main thread. Tests (and the command-line
// tool, which has no windows) install an answerer instead, so nothing ever blocks on a dialog.
#pragma once

#include <QString>
#include <QStringList>

#include <filesystem>
#include <functional>
#include <optional>

namespace orrelin::Dialogs {

// What is being asked, as an answerer sees it.
struct Request {
  enum class Kind { question, prompt, openPanel, savePanel };
  Kind kind = Kind::question;
  QString title;         // The question's title; a panel's message.
  QString text;          // The question's explanation.
  QStringList buttons;   // Questions and prompts: the buttons, the accepting one first. Panels: the prompt.
  bool warning = false;  // The question is drawn in the warning style.
  QString initial;       // Prompts: the field's starting text. Save panels: the proposed file name.
  std::filesystem::path directory;  // Panels: where they start; empty for the chooser's own choice.
  QStringList extensions;           // Panels: the allowed file extensions without dots; empty for any.
  bool folders = false;             // Open panels: choose a folder instead of a file.
};

// What the user did: the index of the button used (-1 when the dialog was closed or cancelled), the
// field's text, or the chosen path (empty when cancelled).
struct Answer {
  int button = -1;
  QString text;
  std::filesystem::path path;

  static Answer cancel() { return {}; }
  static Answer accept() { return {0, {}, {}}; }
  static Answer withText(const QString& text) { return {0, text, {}}; }
  static Answer withPath(const std::filesystem::path& path) { return {0, {}, path}; }
};

using Answerer = std::function<Answer(const Request&)>;

// Installs `answerer` in place of the real dialogs; an empty function brings the real dialogs back.
// Without an answerer and without a widget application (a plain QCoreApplication), every dialog
// answers as cancelled.
void setAnswerer(Answerer answerer);

// Asks a question. Returns the index of the button used, 0 being the accepting first button, or -1.
int ask(const QString& title, const QString& text, const QStringList& buttons, bool warning = false);

// Asks for a text in a field of 280 by 24 pixels that has the keyboard focus, with the buttons
// `button` and "Cancel". Returns the field's text when `button` was used, else nothing.
std::optional<QString> prompt(const QString& title, const QString& message, const QString& initial,
                              const QString& button);

// Lets the user choose an existing file (or, with `folders`, a folder). Nothing when cancelled.
std::optional<std::filesystem::path> chooseOpen(const QString& message, const QString& prompt,
                                                const std::filesystem::path& directory = {},
                                                const QStringList& extensions = {}, bool folders = false);

// Lets the user choose where to save, proposing `fileName`. Nothing when cancelled.
std::optional<std::filesystem::path> chooseSave(const QString& message, const QString& prompt,
                                                const QString& fileName,
                                                const std::filesystem::path& directory = {},
                                                const QStringList& extensions = {});

}  // namespace orrelin::Dialogs
