#pragma once

#include "SwatchCommands.h"

#include <TrelColor.h>

#include <QPixmap>
#include <QStringList>
#include <QVector>
#include <QWidget>

class QAction;
class QComboBox;
class MessageLabel;
class QLineEdit;
class QMimeData;
class QModelIndex;
class QUndoStack;
class SwatchFilter;
class SwatchTree;

/// The colour library in a tree: lists of swatches to find, pick, arrange and edit.
///
/// Every edit is a command on the undo stack and one batch of the library, so that the user's file is written once.
/// Presets cannot be changed; colours dragged out of them are copied.
class SwatchBrowser : public QWidget
{
    Q_OBJECT

public:
    /// Installs thumbnail() where the library has no thumbnail function yet.
    /// \param undo takes the edits; it must outlive the browser.
    explicit SwatchBrowser(QUndoStack *undo, QWidget *parent = nullptr);
    ~SwatchBrowser() override;

    /// Uids of the selected colours, in the order of the view.
    QStringList selectedUids() const;
    /// What can be done with lists and colours, for a menu; null stands for a separator. They work while the tree has
    /// the keyboard.
    QList<QAction *> editActions() const;

    /// The thumbnail of a swatch, for TrelColorLibrary::setThumbnailGenerator(), which must get it before colours are
    /// loaded: sharp on the screen with the highest resolution.
    static QPixmap thumbnail(const TrelColor &color);

public Q_SLOTS:
    /// The colour that "New Colour" creates and "Set to Edited Colour" gives to the selected ones.
    void setEditedColor(const TrelColor &color);
    /// Opens an empty list under a new name, which can be typed over at once.
    void createList();
    /// Creates the edited colour in the current list; in the first user list, or a new one, where that is a preset.
    void createColor();
    /// Opens the current row's name for typing.
    void renameCurrent();
    /// Deletes the selected lists, with all in them, and colours.
    void deleteSelected();
    /// Gives the selected colours the edited colour's value.
    void recolorSelected();
    /// Puts the selected colours, or the selected list, one row up. Only while colours stand as they were arranged.
    void moveUp();
    /// The same, down.
    void moveDown();
    /// Puts the selected colours on the clipboard.
    void copySelected();
    /// Puts copies of the clipboard's colours behind the current one.
    void paste();

Q_SIGNALS:
    /// The user chose a colour: with a double click or the Enter key.
    void colorActivated(const TrelColor &color, const QString &uid);
    /// An edit could not be done; \a reason says why in the user's language. The browser shows it, too.
    void refused(const QString &reason);

private:
    QWidget *createSearchBar();
    QWidget *createToolBar();
    void createActions();
    void addTreeAction(const QString &text, const QString &icon, const QKeySequence &keys,
                       void (SwatchBrowser::*slot)());
    void showMenu(const QPoint &position);
    void activate(const QModelIndex &index);
    void search(const QString &text);
    void onDropped(const QMimeData *mime, const QModelIndex &list, int row, bool isMove);
    void insertCopies(const QMimeData *mime, const QString &list, int row);
    void rename(const QModelIndex &index, const QString &name);
    void moveBy(int step);
    void moveListBy(const QModelIndex &list, int step);
    void refuse(const QString &reason);
    void push(SwatchCommand *command);
    void select(const QStringList &uids);
    void reveal(const QModelIndex &libraryIndex);
    QModelIndex targetList() const;
    int rowBehindCurrent(const QModelIndex &list) const;
    QVector<SwatchPlace> selectedPlaces() const;

    QUndoStack *m_undo;
    SwatchFilter *m_filter;
    SwatchTree *m_tree;
    QLineEdit *m_search = nullptr;
    QComboBox *m_order = nullptr;
    MessageLabel *m_message;
    QList<QAction *> m_actions;
    TrelColor m_edited = TrelColor(Qt::white);
};
