#pragma once

#include "DmxSink.h"
#include "PaneSet.h"
#include "ProjectFile.h"
#include "Theme.h"

#include <QMainWindow>
#include <QPersistentModelIndex>
#include <QTimer>
#include <QUndoStack>

#include <memory>

class DmxOutput;
class Patch;
class QLabel;
class RecentFiles;

/// The window: swatches, chart and editor above the patch, and what works on all of them. It owns the undo stack.
///
/// The colour that is edited is that of the selected fixtures; without a selection it is nobody's.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// \param sink null for a build without DMX output.
    explicit MainWindow(std::unique_ptr<DmxSink> sink, QWidget *parent = nullptr);
    ~MainWindow() override;

    /// The fixtures of the project.
    Patch *patch() const;
    /// What sends them.
    DmxOutput *output() const;
    /// The steps of all panes.
    QUndoStack *undoStack();
    /// The panes, for tests.
    const PaneSet &panes() const;
    /// Path of the project; empty for one that was never saved.
    QString projectPath() const;

    /// Opens the project at \a path in place of the present one, without asking. False, with a dialog that says why and
    /// nothing changed, when it cannot be read.
    bool open(const QString &path);
    /// Saves the project to \a path; a dialog says why it failed.
    bool saveTo(const QString &path);

public Q_SLOTS:
    /// Begins or ends the DMX output; nothing in a build without one.
    void setSending(bool isSending);
    /// Begins an empty project, after asking for one that has changes.
    void newProject();
    /// Asks for a project and opens it, after asking for one that has changes.
    void chooseAndOpen();
    /// Saves to the project's path, which is asked for where there is none. False when it was not saved.
    bool save();
    /// Asks for a path and saves to it.
    bool saveAs();

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void makeFileActions();
    void makeEditActions();
    void makeSwatchMenu();
    void makeOutputActions();
    void makeViewMenu();
    void makeHelpMenu();
    void makeStatusBar();
    void connectPanes();
    QAction *makeAction(const QString &text, const QString &icon, const QKeySequence &keys);

    void showText(QAction *action);

    void endTyping();
    void updateModified();
    bool mayDiscard();
    void setProjectPath(const QString &path);
    std::optional<ProjectFile::Content> readWithProgress(const QString &path, ProjectFile::Fault &fault);
    void showFault(const QString &text, const ProjectFile::Fault &fault);
    void addFixtures();
    void onSelectionChanged();
    void onPatchChanged(const QModelIndex &first, const QModelIndex &last);
    void editColor(const TrelColor &color);
    void activateSwatch(const TrelColor &color, const QString &uid);
    void assign(const QVector<int> &rows, const QVector<TrelColor> &colors, const QStringList &uids);
    void showColor(const TrelColor &color);
    void startFade();
    void finishFade(const TrelColor &color);
    void updateStatus();
    void showRefusal(const QString &reason);
    void chooseTheme(Theme::Variant variant);
    void restoreLayout();
    void saveLayout() const;

    QUndoStack m_undo;
    Patch *m_patch;
    DmxOutput *m_output;
    PaneSet m_panes;
    RecentFiles *m_recentFiles;
    QToolBar *m_toolBar;
    QAction *m_sendAction = nullptr;
    QAction *m_blackoutAction = nullptr;
    QLabel *m_statusMark;
    QLabel *m_statusText;
    QTimer m_mergeTimer;           ///< ends a step of colour edits when the user pauses
    int m_stepsBefore = 0;         ///< QUndoStack::index() when it was last looked at
    QPersistentModelIndex m_shown; ///< of the fixture whose colour is edited
    QString m_projectPath;
    QByteArray m_savedProject; ///< its document, as it was opened or last saved
    QVector<quint32> m_fading; ///< ids of the fixtures that a crossfade moves
};
