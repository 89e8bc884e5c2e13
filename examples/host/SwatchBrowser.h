#pragma once

#include <TrelColor.h>

#include <QPixmap>
#include <QStringList>
#include <QWidget>

class QUndoStack;
class QTreeView;

/// The colour library in a tree: lists of swatches to find, pick, arrange and edit.
///
/// Every edit is a command on the undo stack and one batch of the library, so that the user's file is written once.
class SwatchBrowser : public QWidget
{
    Q_OBJECT

public:
    /// \param undo takes the edits; it must outlive the browser.
    explicit SwatchBrowser(QUndoStack *undo, QWidget *parent = nullptr);

    /// Uids of the selected colours, in the order of the view.
    QStringList selectedUids() const;

    /// The thumbnail of a swatch, for TrelColorLibrary::setThumbnailGenerator(), which must get it before colours are
    /// loaded: sharp on the screen with the highest resolution.
    static QPixmap thumbnail(const TrelColor &color);

Q_SIGNALS:
    /// The user chose a colour: with a double click or the Enter key.
    void colorActivated(const TrelColor &color, const QString &uid);
    /// An edit could not be done; \a reason says why in the user's language. The browser shows it, too.
    void refused(const QString &reason);

private:
    QUndoStack *m_undo;
    QTreeView *m_tree;
};
