#pragma once

#include "Fixture.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QMap>
#include <QSet>
#include <QVector>

class QUndoStack;

/// A colour to assign, with the swatch that it came from.
struct PatchColor
{
    TrelColor color;
    QString uid; ///< of a colour in the list "Project Swatches"; empty for none
};

/// The fixtures of the project, as an item model for views, and the DMX frames that they make.
///
/// Every edit goes through the undo stack; what cannot be done is refused() with a reason, and changes nothing. A
/// fixture with a uid follows that swatch of the library as long as there is one.
class Patch : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column : int {
        NameColumn,
        UniverseColumn,
        AddressColumn,
        ColorColumn,
        OutputColumn, ///< channel levels, for bars
        BytesColumn,  ///< the bytes as decimals
        ProfileColumn,
        ModeColumn,
        CalibrationColumn,
        ResolutionColumn,
        CurveColumn,
        OnboardCurveColumn,
        ColumnCount
    };

    /// Roles beside Qt's.
    enum Role : int {
        ShownColorRole = Qt::UserRole + 1, ///< the colour on stage now, as a QColor
        LevelsRole,                        ///< the bytes as levels 0..1, one a channel: QVector<double>
        LettersRole,                       ///< Fixture::channelLetters()
        FaultRole,                         ///< what is wrong with the fixture's place; empty for nothing
    };

    /// One of the values that a cell can take.
    struct Choice
    {
        QString text;
        int value;
    };

    /// \a undo outlives the patch.
    explicit Patch(QUndoStack *undo, QObject *parent = nullptr);

    /// \name Item model
    /// @{
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /// @}

    /// Writes \a value into column \a column of all \a rows, as one step. False when a row refuses it.
    bool setValues(const QVector<int> &rows, Column column, const QVariant &value);
    /// What a cell of a column with a list of values can take; empty for the other columns.
    QVector<Choice> choices(const QModelIndex &index) const;

    /// All fixtures, by row.
    const QVector<Fixture> &fixtures() const;
    /// The row of the fixture with this id; −1 for none.
    int rowOf(quint32 id) const;
    /// The ids of the fixtures at \a rows.
    QVector<quint32> idsOf(const QVector<int> &rows) const;

    /// Appends \a added, each with an id of its own, as one step. Refuses a fixture that does not fit its universe.
    bool add(const QVector<Fixture> &added);
    /// Removes the fixtures at \a rows as one step.
    void remove(const QVector<int> &rows);
    /// Appends copies of the fixtures at \a rows at the next free addresses, as one step.
    void duplicate(const QVector<int> &rows);
    /// Gives the fixture at rows[i] colors[i] or, where there are fewer colours, the last one. As one step, or as a
    /// part of the last one where that gave the same fixtures a colour and \a merges both times.
    void assign(const QVector<int> &rows, const QVector<PatchColor> &colors, bool merges);
    /// Whether these are the fixtures' own colours already.
    bool hasColors(const QVector<int> &rows, const QVector<PatchColor> &colors) const;
    /// The next assign() begins a step of its own.
    void endMerging();
    /// Replaces all fixtures, without a step; the undo stack is cleared.
    void reset(const QVector<Fixture> &fixtures);

    /// Shows \a color on fixtures without changing their own, until they are assigned another or the patch is
    /// reset.
    void setLive(const QVector<quint32> &ids, const TrelColor &color);
    /// The colour on stage now.
    TrelColor shownColor(int row) const;

    /// First address of \a universe behind which \a footprint slots are free; 0 when there is none.
    int freeAddress(int universe, int footprint) const;
    /// \a name, or the first of "name 2", "name 3", … that no fixture has.
    QString freeName(const QString &name) const;
    /// What is wrong with the fixture's place or data; empty for nothing.
    QString faultOf(int row) const;
    /// Universes with a fixture, ascending.
    QVector<int> universes() const;
    /// All slots of a universe. Of fixtures that overlap, the one further down wins.
    QByteArray frame(int universe) const;

Q_SIGNALS:
    /// An edit was refused; \a reason is for the user.
    void refused(const QString &reason);

private:
    class InsertStep;
    class ChangeStep;

    /// A fixture before and behind a step.
    struct Change
    {
        Fixture before;
        Fixture after;
    };

    void insertFixture(int row, const Fixture &fixture);
    void removeFixture(int row);
    void replaceFixture(const Fixture &fixture);
    void renewBytes(int row);
    void showAgain(int row);
    void followLibrary();
    bool change(const QVector<Change> &changes, const QString &text, bool merges);
    bool accepts(const Fixture &fixture);
    bool offers(const QModelIndex &cell, const QVariant &value) const;
    QVariant text(const Fixture &fixture, int row, int column) const;
    QVariant editValue(const Fixture &fixture, int column) const;
    QVariant toolTip(int row, int column) const;

    QUndoStack *m_undo;
    QVector<Fixture> m_fixtures;
    QHash<quint32, QByteArray> m_bytes;
    QHash<quint32, TrelColor> m_live;
    mutable QMap<int, QByteArray> m_frames; ///< made again when asked for, after a change
    quint32 m_lastId = 0;
    int m_mergeKey = 1; ///< assignments with different keys are different steps; 0 stands for steps that do not merge
};
