#include "SwatchBrowser.h"

#include "ColorMime.h"
#include "ColorText.h"
#include "MessageLabel.h"
#include "SwatchFilter.h"
#include "SwatchTree.h"
#include "Theme.h"
#include "UndoKeys.h"

#include <TrelColorLibrary.h>

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QToolBar>
#include <QUndoStack>
#include <QUuid>
#include <QVBoxLayout>

#include <algorithm>

using Item = TrelColorLibraryItem;

namespace {

constexpr int THUMBNAIL_SIZE = 18; ///< pixels at a device pixel ratio of 1
constexpr int SPACE = 6;
constexpr int ICON_SIZE = 18;
constexpr int ORDER_LENGTH = 8; ///< characters of the box with the order
constexpr int END = -1;         ///< row behind the last

TrelColorLibrary &library()
{
    return *TrelColorLibrary::Instance();
}

QString nameOf(const QModelIndex &index)
{
    return index.data(Qt::EditRole).toString();
}

bool canBeModified(const QModelIndex &list)
{
    return list.data(Item::CanBeModifiedRole).toBool();
}

SwatchPlace placeOf(const QModelIndex &color)
{
    return {nameOf(color.parent()), color.row(), SwatchRecord::at(color)};
}

QString newUid()
{
    return QUuid::createUuid().toString();
}

double sharpestRatio()
{
    double ratio = 1;
    const QList<QScreen *> screens = QGuiApplication::screens();
    for (const QScreen *screen : screens)
        ratio = std::max(ratio, screen->devicePixelRatio());
    return ratio;
}

} // namespace

SwatchBrowser::SwatchBrowser(QUndoStack *undo, QWidget *parent)
    : QWidget(parent)
    , m_undo(undo)
    , m_filter(new SwatchFilter(this))
    , m_tree(new SwatchTree(m_filter))
    , m_message(new MessageLabel)
{
    if (!library().canGeneratePixmap())
        library().setThumbnailGenerator(thumbnail);
    m_message->hide();
    createActions();

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(SPACE);
    layout->addWidget(createSearchBar());
    layout->addWidget(m_tree, 1);
    layout->addWidget(m_message);
    layout->addWidget(createToolBar());

    m_tree->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_tree, &QWidget::customContextMenuRequested, this, &SwatchBrowser::showMenu);
    connect(m_tree, &QTreeView::activated, this, &SwatchBrowser::activate);
    connect(m_tree, &SwatchTree::renameWanted, this, &SwatchBrowser::rename);
    connect(m_tree, &SwatchTree::dropped, this, &SwatchBrowser::onDropped);
    setFocusProxy(m_tree);
}

/// A name that is being edited is taken when the window goes, which must not reach a browser that is half gone.
SwatchBrowser::~SwatchBrowser()
{
    m_tree->disconnect(this);
}

QWidget *SwatchBrowser::createSearchBar()
{
    m_search = new QLineEdit;
    m_search->setPlaceholderText(tr("Search"));
    m_search->setAccessibleName(tr("Search colours"));
    m_search->setClearButtonEnabled(true);
    connect(m_search, &QLineEdit::textChanged, this, &SwatchBrowser::search);
    connect(m_search, &QLineEdit::returnPressed, m_tree, qOverload<>(&QWidget::setFocus));
    auto *find = new QShortcut(QKeySequence::Find, this);
    find->setContext(Qt::WidgetWithChildrenShortcut);
    UndoKeys::leaveToWindow(m_search);
    connect(find, &QShortcut::activated, m_search, [this] {
        m_search->setFocus(Qt::ShortcutFocusReason);
        m_search->selectAll();
    });

    m_order = new QComboBox;
    m_order->setAccessibleName(tr("Order of the colours"));
    m_order->setToolTip(tr("Order of the colours in the view; the lists stay as they are"));
    m_order->addItem(tr("As arranged"), int(SwatchFilter::Arranged));
    m_order->addItem(tr("By name"), int(SwatchFilter::ByName));
    m_order->addItem(tr("By hue"), int(SwatchFilter::ByHue));
    connect(m_order, qOverload<int>(&QComboBox::currentIndexChanged), this,
            [this] { m_filter->setOrder(SwatchFilter::Order(m_order->currentData().toInt())); });

    m_order->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_order->setMinimumContentsLength(ORDER_LENGTH);

    auto *bar = new QWidget;
    auto *layout = new QHBoxLayout(bar);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(SPACE);
    layout->addWidget(m_search, 1);
    layout->addWidget(m_order);
    return bar;
}

void SwatchBrowser::createActions()
{
    using Browser = SwatchBrowser;
    addTreeAction(tr("New &List"), QStringLiteral("new-list"), QStringLiteral("Ctrl+L"), &Browser::createList);
    addTreeAction(tr("New &Colour"), QStringLiteral("add"), QKeySequence(Qt::Key_Insert), &Browser::createColor);
    addTreeAction(tr("&Rename"), QStringLiteral("rename"), QKeySequence(Qt::Key_F2), &Browser::renameCurrent);
    addTreeAction(tr("Set to &Edited Colour"), QStringLiteral("recolor"), QStringLiteral("Ctrl+E"),
                  &Browser::recolorSelected);
    addTreeAction(tr("&Delete"), QStringLiteral("remove"), QKeySequence(Qt::Key_Delete), &Browser::deleteSelected);
    m_actions.append(nullptr);
    addTreeAction(tr("Move &Up"), QString(), QStringLiteral("Alt+Up"), &Browser::moveUp);
    addTreeAction(tr("Move Do&wn"), QString(), QStringLiteral("Alt+Down"), &Browser::moveDown);
    m_actions.append(nullptr);
    addTreeAction(tr("C&opy"), QString(), QKeySequence(QKeySequence::Copy), &Browser::copySelected);
    addTreeAction(tr("&Paste"), QString(), QKeySequence(QKeySequence::Paste), &Browser::paste);
}

void SwatchBrowser::addTreeAction(const QString &text, const QString &icon, const QKeySequence &keys,
                                  void (SwatchBrowser::*slot)())
{
    auto *action = new QAction(Theme::icon(icon), text, this);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(action, &QAction::triggered, this, slot);
    m_tree->addAction(action);
    m_actions.append(action);
}

QWidget *SwatchBrowser::createToolBar()
{
    auto *bar = new QToolBar;
    bar->setIconSize(QSize(ICON_SIZE, ICON_SIZE));
    for (QAction *action : qAsConst(m_actions)) {
        if (!action)
            break; // arranging and the clipboard are in the menu
        bar->addAction(action);
        QWidget *button = bar->widgetForAction(action);
        button->setAccessibleName(QString(action->text()).remove(QLatin1Char('&')));
        button->setFocusPolicy(Qt::TabFocus);
    }
    return bar;
}

QList<QAction *> SwatchBrowser::editActions() const
{
    return m_actions;
}

void SwatchBrowser::showMenu(const QPoint &position)
{
    QMenu menu(this);
    for (QAction *action : qAsConst(m_actions)) {
        if (action)
            menu.addAction(action);
        else
            menu.addSeparator();
    }
    menu.exec(m_tree->viewport()->mapToGlobal(position));
}

QStringList SwatchBrowser::selectedUids() const
{
    QStringList uids;
    const QModelIndexList colors = m_tree->selectedColors();
    for (const QModelIndex &color : colors)
        uids.append(color.data(Item::UidRole).toString());
    return uids;
}

QPixmap SwatchBrowser::thumbnail(const TrelColor &color)
{
    const double ratio = sharpestRatio();
    QPixmap pixmap(QSize(THUMBNAIL_SIZE, THUMBNAIL_SIZE) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor(128, 128, 128, 160), 1)); // seen on light and on dark
    painter.setBrush(color.getQColor(true));
    painter.drawRoundedRect(QRectF(0.5, 0.5, THUMBNAIL_SIZE - 1, THUMBNAIL_SIZE - 1), 3, 3);
    return pixmap;
}

void SwatchBrowser::setEditedColor(const TrelColor &color)
{
    if (ColorText::problemOf(color).isEmpty())
        m_edited = color;
}

void SwatchBrowser::activate(const QModelIndex &index)
{
    const QModelIndex color = m_filter->toLibrary(index.siblingAtColumn(0));
    if (!color.isValid() || library().isListIndex(color))
        return;
    const SwatchRecord record = SwatchRecord::at(color);
    const QString problem = ColorText::problemOf(record.color);
    if (problem.isEmpty())
        Q_EMIT colorActivated(record.color, record.uid);
    else
        refuse(tr("“%1” cannot be used. %2").arg(record.name, problem));
}

void SwatchBrowser::search(const QString &text)
{
    m_filter->setSearch(text);
    if (m_filter->isSearching())
        m_tree->expandAll();
}

void SwatchBrowser::refuse(const QString &reason)
{
    m_message->show();
    m_message->warn(reason);
    Q_EMIT refused(reason);
}

void SwatchBrowser::push(SwatchCommand *command)
{
    m_message->hide();
    m_undo->push(command);
}

/// Makes \a libraryIndex the current one; a search that hides it ends.
void SwatchBrowser::reveal(const QModelIndex &libraryIndex)
{
    const QPersistentModelIndex kept(libraryIndex);
    if (!m_filter->fromLibrary(kept).isValid())
        m_search->clear();
    const QModelIndex index = m_filter->fromLibrary(kept);
    m_tree->expand(index.parent());
    m_tree->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    m_tree->scrollTo(index);
}

void SwatchBrowser::select(const QStringList &uids)
{
    m_tree->clearSelection();
    QModelIndexList found;
    for (const QString &uid : uids) {
        const QModelIndex color = library().getIndexOfUid(uid);
        if (color.isValid())
            found.append(color);
    }
    if (found.isEmpty())
        return;
    const auto isHidden = [this](const QModelIndex &color) { return !m_filter->fromLibrary(color).isValid(); };
    const auto hidden = std::find_if(found.cbegin(), found.cend(), isHidden);
    reveal(hidden == found.cend() ? found.last() : *hidden);
    QItemSelection colors;
    for (const QModelIndex &color : qAsConst(found))
        colors.select(m_filter->fromLibrary(color), m_filter->fromLibrary(color));
    m_tree->selectionModel()->select(colors, QItemSelectionModel::Select | QItemSelectionModel::Rows);
}

QVector<SwatchPlace> SwatchBrowser::selectedPlaces() const
{
    QVector<SwatchPlace> places;
    const QModelIndexList colors = m_tree->selectedColors();
    for (const QModelIndex &color : colors)
        places.append(placeOf(m_filter->toLibrary(color)));
    return places;
}

/// The list that new colours go to: the current one, or the first user list where that is none to change.
QModelIndex SwatchBrowser::targetList() const
{
    const QModelIndex current = m_tree->currentIndex();
    const QModelIndex list = current.isValid()
                                 ? m_filter->toLibrary(current.parent().isValid() ? current.parent() : current)
                                 : QModelIndex();
    if (list.isValid() && canBeModified(list))
        return list.siblingAtColumn(0);
    const QModelIndex root = library().rootIndex();
    for (int row = 0; row < library().rowCount(root); ++row) {
        const QModelIndex candidate = library().index(row, 0, root);
        if (library().isUserListIndex(candidate))
            return candidate;
    }
    return QModelIndex();
}

int SwatchBrowser::rowBehindCurrent(const QModelIndex &list) const
{
    const QModelIndex current = m_filter->toLibrary(m_tree->currentIndex());
    const bool isInList = m_tree->currentIndex().isValid() && current.parent() == list;
    return isInList && m_filter->order() == SwatchFilter::Arranged ? current.row() + 1 : END;
}

void SwatchBrowser::createList()
{
    const QString name = library().getNewColorListName(tr("New List"));
    push(new CreateListCommand(name));
    reveal(library().getIndexOfListId(name));
    m_tree->selectionModel()->select(m_tree->currentIndex(),
                                     QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_tree->edit(m_tree->currentIndex());
}

void SwatchBrowser::createColor()
{
    const QModelIndex list = targetList();
    const QString listName = list.isValid() ? nameOf(list) : library().getNewColorListName(tr("My Colours"));
    SwatchRecord record;
    record.uid = newUid();
    record.color = m_edited;
    record.name = FreeSwatchNames(listName).take(tr("Colour"));
    auto *create = new CreateColorsCommand(listName, list.isValid() ? rowBehindCurrent(list) : END, {record});
    if (list.isValid()) {
        push(create);
    } else {
        auto *both = new SwatchCommandGroup(create->text());
        both->add(new CreateListCommand(listName));
        both->add(create);
        push(both);
    }
    select({record.uid});
}

void SwatchBrowser::renameCurrent()
{
    const QModelIndex index = m_tree->currentIndex().siblingAtColumn(0);
    if (!index.isValid())
        return;
    if (index.flags().testFlag(Qt::ItemIsEditable))
        m_tree->edit(index);
    else
        refuse(tr("“%1” cannot be renamed.").arg(nameOf(index)));
}

void SwatchBrowser::rename(const QModelIndex &index, const QString &name)
{
    const QModelIndex source = m_filter->toLibrary(index);
    const QString oldName = nameOf(source);
    const QString newName = name.trimmed();
    const bool isList = library().isListIndex(source);
    if (newName == oldName)
        return;
    if (newName.isEmpty())
        refuse(tr("A name cannot be empty."));
    else if (isList && library().nameExists(newName))
        refuse(tr("There is a list called “%1” already.").arg(newName));
    else if (!isList && library().nameExists(newName, nameOf(source.parent())))
        refuse(tr("“%1” has a colour called “%2” already.").arg(nameOf(source.parent()), newName));
    else if (isList)
        push(new RenameListCommand(oldName, newName));
    else
        push(new RenameColorCommand(placeOf(source), newName));
}

void SwatchBrowser::deleteSelected()
{
    QStringList lists;
    QVector<SwatchPlace> colors;
    const QModelIndexList selectedLists = m_tree->selectedLists();
    for (const QModelIndex &index : selectedLists) {
        if (!library().isUserListIndex(m_filter->toLibrary(index))) {
            refuse(tr("“%1” cannot be deleted.").arg(nameOf(index)));
            return;
        }
        lists.append(nameOf(index));
    }
    const QVector<SwatchPlace> places = selectedPlaces();
    for (const SwatchPlace &place : places) {
        if (lists.contains(place.list))
            continue; // goes with its list
        if (!canBeModified(library().getIndexOfListId(place.list))) {
            refuse(tr("“%1” is a preset and cannot be changed.").arg(place.list));
            return;
        }
        colors.append(place);
    }
    if (lists.isEmpty() && colors.isEmpty())
        return;
    if (lists.isEmpty()) {
        push(new DeleteColorsCommand(colors));
    } else if (colors.isEmpty()) {
        push(new DeleteListsCommand(lists));
    } else {
        auto *both = new SwatchCommandGroup(tr("Delete Lists and Colours"));
        both->add(new DeleteColorsCommand(colors));
        both->add(new DeleteListsCommand(lists));
        push(both);
    }
}

void SwatchBrowser::recolorSelected()
{
    const QVector<SwatchPlace> places = selectedPlaces();
    for (const SwatchPlace &place : places) {
        if (!canBeModified(library().getIndexOfListId(place.list))) {
            refuse(tr("“%1” is a preset and cannot be changed.").arg(place.list));
            return;
        }
    }
    if (!places.isEmpty())
        push(new RecolorCommand(places, m_edited));
}

void SwatchBrowser::moveUp()
{
    moveBy(-1);
}

void SwatchBrowser::moveDown()
{
    moveBy(1);
}

void SwatchBrowser::moveBy(int step)
{
    const QVector<SwatchPlace> places = selectedPlaces();
    if (places.isEmpty()) {
        const QModelIndexList lists = m_tree->selectedLists();
        if (lists.size() == 1)
            moveListBy(m_filter->toLibrary(lists.first()), step);
        return;
    }
    const QString listName = places.first().list;
    const QModelIndex list = library().getIndexOfListId(listName);
    const bool isOneList =
        std::all_of(places.cbegin(), places.cend(), [&](const SwatchPlace &place) { return place.list == listName; });
    if (!isOneList || m_filter->order() != SwatchFilter::Arranged || m_filter->isSearching()) {
        refuse(tr("Colours move within one list, while it is shown whole and as arranged."));
        return;
    }
    if (!canBeModified(list)) {
        refuse(tr("“%1” is a preset and cannot be changed.").arg(listName));
        return;
    }
    const int row = step < 0 ? places.first().row - 1 : places.last().row + 2;
    if (row < 0 || row > library().rowCount(list))
        return;
    const QStringList uids = selectedUids();
    push(new MoveColorsCommand(places, listName, row));
    select(uids);
}

/// Past the next user list; presets are not saved, so that a place among them would not last.
void SwatchBrowser::moveListBy(const QModelIndex &list, int step)
{
    const QString name = nameOf(list);
    if (!library().isUserListIndex(list)) {
        refuse(tr("“%1” cannot be moved.").arg(name));
        return;
    }
    const QModelIndex root = library().rootIndex();
    int row = list.row() + step;
    while (row >= 0 && row < library().rowCount(root) && !library().isUserListIndex(library().index(row, 0, root)))
        row += step;
    if (row < 0 || row >= library().rowCount(root))
        return;
    const bool wasExpanded = m_tree->isExpanded(m_filter->fromLibrary(list));
    push(new MoveListCommand(name, row));
    const QModelIndex moved = m_filter->fromLibrary(library().getIndexOfListId(name));
    m_tree->setExpanded(moved, wasExpanded);
    m_tree->setCurrentIndex(moved);
}

void SwatchBrowser::copySelected()
{
    const QModelIndexList colors = m_tree->selectedColors();
    if (!colors.isEmpty())
        QGuiApplication::clipboard()->setMimeData(m_filter->mimeData(colors));
}

void SwatchBrowser::paste()
{
    const QMimeData *mime = QGuiApplication::clipboard()->mimeData();
    const QModelIndex list = targetList();
    if (!list.isValid())
        refuse(tr("There is no list to paste into."));
    else
        insertCopies(mime, nameOf(list), rowBehindCurrent(list));
}

void SwatchBrowser::onDropped(const QMimeData *mime, const QModelIndex &list, int row, bool isMove)
{
    const QString listName = nameOf(list);
    QVector<SwatchPlace> places;
    QStringList uids = ColorMime::uidsOf(mime);
    uids.removeDuplicates(); // of colours that share one, the library finds the first
    for (const QString &uid : qAsConst(uids)) {
        const QModelIndex color = library().getIndexOfUid(uid);
        if (color.isValid())
            places.append(placeOf(color));
    }
    const bool canLeave = std::all_of(places.cbegin(), places.cend(), [](const SwatchPlace &place) {
        return canBeModified(library().getIndexOfListId(place.list));
    });
    if (!isMove || places.isEmpty() || !canLeave) {
        insertCopies(mime, listName, row);
        return;
    }
    push(new MoveColorsCommand(places, listName, row < 0 ? library().rowCount(list) : row));
    select(uids);
}

void SwatchBrowser::insertCopies(const QMimeData *mime, const QString &list, int row)
{
    QVector<SwatchRecord> records;
    FreeSwatchNames names(list);
    QStringList uids;
    const QStringList known = ColorMime::uidsOf(mime);
    const QVector<NamedColor> colors = ColorMime::colorsOf(mime);
    for (int i = 0; i < colors.size(); ++i) {
        SwatchRecord record;
        if (known.size() == colors.size() && library().containsUid(known.at(i))) {
            record = SwatchRecord::copyOf(known.at(i));
        } else {
            record.uid = newUid();
            record.name = colors.at(i).name;
        }
        record.color = colors.at(i).color;
        record.name = names.take(record.name.isEmpty() ? tr("Colour") : record.name);
        uids.append(record.uid);
        records.append(record);
    }
    if (records.isEmpty()) {
        refuse(tr("There are no colours in it."));
        return;
    }
    push(new CreateColorsCommand(list, row, records));
    select(uids);
}
