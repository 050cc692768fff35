// The modal dialogs on Qt Widgets, or the installed answerer.
#include "app/qt/dialogs.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFile>
#include <QFileDialog>
#include <QFont>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace orrelin::Dialogs {

namespace {

Answerer& installedAnswerer() {
  static Answerer answerer;
  return answerer;
}

// Widgets need a QApplication; under a plain QCoreApplication (the command-line tool) there is nobody
// to ask.
bool canShowWidgets() { return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr; }

QString fromPath(const std::filesystem::path& path) {
  return QFile::decodeName(QByteArray::fromStdString(path.native()));
}
std::filesystem::path toPath(const QString& text) {
  return std::filesystem::path(QFile::encodeName(text).toStdString());
}

int showQuestion(const Request& request) {
  QMessageBox box(request.warning ? QMessageBox::Warning : QMessageBox::Question, request.title,
                  request.title);
  box.setInformativeText(request.text);
  QList<QAbstractButton*> buttons;
  for (int i = 0; i < request.buttons.size(); ++i) {
    const bool cancel = request.buttons[i] == QStringLiteral("Cancel");
    buttons << box.addButton(request.buttons[i], i == 0   ? QMessageBox::AcceptRole
                                                 : cancel ? QMessageBox::RejectRole
                                                          : QMessageBox::DestructiveRole);
  }
  if (!buttons.isEmpty()) box.setDefaultButton(qobject_cast<QPushButton*>(buttons.front()));
  box.exec();
  return static_cast<int>(buttons.indexOf(box.clickedButton()));
}

Answer showPrompt(const Request& request) {
  QDialog dialog;
  dialog.setWindowTitle(request.title);
  auto* layout = new QVBoxLayout(&dialog);
  auto* title = new QLabel(request.title, &dialog);
  QFont bold = title->font();
  bold.setBold(true);
  title->setFont(bold);
  auto* message = new QLabel(request.text, &dialog);
  message->setWordWrap(true);
  auto* field = new QLineEdit(request.initial, &dialog);
  field->setFixedSize(280, 24);
  auto* buttons = new QDialogButtonBox(&dialog);
  QPushButton* accept = buttons->addButton(request.buttons.value(0), QDialogButtonBox::AcceptRole);
  buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
  accept->setDefault(true);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  layout->addWidget(title);
  layout->addWidget(message);
  layout->addWidget(field);
  layout->addWidget(buttons);
  field->setFocus();
  field->selectAll();
  if (dialog.exec() != QDialog::Accepted) return Answer::cancel();
  return Answer::withText(field->text());
}

Answer showPanel(const Request& request) {
  QFileDialog dialog(nullptr, request.title);
  const bool save = request.kind == Request::Kind::savePanel;
  dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  if (!request.buttons.isEmpty()) dialog.setLabelText(QFileDialog::Accept, request.buttons.front());
  if (!request.directory.empty()) dialog.setDirectory(fromPath(request.directory));
  if (save) {
    dialog.setFileMode(QFileDialog::AnyFile);
    if (!request.initial.isEmpty()) dialog.selectFile(request.initial);
    if (!request.extensions.isEmpty()) dialog.setDefaultSuffix(request.extensions.front());
  } else if (request.folders) {
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly, true);
  } else {
    dialog.setFileMode(QFileDialog::ExistingFile);
  }
  if (!request.extensions.isEmpty() && !request.folders) {
    QStringList patterns;
    for (const QString& extension : request.extensions) patterns << QStringLiteral("*.") + extension;
    dialog.setNameFilter(patterns.join(QLatin1Char(' ')));
  }
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return Answer::cancel();
  return Answer::withPath(toPath(dialog.selectedFiles().front()));
}

Answer answer(const Request& request) {
  if (installedAnswerer()) return installedAnswerer()(request);
  if (!canShowWidgets()) return Answer::cancel();
  switch (request.kind) {
    case Request::Kind::question:
      return {showQuestion(request), {}, {}};
    case Request::Kind::prompt:
      return showPrompt(request);
    case Request::Kind::openPanel:
    case Request::Kind::savePanel:
      return showPanel(request);
  }
  return Answer::cancel();
}

}  // namespace

void setAnswerer(Answerer answerer) { installedAnswerer() = std::move(answerer); }

int ask(const QString& title, const QString& text, const QStringList& buttons, bool warning) {
  Request request;
  request.kind = Request::Kind::question;
  request.title = title;
  request.text = text;
  request.buttons = buttons;
  request.warning = warning;
  return answer(request).button;
}

std::optional<QString> prompt(const QString& title, const QString& message, const QString& initial,
                              const QString& button) {
  Request request;
  request.kind = Request::Kind::prompt;
  request.title = title;
  request.text = message;
  request.buttons = {button, QStringLiteral("Cancel")};
  request.initial = initial;
  Answer reply = answer(request);
  if (reply.button != 0) return std::nullopt;
  return reply.text;
}

std::optional<std::filesystem::path> chooseOpen(const QString& message, const QString& prompt,
                                                const std::filesystem::path& directory,
                                                const QStringList& extensions, bool folders) {
  Request request;
  request.kind = Request::Kind::openPanel;
  request.title = message;
  request.buttons = {prompt};
  request.directory = directory;
  request.extensions = extensions;
  request.folders = folders;
  Answer reply = answer(request);
  if (reply.button != 0 || reply.path.empty()) return std::nullopt;
  return reply.path;
}

std::optional<std::filesystem::path> chooseSave(const QString& message, const QString& prompt,
                                                const QString& fileName,
                                                const std::filesystem::path& directory,
                                                const QStringList& extensions) {
  Request request;
  request.kind = Request::Kind::savePanel;
  request.title = message;
  request.buttons = {prompt};
  request.initial = fileName;
  request.directory = directory;
  request.extensions = extensions;
  Answer reply = answer(request);
  if (reply.button != 0 || reply.path.empty()) return std::nullopt;
  return reply.path;
}

}  // namespace orrelin::Dialogs
