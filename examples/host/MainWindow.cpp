#include "MainWindow.h"

#include "AddFixturesDialog.h"
#include "CctStrip.h"
#include "ChromaticityChart.h"
#include "ColorEditor.h"
#include "Crossfader.h"
#include "DmxOutput.h"
#include "FixtureTable.h"
#include "LibraryBatch.h"
#include "Patch.h"
#include "ProjectSwatches.h"
#include "RecentFiles.h"
#include "SwatchBrowser.h"

#include <TrelColorLibrary.h>

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPointer>
#include <QProgressDialog>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

namespace {

constexpr int MERGE_PAUSE_MS = 700;
constexpr int REFUSAL_MS = 10000;
constexpr int PROGRESS_AFTER_MS = 500;
constexpr int ICON_SIZE = 20;
constexpr QSize INITIAL_SIZE(1280, 800);
constexpr QSize MINIMUM_SIZE(960, 640);

constexpr char GEOMETRY_KEY[] = "window/geometry";
constexpr char COLUMNS_KEY[] = "window/columns";
constexpr char ROWS_KEY[] = "window/rows";

/// The wait cursor for as long as it lives.
class WaitCursor
{
public:
    WaitCursor()
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    }

    WaitCursor(const WaitCursor &) = delete;
    WaitCursor &operator=(const WaitCursor &) = delete;

    ~WaitCursor()
    {
        QApplication::restoreOverrideCursor();
    }
};

QString fileFilter()
{
    return MainWindow::tr("Projects (*%1)").arg(QLatin1String(ProjectFile::SUFFIX));
}

} // namespace

MainWindow::MainWindow(std::unique_ptr<DmxSink> sink, QWidget *parent)
    : QMainWindow(parent)
    , m_patch(new Patch(&m_undo, this))
    , m_output(new DmxOutput(m_patch, std::move(sink), this))
    , m_panes(PaneSet::make(&m_undo, m_patch))
    , m_recentFiles(new RecentFiles(tr("Open &Recent"), this))
    , m_toolBar(addToolBar(tr("Tools")))
    , m_statusMark(new QLabel)
    , m_statusText(new QLabel)
{
    setCentralWidget(m_panes.rows);
    setMinimumSize(MINIMUM_SIZE);
    m_toolBar->setObjectName(QStringLiteral("tools"));
    m_toolBar->setMovable(false);
    m_toolBar->setIconSize(QSize(ICON_SIZE, ICON_SIZE));
    makeFileActions();
    makeEditActions();
    makeSwatchMenu();
    makeOutputActions();
    makeViewMenu();
    makeHelpMenu();
    makeStatusBar();
    connectPanes();
    setProjectPath(QString());
    restoreLayout();
}

MainWindow::~MainWindow()
{
    // The stack's steps know the patch, and their end must not reach a window that is half gone.
    m_undo.disconnect(this);
    m_undo.clear();
}

Patch *MainWindow::patch() const
{
    return m_patch;
}

DmxOutput *MainWindow::output() const
{
    return m_output;
}

QUndoStack *MainWindow::undoStack()
{
    return &m_undo;
}

const PaneSet &MainWindow::panes() const
{
    return m_panes;
}

QString MainWindow::projectPath() const
{
    return m_projectPath;
}

QAction *MainWindow::makeAction(const QString &text, const QString &icon, const QKeySequence &keys)
{
    auto *action = new QAction(Theme::icon(icon), text, this);
    action->setShortcut(keys);
    return action;
}

/// The tool bar has room for few texts, in languages that need more of it, too.
void MainWindow::showText(QAction *action)
{
    if (auto *button = qobject_cast<QToolButton *>(m_toolBar->widgetForAction(action)))
        button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
}

void MainWindow::makeFileActions()
{
    QAction *create = makeAction(tr("&New"), QStringLiteral("new"), QKeySequence::New);
    QAction *open = makeAction(tr("&Open…"), QStringLiteral("open"), QKeySequence::Open);
    QAction *store = makeAction(tr("&Save"), QStringLiteral("save"), QKeySequence::Save);
    QAction *storeAs = makeAction(tr("Save &As…"), QString(), QKeySequence::SaveAs);
    QAction *quit = makeAction(tr("&Quit"), QString(), QKeySequence::Quit);
    QMenu *menu = menuBar()->addMenu(tr("&File"));
    menu->addActions({create, open});
    menu->addMenu(m_recentFiles);
    menu->addSeparator();
    menu->addActions({store, storeAs});
    menu->addSeparator();
    menu->addAction(quit);
    m_toolBar->addActions({create, open, store});
    m_toolBar->addSeparator();
    connect(create, &QAction::triggered, this, &MainWindow::newProject);
    connect(open, &QAction::triggered, this, &MainWindow::chooseAndOpen);
    connect(store, &QAction::triggered, this, &MainWindow::save);
    connect(storeAs, &QAction::triggered, this, &MainWindow::saveAs);
    connect(quit, &QAction::triggered, this, &QWidget::close);
    const auto openAgain = [this](const QString &path) {
        if (mayDiscard() && !this->open(path) && !QFileInfo::exists(path))
            m_recentFiles->remove(path);
    };
    // Behind the action that was chosen, which the menu's new contents replace.
    connect(m_recentFiles, &RecentFiles::chosen, this, openAgain, Qt::QueuedConnection);
}

void MainWindow::makeEditActions()
{
    QAction *undo = m_undo.createUndoAction(this, tr("&Undo"));
    undo->setIcon(Theme::icon(QStringLiteral("undo")));
    undo->setIconText(tr("Undo"));
    undo->setShortcut(QKeySequence::Undo);
    QAction *redo = m_undo.createRedoAction(this, tr("&Redo"));
    redo->setIcon(Theme::icon(QStringLiteral("redo")));
    redo->setIconText(tr("Redo"));
    redo->setShortcut(QKeySequence::Redo);
    QAction *add = makeAction(tr("&Add Fixtures…"), QStringLiteral("add"), QStringLiteral("Ctrl++"));
    QAction *duplicate = makeAction(tr("&Duplicate Fixtures"), QStringLiteral("duplicate"), QStringLiteral("Ctrl+D"));
    QAction *remove = makeAction(tr("Re&move Fixtures"), QStringLiteral("remove"), QStringLiteral("Ctrl+-"));
    QMenu *menu = menuBar()->addMenu(tr("&Edit"));
    menu->addActions({undo, redo});
    menu->addSeparator();
    menu->addActions({add, duplicate, remove});
    m_toolBar->addActions({undo, redo});
    m_toolBar->addSeparator();
    m_toolBar->addActions({add, duplicate, remove});
    m_toolBar->addSeparator();
    showText(add);
    connect(add, &QAction::triggered, this, &MainWindow::addFixtures);
    connect(m_panes.table, &FixtureTable::removalRequested, remove, &QAction::trigger);
    connect(duplicate, &QAction::triggered, this, [this] { m_patch->duplicate(m_panes.table->selectedRows()); });
    connect(remove, &QAction::triggered, this, [this] { m_patch->remove(m_panes.table->selectedRows()); });
    const auto enable = [this, duplicate, remove] {
        const bool isAnySelected = m_panes.table->selectionModel()->hasSelection();
        duplicate->setEnabled(isAnySelected);
        remove->setEnabled(isAnySelected);
    };
    connect(m_panes.table, &FixtureTable::selectedRowsChanged, this, enable);
    connect(m_patch, &QAbstractItemModel::rowsRemoved, this, enable);
    connect(m_patch, &QAbstractItemModel::modelReset, this, enable);
    enable();
}

void MainWindow::makeSwatchMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&Swatches"));
    const QList<QAction *> actions = m_panes.browser->editActions();
    for (QAction *action : actions) {
        if (action)
            menu->addAction(action);
        else
            menu->addSeparator();
    }
}

void MainWindow::makeOutputActions()
{
    m_sendAction = makeAction(tr("&Send DMX"), QStringLiteral("dmx"), QKeySequence(Qt::Key_F5));
    m_blackoutAction = makeAction(tr("&Blackout"), QStringLiteral("blackout"), QKeySequence(Qt::Key_F6));
    QMenu *menu = menuBar()->addMenu(tr("&Output"));
    auto *spacer = new QWidget;
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_toolBar->addWidget(spacer);
    for (QAction *action : {m_sendAction, m_blackoutAction}) {
        action->setCheckable(true);
        menu->addAction(action);
        m_toolBar->addAction(action);
        showText(action);
    }
    m_sendAction->setEnabled(m_output->status().state != DmxOutput::Unavailable);
    connect(m_sendAction, &QAction::toggled, m_output, &DmxOutput::setEnabled);
    connect(m_blackoutAction, &QAction::toggled, m_output, &DmxOutput::setBlackout);
}

void MainWindow::makeViewMenu()
{
    QMenu *menu = menuBar()->addMenu(tr("&View"));
    QWidget *const panes[] = {m_panes.columns->widget(0), m_panes.chartPane};
    const QString names[] = {tr("&Swatches"), tr("&Chart")};
    for (int i = 0; i < 2; ++i) {
        QAction *action = menu->addAction(names[i]);
        action->setCheckable(true);
        action->setChecked(true);
        connect(action, &QAction::toggled, panes[i], &QWidget::setVisible);
    }
    menu->addSeparator();
    auto *group = new QActionGroup(this);
    const QPair<QString, Theme::Variant> variants[] = {{tr("&Dark"), Theme::Dark}, {tr("&Light"), Theme::Light}};
    for (const auto &variant : variants) {
        QAction *action = group->addAction(variant.first);
        action->setCheckable(true);
        action->setChecked(variant.second == Theme::current());
        const Theme::Variant chosen = variant.second;
        connect(action, &QAction::triggered, this, [this, chosen] { chooseTheme(chosen); });
    }
    menu->addActions(group->actions());
}

void MainWindow::makeHelpMenu()
{
    QAction *about = menuBar()->addMenu(tr("&Help"))->addAction(tr("&About"));
    connect(about, &QAction::triggered, this, [this] {
        QMessageBox::about(this, tr("About"),
                           tr("<b>%1 %2</b><p>Colours for LED fixtures: see them, drag them, light them.</p>")
                               .arg(QApplication::applicationDisplayName(), QApplication::applicationVersion()));
    });
}

void MainWindow::makeStatusBar()
{
    statusBar()->addPermanentWidget(m_statusMark);
    statusBar()->addPermanentWidget(m_statusText);
    connect(m_output, &DmxOutput::statusChanged, this, &MainWindow::updateStatus);
    updateStatus();
}

void MainWindow::connectPanes()
{
    m_mergeTimer.setSingleShot(true);
    m_mergeTimer.setInterval(MERGE_PAUSE_MS);
    connect(&m_mergeTimer, &QTimer::timeout, m_patch, &Patch::endMerging);
    connect(m_panes.editor, &ColorEditor::colorChanged, this, &MainWindow::editColor);
    connect(m_panes.chart, &ChromaticityChart::colorChanged, this, &MainWindow::editColor);
    connect(m_panes.cctStrip, &CctStrip::colorChanged, this, &MainWindow::editColor);
    connect(m_panes.browser, &SwatchBrowser::colorActivated, this, &MainWindow::activateSwatch);
    connect(m_panes.browser, &SwatchBrowser::refused, this, &MainWindow::showRefusal);
    connect(m_patch, &Patch::refused, this, &MainWindow::showRefusal);
    connect(m_panes.table, &FixtureTable::selectedRowsChanged, this, &MainWindow::onSelectionChanged);
    connect(m_panes.table, &FixtureTable::colorsDropped, this, &MainWindow::assign);
    connect(m_patch, &Patch::dataChanged, this, &MainWindow::onPatchChanged);
    connect(m_patch, &Patch::modelReset, this, &MainWindow::onSelectionChanged);
    connect(m_panes.crossfader, &Crossfader::started, this, &MainWindow::startFade);
    connect(m_panes.crossfader, &Crossfader::moved, this,
            [this](const TrelColor &color) { m_patch->setLive(m_fading, color); });
    connect(m_panes.crossfader, &Crossfader::finished, this, &MainWindow::finishFade);
    connect(&m_undo, &QUndoStack::indexChanged, this, &MainWindow::updateModified);
    connect(&m_undo, &QUndoStack::cleanChanged, this, &MainWindow::updateModified);
    showColor(m_panes.editor->color());
}

void MainWindow::setSending(bool isSending)
{
    if (m_sendAction->isEnabled())
        m_sendAction->setChecked(isSending);
}

void MainWindow::newProject()
{
    if (!mayDiscard())
        return;
    TrelColorLibrary::Instance()->clear(ProjectSwatches::listId());
    m_patch->reset({});
    setProjectPath(QString());
}

void MainWindow::chooseAndOpen()
{
    if (!mayDiscard())
        return;
    const QString path =
        QFileDialog::getOpenFileName(this, tr("Open Project"), QFileInfo(m_projectPath).path(), fileFilter());
    if (!path.isEmpty())
        open(path);
}

bool MainWindow::open(const QString &path)
{
    ProjectFile::Fault fault;
    {
        const WaitCursor cursor;
        std::optional<ProjectFile::Content> content = readWithProgress(path, fault);
        if (content && ProjectFile::adoptColors(*content, fault)) {
            m_patch->reset(content->fixtures);
            m_panes.table->fitColumns();
            setProjectPath(path);
            m_recentFiles->add(path);
            return true;
        }
    }
    showFault(tr("“%1” cannot be opened.").arg(QFileInfo(path).fileName()), fault);
    return false;
}

/// Where the fixtures take longer, a bar shows how far it is, and the output goes on between them.
std::optional<ProjectFile::Content> MainWindow::readWithProgress(const QString &path, ProjectFile::Fault &fault)
{
    QProgressDialog dialog(tr("Opening “%1”…").arg(QFileInfo(path).fileName()), QString(), 0, 0, this);
    dialog.setWindowModality(Qt::WindowModal);
    dialog.setMinimumDuration(PROGRESS_AFTER_MS);
    return ProjectFile::read(path, fault, [&dialog](int done, int total) {
        dialog.setMaximum(total);
        dialog.setValue(done);
    });
}

bool MainWindow::saveTo(const QString &path)
{
    endTyping();
    ProjectFile::Fault fault;
    {
        const WaitCursor cursor;
        if (ProjectFile::write(path, m_patch->fixtures(), fault)) {
            m_undo.setClean();
            setProjectPath(path);
            m_recentFiles->add(path);
            return true;
        }
    }
    showFault(tr("“%1” cannot be saved.").arg(QFileInfo(path).fileName()), fault);
    return false;
}

bool MainWindow::save()
{
    return m_projectPath.isEmpty() ? saveAs() : saveTo(m_projectPath);
}

bool MainWindow::saveAs()
{
    QFileDialog dialog(this, tr("Save Project"), QFileInfo(m_projectPath).path(), fileFilter());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(QString::fromLatin1(ProjectFile::SUFFIX).mid(1));
    dialog.selectFile(m_projectPath.isEmpty() ? tr("Untitled") : QFileInfo(m_projectPath).fileName());
    return dialog.exec() == QDialog::Accepted && saveTo(dialog.selectedFiles().constFirst());
}

/// What is being typed counts.
void MainWindow::endTyping()
{
    const QPointer<QWidget> field = focusWidget();
    if (field.isNull())
        return;
    const QPointer<QWidget> view = field->parentWidget(); // of a cell, whose editor goes when it loses the keyboard
    field->clearFocus();
    QWidget *next = !field.isNull() && field->isVisible() ? field.data() : view.data();
    if (next)
        next->setFocus();
}

/// Edits of the user's own lists are on the stack, too, but no part of the project: it is compared with what was saved,
/// where the last step may have made a difference.
void MainWindow::updateModified()
{
    const bool isUndone = m_undo.index() < m_stepsBefore;
    m_stepsBefore = m_undo.index();
    if (m_undo.isClean())
        setWindowModified(false);
    else if (isUndone || !isWindowModified())
        setWindowModified(ProjectFile::documentOf(m_patch->fixtures()) != m_savedProject);
}

/// Whether the present project may go: it is saved, the user saves it now, or does not want it.
bool MainWindow::mayDiscard()
{
    endTyping();
    if (!isWindowModified())
        return true;
    const auto answer =
        QMessageBox::warning(this, tr("Unsaved Changes"), tr("The project has changes that are not saved."),
                             QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save)
        return save();
    return answer == QMessageBox::Discard;
}

void MainWindow::setProjectPath(const QString &path)
{
    m_projectPath = path;
    m_savedProject = ProjectFile::documentOf(m_patch->fixtures());
    const QString name = path.isEmpty() ? tr("Untitled") : QFileInfo(path).completeBaseName();
    setWindowTitle(QStringLiteral("%1[*]").arg(name));
    setWindowFilePath(path);
    setWindowModified(false);
}

void MainWindow::showFault(const QString &text, const ProjectFile::Fault &fault)
{
    auto *box = new QMessageBox(QMessageBox::Critical, tr("Project"), text, QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(fault.line > 0 ? tr("Line %1: %2").arg(QString::number(fault.line), fault.reason)
                                           : fault.reason);
    box->open();
}

void MainWindow::addFixtures()
{
    AddFixturesDialog dialog(m_patch, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const int first = m_patch->rowCount();
    if (!m_patch->add(dialog.fixtures()))
        return;
    QVector<int> rows;
    for (int row = first; row < m_patch->rowCount(); ++row)
        rows.append(row);
    m_panes.table->fitColumns();
    m_panes.table->selectRows(rows);
    m_panes.table->setFocus();
}

void MainWindow::onSelectionChanged()
{
    m_patch->endMerging();
    const QVector<int> rows = m_panes.table->selectedRows();
    m_shown = rows.isEmpty() ? QModelIndex() : m_patch->index(rows.first(), 0);
    if (rows.isEmpty())
        return;
    const Fixture &fixture = m_patch->fixtures().at(rows.first());
    m_panes.editor->setProfile(fixture.profile);
    m_panes.chart->setProfile(fixture.profile);
    showColor(fixture.color);
}

/// Undo, a drop or a swatch that was edited may have changed what the editor shows.
void MainWindow::onPatchChanged(const QModelIndex &first, const QModelIndex &last)
{
    if (!m_shown.isValid() || m_shown.row() < first.row() || m_shown.row() > last.row())
        return;
    const Fixture &fixture = m_patch->fixtures().at(m_shown.row());
    m_panes.editor->setProfile(fixture.profile);
    m_panes.chart->setProfile(fixture.profile);
    if (!isSameColor(fixture.color, m_panes.editor->color()))
        showColor(fixture.color);
}

void MainWindow::editColor(const TrelColor &color)
{
    showColor(color);
    m_patch->assign(m_panes.table->selectedRows(), {{color, QString()}}, true);
    m_mergeTimer.start();
}

void MainWindow::activateSwatch(const TrelColor &color, const QString &uid)
{
    showColor(color);
    assign(m_panes.table->selectedRows(), {color}, uid.isEmpty() ? QStringList() : QStringList{uid});
}

/// The project's copies of library colours come into it by the same step as the assignment.
void MainWindow::assign(const QVector<int> &rows, const QVector<TrelColor> &colors, const QStringList &uids)
{
    if (rows.isEmpty())
        return;
    QVector<PatchColor> assigned;
    bool isInProject = true;
    for (int i = 0; i < qMin(colors.size(), rows.size()); ++i) { // the others have no fixture
        const QString uid = uids.isEmpty() ? QString() : ProjectSwatches::exposed(uids.at(i));
        isInProject = isInProject && uid.isEmpty() == uids.isEmpty();
        assigned.append({colors.at(i), uid});
    }
    if (isInProject && m_patch->hasColors(rows, assigned)) {
        m_patch->assign(rows, assigned, false); // ends a fade of theirs, without a step
        return;
    }
    const LibraryBatch batch;
    m_undo.beginMacro(tr("Assign Colour"));
    for (int i = 0; i < assigned.size() && !uids.isEmpty(); ++i)
        assigned[i].uid = ProjectSwatches::expose(uids.at(i), &m_undo);
    m_patch->assign(rows, assigned, false);
    m_undo.endMacro();
}

void MainWindow::showColor(const TrelColor &color)
{
    m_panes.editor->setColor(color);
    m_panes.chart->setColor(color);
    m_panes.cctStrip->setColor(color);
    m_panes.crossfader->setCurrentColor(color);
    m_panes.browser->setEditedColor(color);
}

void MainWindow::startFade()
{
    m_fading = m_patch->idsOf(m_panes.table->selectedRows());
    if (m_fading.isEmpty())
        statusBar()->showMessage(tr("Select the fixtures that the crossfade shall move."), REFUSAL_MS);
}

void MainWindow::finishFade(const TrelColor &color)
{
    QVector<int> rows;
    for (const quint32 id : qAsConst(m_fading)) {
        if (m_patch->rowOf(id) >= 0)
            rows.append(m_patch->rowOf(id));
    }
    m_fading.clear();
    m_patch->assign(rows, {{color, QString()}}, false);
}

void MainWindow::updateStatus()
{
    const DmxOutput::Status status = m_output->status();
    const bool isFaulty = status.state == DmxOutput::Disconnected || !status.deadUniverses.isEmpty();
    const bool isSending = status.state == DmxOutput::Sending;
    const QColor mark = isFaulty    ? Theme::warningColor()
                        : isSending ? Theme::goodColor()
                                    : palette().color(QPalette::Disabled, QPalette::WindowText);
    QPalette markPalette = m_statusMark->palette();
    markPalette.setColor(QPalette::WindowText, mark);
    m_statusMark->setPalette(markPalette);
    m_statusMark->setText(isFaulty ? QStringLiteral("▲") : QStringLiteral("●"));
    m_statusText->setText(m_output->statusText());
}

void MainWindow::showRefusal(const QString &reason)
{
    statusBar()->showMessage(reason, REFUSAL_MS);
    QApplication::beep();
}

void MainWindow::chooseTheme(Theme::Variant variant)
{
    Theme::choose(variant);
    updateStatus();
}

void MainWindow::restoreLayout()
{
    const QSettings settings;
    if (!restoreGeometry(settings.value(GEOMETRY_KEY).toByteArray()))
        resize(INITIAL_SIZE);
    m_panes.columns->restoreState(settings.value(COLUMNS_KEY).toByteArray());
    m_panes.rows->restoreState(settings.value(ROWS_KEY).toByteArray());
}

void MainWindow::saveLayout() const
{
    QSettings settings;
    settings.setValue(GEOMETRY_KEY, saveGeometry());
    settings.setValue(COLUMNS_KEY, m_panes.columns->saveState());
    settings.setValue(ROWS_KEY, m_panes.rows->saveState());
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!mayDiscard()) {
        event->ignore();
        return;
    }
    saveLayout();
    m_output->setEnabled(false);
    event->accept();
}
