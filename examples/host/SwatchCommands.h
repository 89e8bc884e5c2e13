#pragma once

#include <TrelColor.h>

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QUndoCommand>
#include <QVector>

class QModelIndex;

/// Everything that the library knows of one colour of a list.
struct SwatchRecord
{
    QString uid;
    QString name;
    QString originatingPreset;
    QString vendorId;
    QString oldPreset; ///< of a reference to an older file's preset; otherwise empty
    TrelColor color;

    /// The colour at the library's \a index.
    static SwatchRecord at(const QModelIndex &index);
    /// A copy of the library's colour \a uid, with a uid of its own; its originating preset is the path of that colour.
    static SwatchRecord copyOf(const QString &uid);
};

/// A place in a list.
struct SwatchPlace
{
    QString list;
    int row = 0;
    SwatchRecord record;
};

/// An edit of the library: one batch, so that the user's file is written once, however much it changes.
///
/// Edits name lists and uids, not rows, so that they survive what others do to the library in between; what is gone is
/// left out.
class SwatchCommand : public QUndoCommand
{
public:
    void redo() final;
    void undo() final;

protected:
    explicit SwatchCommand(const QString &text);

    virtual void apply() = 0;
    virtual void revert() = 0;
};

/// Several edits as one.
class SwatchCommandGroup : public SwatchCommand
{
public:
    /// \param text what menus call it.
    explicit SwatchCommandGroup(const QString &text);
    ~SwatchCommandGroup() override;

    /// Adds an edit, to be done behind the others; takes it over.
    void add(SwatchCommand *command);

protected:
    void apply() override;
    void revert() override;

private:
    QVector<SwatchCommand *> m_commands;
};

/// Creates an empty user list.
class CreateListCommand : public SwatchCommand
{
public:
    /// \param name that no list has.
    explicit CreateListCommand(const QString &name);

protected:
    void apply() override;
    void revert() override;

private:
    QString m_name;
};

/// Deletes user lists with their colours.
class DeleteListsCommand : public SwatchCommand
{
public:
    /// \param names of user lists.
    explicit DeleteListsCommand(const QStringList &names);

protected:
    void apply() override;
    void revert() override;

private:
    struct Deleted
    {
        QString name;
        int row;
        QVector<SwatchRecord> colors;
    };

    QVector<Deleted> m_lists; ///< in row order
};

/// Renames a list.
class RenameListCommand : public SwatchCommand
{
public:
    /// \param newName that no list has.
    RenameListCommand(const QString &oldName, const QString &newName);

protected:
    void apply() override;
    void revert() override;

private:
    QString m_oldName;
    QString m_newName;
};

/// Puts a user list at another row.
class MoveListCommand : public SwatchCommand
{
public:
    /// \param row among all lists, where it stands afterwards.
    MoveListCommand(const QString &name, int row);

protected:
    void apply() override;
    void revert() override;

private:
    QString m_name;
    int m_oldRow;
    int m_newRow;
};

/// Creates colours, one behind the other.
class CreateColorsCommand : public SwatchCommand
{
public:
    /// \param row     of the first; behind the last colour when there is no such row.
    /// \param records with uids that the library does not have and names that are free in the list.
    CreateColorsCommand(const QString &list, int row, const QVector<SwatchRecord> &records);

protected:
    void apply() override;
    void revert() override;

private:
    QString m_list;
    int m_row;
    QVector<SwatchRecord> m_records;
};

/// Deletes colours.
class DeleteColorsCommand : public SwatchCommand
{
public:
    /// \param colors of lists that can be modified.
    explicit DeleteColorsCommand(const QVector<SwatchPlace> &colors);

protected:
    void apply() override;
    void revert() override;

private:
    QVector<SwatchPlace> m_colors;
    QVector<SwatchPlace> m_removed; ///< those that were there
};

/// Renames a colour, which cuts its ties to preset and vendor; undoing it restores them.
class RenameColorCommand : public SwatchCommand
{
public:
    /// \param newName that no colour of the list has.
    RenameColorCommand(const SwatchPlace &color, const QString &newName);

protected:
    void apply() override;
    void revert() override;

private:
    SwatchPlace m_color;
    QString m_newName;
};

/// Moves colours to a place in a list, where they stand one behind the other. They keep their uids.
class MoveColorsCommand : public SwatchCommand
{
public:
    /// \param row as the list is before the move; behind the last colour when there is no such row.
    MoveColorsCommand(const QVector<SwatchPlace> &colors, const QString &list, int row);

protected:
    void apply() override;
    void revert() override;

private:
    QVector<SwatchPlace> m_colors;
    QString m_list;
    int m_row; ///< once the moved ones are out
    QVector<SwatchRecord> m_moved;
};

/// Gives colours another value.
class RecolorCommand : public SwatchCommand
{
public:
    /// \param colors of lists that can be modified.
    RecolorCommand(const QVector<SwatchPlace> &colors, const TrelColor &color);

protected:
    void apply() override;
    void revert() override;

private:
    QVector<SwatchPlace> m_colors;
    TrelColor m_color;
};

/// Names for new colours of a list, each given once.
class FreeSwatchNames
{
public:
    /// For a list of the library, or one that is about to come.
    explicit FreeSwatchNames(const QString &list);

    /// \a name ("Colour" for none), or the first of "name 2", "name 3", … that is free; it is taken from now on.
    QString take(const QString &name);

private:
    QSet<QString> m_taken;
    QHash<QString, int> m_numbers; ///< last one tried, by name
};
