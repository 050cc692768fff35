// The Rename Assistant's observable state for the screen: the form, the dry-run rows, and the operations
// preview and apply, whose messages leave as signals.
#pragma once

#include <QtQml/qqmlparserstatus.h>
#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>

#include "organize/rename_pane.h"

namespace orrelin {

class CatalogDB;

class RenamePaneState : public QObject, public QQmlParserStatus {
  Q_OBJECT
  Q_INTERFACES(QQmlParserStatus)
  QML_ELEMENT
  // The chosen catalog's id, or -1 for none.
  Q_PROPERTY(qint64 catalogID READ catalogID WRITE setCatalogID NOTIFY formChanged)
  Q_PROPERTY(QString folder READ folder WRITE setFolder NOTIFY formChanged)
  Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY formChanged)
  Q_PROPERTY(bool includeSub READ includeSub WRITE setIncludeSub NOTIFY formChanged)
  Q_PROPERTY(bool includeFolders READ includeFolders WRITE setIncludeFolders NOTIFY formChanged)
  Q_PROPERTY(bool keepExtension READ keepExtension WRITE setKeepExtension NOTIFY formChanged)
  Q_PROPERTY(QString find READ find WRITE setFind NOTIFY formChanged)
  Q_PROPERTY(QString replace READ replace WRITE setReplace NOTIFY formChanged)
  Q_PROPERTY(bool useRegex READ useRegex WRITE setUseRegex NOTIFY formChanged)
  Q_PROPERTY(QString prefix READ prefix WRITE setPrefix NOTIFY formChanged)
  Q_PROPERTY(QString suffix READ suffix WRITE setSuffix NOTIFY formChanged)
  // An index into caseModeLabels: keep, lower, upper, title.
  Q_PROPERTY(int caseMode READ caseMode WRITE setCaseMode NOTIFY formChanged)
  Q_PROPERTY(QStringList caseModeLabels READ caseModeLabels CONSTANT)
  Q_PROPERTY(bool numbering READ numbering WRITE setNumbering NOTIFY formChanged)
  Q_PROPERTY(qint64 start READ start WRITE setStart NOTIFY formChanged)
  Q_PROPERTY(int digits READ digits WRITE setDigits NOTIFY formChanged)
  // One map per dry-run row: id, kind (its label), from, to, ok, status.
  Q_PROPERTY(QVariantList steps READ steps NOTIFY stepsChanged)
  Q_PROPERTY(int readyCount READ readyCount NOTIFY stepsChanged)
  Q_PROPERTY(int blockedCount READ blockedCount NOTIFY stepsChanged)

 public:
  explicit RenamePaneState(QObject* parent = nullptr);

  // The database connection the pane reads catalogs from; null while the database is closed, when
  // preview and apply do nothing. Not owned.
  void setStore(CatalogDB* store) { m_store = store; }

  // Made by QML: takes the program's store (again after a restore replaces it) and sends its messages
  // and rescans to the application state.
  void classBegin() override;
  void componentComplete() override {}

  // The plain state underneath, for callers outside the screen.
  const RenamePane& pane() const { return m_pane; }

  // Fills steps with the dry run of the rule; tells what went wrong through alertRaised or toastRaised.
  Q_INVOKABLE void preview();
  // Carries out the ready steps; then toastRaised or alertRaised, and rescanRequested for the catalog.
  Q_INVOKABLE void apply();

  qint64 catalogID() const { return m_pane.catalogID.value_or(-1); }
  void setCatalogID(qint64 id);
  QString folder() const { return QString::fromStdString(m_pane.folder); }
  void setFolder(const QString& text) { assign(m_pane.folder, text.toStdString()); }
  QString filter() const { return QString::fromStdString(m_pane.filter); }
  void setFilter(const QString& text) { assign(m_pane.filter, text.toStdString()); }
  bool includeSub() const { return m_pane.includeSub; }
  void setIncludeSub(bool on) { assign(m_pane.includeSub, on); }
  bool includeFolders() const { return m_pane.includeFolders; }
  void setIncludeFolders(bool on) { assign(m_pane.includeFolders, on); }
  bool keepExtension() const { return m_pane.rule.keepExtension; }
  void setKeepExtension(bool on) { assign(m_pane.rule.keepExtension, on); }
  QString find() const { return QString::fromStdString(m_pane.rule.find); }
  void setFind(const QString& text) { assign(m_pane.rule.find, text.toStdString()); }
  QString replace() const { return QString::fromStdString(m_pane.rule.replace); }
  void setReplace(const QString& text) { assign(m_pane.rule.replace, text.toStdString()); }
  bool useRegex() const { return m_pane.rule.useRegex; }
  void setUseRegex(bool on) { assign(m_pane.rule.useRegex, on); }
  QString prefix() const { return QString::fromStdString(m_pane.rule.prefix); }
  void setPrefix(const QString& text) { assign(m_pane.rule.prefix, text.toStdString()); }
  QString suffix() const { return QString::fromStdString(m_pane.rule.suffix); }
  void setSuffix(const QString& text) { assign(m_pane.rule.suffix, text.toStdString()); }
  int caseMode() const { return static_cast<int>(m_pane.rule.caseMode); }
  void setCaseMode(int index);
  QStringList caseModeLabels() const;
  bool numbering() const { return m_pane.rule.numbering; }
  void setNumbering(bool on) { assign(m_pane.rule.numbering, on); }
  qint64 start() const { return m_pane.rule.start; }
  void setStart(qint64 value) { assign(m_pane.rule.start, static_cast<int64_t>(value)); }
  int digits() const { return m_pane.rule.digits; }
  void setDigits(int value) { assign(m_pane.rule.digits, value); }

  QVariantList steps() const;
  int readyCount() const;
  int blockedCount() const { return static_cast<int>(m_pane.steps.size()) - readyCount(); }

 signals:
  void formChanged();
  void stepsChanged();
  void alertRaised(const QString& title, const QString& message);
  void toastRaised(const QString& text);
  // The catalog's records no longer match its drive and want a quiet rescan.
  void rescanRequested(qint64 catalogID);

 private:
  template <class T>
  void assign(T& field, T value) {
    if (field == value) return;
    field = std::move(value);
    emit formChanged();
  }
  // Sends the outcome's messages, and stepsChanged when the rows changed.
  void report(const RenameOutcome& outcome, const std::vector<PlanStep>& stepsBefore);

  RenamePane m_pane;
  CatalogDB* m_store = nullptr;
};

}  // namespace orrelin
