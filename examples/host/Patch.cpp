#include "Patch.h"

#include <CurveFactory.h>
#include <IOModeFactory.h>
#include <TrelColorLibrary.h>

#include <QUndoCommand>
#include <QUndoStack>

#include <algorithm>

namespace {

constexpr int ASSIGN_STEP = 1; // QUndoCommand::id() of steps that merge

struct Header
{
    const char *number; ///< FixtureNumber that it shows; null for none
    const char *text;
    const char *toolTip;
};

// By Column.
constexpr Header HEADERS[Patch::ColumnCount] = {
    {nullptr, QT_TRANSLATE_NOOP("Patch", "Fixture"), QT_TRANSLATE_NOOP("Patch", "Name of the fixture")},
    {"universe", QT_TRANSLATE_NOOP("Patch", "Universe"), QT_TRANSLATE_NOOP("Patch", "DMX universe, 0 to 65535")},
    {"address", QT_TRANSLATE_NOOP("Patch", "Address"),
     QT_TRANSLATE_NOOP("Patch", "First slot in the universe, 1 to 512")},
    {nullptr, QT_TRANSLATE_NOOP("Patch", "Colour"), QT_TRANSLATE_NOOP("Patch", "Drop a colour here, or edit it above")},
    {nullptr, QT_TRANSLATE_NOOP("Patch", "Output"), QT_TRANSLATE_NOOP("Patch", "What each channel receives")},
    {nullptr, QT_TRANSLATE_NOOP("Patch", "Bytes"), QT_TRANSLATE_NOOP("Patch", "The DMX bytes of the fixture")},
    {"profile", QT_TRANSLATE_NOOP("Patch", "Profile"),
     QT_TRANSLATE_NOOP("Patch", "Family of fixtures, with its emitters")},
    {"mode", QT_TRANSLATE_NOOP("Patch", "Mode"), QT_TRANSLATE_NOOP("Patch", "How colours map onto the channels")},
    {"calibrated", QT_TRANSLATE_NOOP("Patch", "Calibrated"),
     QT_TRANSLATE_NOOP("Patch", "Whether RGB colours are solved through the measured emitters")},
    {"resolution", QT_TRANSLATE_NOOP("Patch", "Resolution"), QT_TRANSLATE_NOOP("Patch", "Bits of a channel")},
    {"curve", QT_TRANSLATE_NOOP("Patch", "Curve"), QT_TRANSLATE_NOOP("Patch", "Dimming curve applied by this program")},
    {"onboardCurve", QT_TRANSLATE_NOOP("Patch", "On-board curve"),
     QT_TRANSLATE_NOOP("Patch", "Dimming curve of the fixture, compensated for")},
};

bool isValueColumn(int column)
{
    return column != Patch::ColorColumn && column != Patch::OutputColumn && column != Patch::BytesColumn;
}

QString bitsText(int resolution)
{
    return Patch::tr("%1 bit").arg(resolution * 8);
}

QString calibrationText(bool isCalibrated)
{
    return isCalibrated ? Patch::tr("On") : Patch::tr("Off");
}

QString bytesText(const QByteArray &bytes)
{
    QStringList numbers;
    for (const char byte : bytes)
        numbers.append(QString::number(int(static_cast<unsigned char>(byte))));
    return numbers.join(' ');
}

/// A line a channel, with its bytes.
QString channelsText(const Fixture &fixture, const QByteArray &bytes)
{
    QStringList lines;
    const QStringList names = fixture.channelNames();
    for (int channel = 0; channel < fixture.channels(); ++channel) {
        const QByteArray own = bytes.mid(channel * fixture.resolution, fixture.resolution);
        lines.append(QStringLiteral("%1: %2").arg(names.value(channel), bytesText(own)));
    }
    return lines.join(QLatin1Char('\n'));
}

QVector<double> levelsOf(const QByteArray &bytes, int resolution)
{
    QVector<double> levels;
    for (int i = 0; i + resolution <= bytes.size(); i += resolution) {
        unsigned int value = 0;
        for (int part = 0; part < resolution; ++part)
            value = value << 8 | static_cast<unsigned char>(bytes.at(i + part));
        levels.append(double(value) / (resolution == 1 ? 255.0 : 65535.0));
    }
    return levels;
}

QString colorText(const TrelColor &color)
{
    return color.isValid() ? color.name8() : Patch::tr("none");
}

/// The number that a column shows; null for none.
const FixtureNumber *numberOf(int column)
{
    const char *name = HEADERS[column].number;
    const auto *number = std::find_if(std::begin(FixtureNumber::ALL), std::end(FixtureNumber::ALL),
                                      [name](const FixtureNumber &entry) { return qstrcmp(entry.name, name) == 0; });
    return number == std::end(FixtureNumber::ALL) ? nullptr : number;
}

/// \a fixture with \a value in \a column.
Fixture withValue(Fixture fixture, int column, const QVariant &value)
{
    if (const FixtureNumber *number = numberOf(column))
        number->set(fixture, value.toInt());
    else
        fixture.name = Fixture::nameFrom(value.toString());
    return fixture;
}

/// The swatch's colour now, where there is such a swatch.
void followSwatch(Fixture &fixture)
{
    const TrelColorLibrary *library = TrelColorLibrary::Instance();
    const QModelIndex swatch = fixture.uid.isEmpty() ? QModelIndex() : library->getIndexOfUid(fixture.uid);
    if (!swatch.isValid())
        return;
    const auto *color =
        static_cast<const TrelColor *>(library->data(swatch, TrelColorLibraryItem::ColorRole).value<void *>());
    if (color)
        fixture.color = *color;
}

int freeAddressAmong(const QVector<Fixture> &fixtures, int universe, int footprint)
{
    QVector<QPair<int, int>> taken; // first and last slot
    for (const Fixture &fixture : fixtures) {
        if (fixture.universe == universe)
            taken.append({fixture.address, fixture.lastAddress()});
    }
    std::sort(taken.begin(), taken.end());
    int address = 1;
    for (const auto &place : qAsConst(taken)) {
        if (place.first >= address + footprint)
            break;
        address = qMax(address, place.second + 1);
    }
    return address + footprint - 1 <= Fixture::SLOTS ? address : 0;
}

QString freeNameAmong(const QVector<Fixture> &fixtures, const QString &name)
{
    QSet<QString> taken;
    for (const Fixture &fixture : fixtures)
        taken.insert(fixture.name);
    QString result = name;
    for (int number = 2; taken.contains(result); ++number)
        result = name + QLatin1Char(' ') + QString::number(number);
    return result;
}

} // namespace

/// Fixtures that come, or go where the step was made for that.
class Patch::InsertStep : public QUndoCommand
{
public:
    InsertStep(Patch *patch, const QMap<int, Fixture> &fixtures, bool inserts, const QString &text)
        : QUndoCommand(text)
        , m_patch(patch)
        , m_fixtures(fixtures)
        , m_inserts(inserts)
    {
    }

    void redo() override
    {
        m_inserts ? insert() : remove();
    }

    void undo() override
    {
        m_inserts ? remove() : insert();
    }

private:
    void insert()
    {
        for (auto entry = m_fixtures.cbegin(); entry != m_fixtures.cend(); ++entry)
            m_patch->insertFixture(entry.key(), entry.value());
    }

    void remove()
    {
        const QList<int> rows = m_fixtures.keys();
        for (auto row = rows.crbegin(); row != rows.crend(); ++row)
            m_patch->removeFixture(*row);
    }

    Patch *m_patch;
    QMap<int, Fixture> m_fixtures; ///< by row
    bool m_inserts;
};

/// Fixtures that become others in place.
class Patch::ChangeStep : public QUndoCommand
{
public:
    ChangeStep(Patch *patch, const QVector<Change> &changes, const QString &text, int mergeKey)
        : QUndoCommand(text)
        , m_patch(patch)
        , m_changes(changes)
        , m_mergeKey(mergeKey)
    {
    }

    void redo() override
    {
        for (const Change &change : qAsConst(m_changes))
            m_patch->replaceFixture(change.after);
    }

    void undo() override
    {
        for (const Change &change : qAsConst(m_changes))
            m_patch->replaceFixture(change.before);
    }

    int id() const override
    {
        return m_mergeKey == 0 ? -1 : ASSIGN_STEP;
    }

    bool mergeWith(const QUndoCommand *other) override
    {
        const auto *next = static_cast<const ChangeStep *>(other);
        const bool isSame =
            next->m_mergeKey == m_mergeKey
            && std::equal(m_changes.cbegin(), m_changes.cend(), next->m_changes.cbegin(), next->m_changes.cend(),
                          [](const Change &a, const Change &b) { return a.after.id == b.after.id; });
        if (!isSame)
            return false;
        for (int i = 0; i < m_changes.size(); ++i)
            m_changes[i].after = next->m_changes.at(i).after;
        return true;
    }

private:
    Patch *m_patch;
    QVector<Change> m_changes;
    int m_mergeKey;
};

Patch::Patch(QUndoStack *undo, QObject *parent)
    : QAbstractTableModel(parent)
    , m_undo(undo)
{
    const TrelColorLibrary *library = TrelColorLibrary::Instance();
    connect(library, &TrelColorLibrary::changed, this, &Patch::followLibrary);
    connect(library, &TrelColorLibrary::dataChanged, this, &Patch::followLibrary);
}

int Patch::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_fixtures.size());
}

int Patch::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QVariant Patch::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_fixtures.size())
        return QVariant();
    const Fixture &fixture = m_fixtures.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return text(fixture, index.row(), index.column());
    case Qt::EditRole:
        return editValue(fixture, index.column());
    case Qt::ToolTipRole:
        return toolTip(index.row(), index.column());
    case ShownColorRole:
        return shownColor(index.row()).getQColor(true);
    case LevelsRole:
        return QVariant::fromValue(levelsOf(m_bytes.value(fixture.id), fixture.resolution));
    case LettersRole:
        return fixture.channelLetters();
    case FaultRole:
    case Qt::AccessibleDescriptionRole:
        return faultOf(index.row());
    default:
        return QVariant();
    }
}

QVariant Patch::text(const Fixture &fixture, int row, int column) const
{
    switch (column) {
    case NameColumn:
        return fixture.name;
    case UniverseColumn:
        return fixture.universe;
    case AddressColumn:
        return fixture.address;
    case ColorColumn:
        return colorText(shownColor(row));
    case BytesColumn:
        return bytesText(m_bytes.value(fixture.id));
    case ProfileColumn:
        return ColorUtils::huelockProfileIDName(fixture.profile);
    case ModeColumn:
        return IOModeFactory::instance()->nameForIOModeID(fixture.mode);
    case CalibrationColumn:
        return calibrationText(fixture.isCalibrated);
    case ResolutionColumn:
        return bitsText(fixture.resolution);
    case CurveColumn:
        return CurveFactory::Instance()->nameForCurveType(fixture.curve);
    case OnboardCurveColumn:
        return CurveFactory::Instance()->nameForCurveType(fixture.onboardCurve);
    default:
        return QVariant();
    }
}

QVariant Patch::editValue(const Fixture &fixture, int column) const
{
    if (const FixtureNumber *number = numberOf(column))
        return number->get(fixture);
    return column == NameColumn ? QVariant(fixture.name) : QVariant();
}

QVariant Patch::toolTip(int row, int column) const
{
    const Fixture &fixture = m_fixtures.at(row);
    const QString fault = faultOf(row);
    if (column == AddressColumn || (column == NameColumn && !fault.isEmpty())) {
        const QString place = tr("Slots %1 to %2").arg(fixture.address).arg(fixture.lastAddress());
        return fault.isEmpty() ? place : QString(place + QLatin1Char('\n') + fault);
    }
    if (column == OutputColumn || column == BytesColumn)
        return channelsText(fixture, m_bytes.value(fixture.id));
    if (column == ColorColumn && !fixture.uid.isEmpty())
        return TrelColorLibrary::Instance()->pathOfUid(fixture.uid);
    return text(fixture, row, column);
}

bool Patch::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!index.isValid() || role != Qt::EditRole)
        return false;
    return setValues({index.row()}, Column(index.column()), value);
}

bool Patch::setValues(const QVector<int> &rows, Column column, const QVariant &value)
{
    if (!isValueColumn(column))
        return false;
    QVector<Change> changes;
    for (const int row : rows) {
        if (!offers(index(row, column), value)) {
            Q_EMIT refused(tr("The profile of “%1” does not offer that.").arg(m_fixtures.at(row).name));
            return false;
        }
        const Fixture &before = m_fixtures.at(row);
        changes.append({before, withValue(before, column, value)});
    }
    return change(changes, tr("Change %1").arg(tr(HEADERS[column].text)), false);
}

/// Whether the cell can be edited and \a value is one of its choices, where it has some.
bool Patch::offers(const QModelIndex &cell, const QVariant &value) const
{
    const QVector<Choice> offered = choices(cell);
    const bool isOffered = std::any_of(offered.cbegin(), offered.cend(),
                                       [&value](const Choice &choice) { return choice.value == value.toInt(); });
    return flags(cell).testFlag(Qt::ItemIsEditable) && (offered.isEmpty() || isOffered);
}

QVector<Patch::Choice> Patch::choices(const QModelIndex &index) const
{
    QVector<Choice> result;
    const Fixture &fixture = m_fixtures.at(index.row());
    switch (index.column()) {
    case ProfileColumn:
        for (const ColorUtils::HuelockProfileID id : ColorUtils::huelockProfileIDList(true))
            result.append({ColorUtils::huelockProfileIDName(id), id});
        break;
    case ModeColumn:
        for (const ColorUtils::IOModeID id : ColorUtils::ioModesForHuelockProfileID(fixture.profile))
            result.append({IOModeFactory::instance()->nameForIOModeID(id), id});
        break;
    case CalibrationColumn:
        result = {{calibrationText(true), 1}, {calibrationText(false), 0}};
        break;
    case ResolutionColumn:
        for (const int resolution : Fixture::RESOLUTIONS)
            result.append({bitsText(resolution), resolution});
        break;
    case CurveColumn:
    case OnboardCurveColumn:
        for (const int curve : Fixture::CURVES)
            result.append({CurveFactory::Instance()->nameForCurveType(curve), curve});
        break;
    default:
        break;
    }
    return result;
}

QVariant Patch::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role == Qt::DisplayRole)
        return tr(HEADERS[section].text);
    if (role == Qt::ToolTipRole)
        return tr(HEADERS[section].toolTip);
    return QVariant();
}

Qt::ItemFlags Patch::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    Qt::ItemFlags result = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDropEnabled | Qt::ItemNeverHasChildren;
    const bool isFixed = index.column() == CalibrationColumn && !m_fixtures.at(index.row()).canChooseCalibration();
    if (isValueColumn(index.column()) && !isFixed)
        result |= Qt::ItemIsEditable;
    if (index.column() == ColorColumn)
        result |= Qt::ItemIsDragEnabled;
    return result;
}

const QVector<Fixture> &Patch::fixtures() const
{
    return m_fixtures;
}

int Patch::rowOf(quint32 id) const
{
    const auto place =
        std::find_if(m_fixtures.cbegin(), m_fixtures.cend(), [id](const Fixture &fixture) { return fixture.id == id; });
    return place == m_fixtures.cend() ? -1 : int(place - m_fixtures.cbegin());
}

QVector<quint32> Patch::idsOf(const QVector<int> &rows) const
{
    QVector<quint32> ids;
    for (const int row : rows)
        ids.append(m_fixtures.at(row).id);
    return ids;
}

bool Patch::accepts(const Fixture &fixture)
{
    const QString conflict = fixture.conflict();
    if (!conflict.isEmpty())
        Q_EMIT refused(conflict);
    return conflict.isEmpty();
}

bool Patch::add(const QVector<Fixture> &added)
{
    QMap<int, Fixture> fixtures;
    for (Fixture fixture : added) {
        if (!accepts(fixture))
            return false;
        fixture.id = ++m_lastId;
        fixtures.insert(rowCount() + int(fixtures.size()), fixture);
    }
    if (!fixtures.isEmpty())
        m_undo->push(new InsertStep(this, fixtures, true, tr("Add Fixtures")));
    return !fixtures.isEmpty();
}

void Patch::remove(const QVector<int> &rows)
{
    QMap<int, Fixture> fixtures;
    for (const int row : rows)
        fixtures.insert(row, m_fixtures.at(row));
    if (!fixtures.isEmpty())
        m_undo->push(new InsertStep(this, fixtures, false, tr("Remove Fixtures")));
}

void Patch::duplicate(const QVector<int> &rows)
{
    QVector<Fixture> all = m_fixtures;
    QVector<Fixture> copies;
    for (const int row : rows) {
        Fixture copy = m_fixtures.at(row);
        copy.name = freeNameAmong(all, copy.name);
        copy.address = freeAddressAmong(all, copy.universe, copy.footprint());
        if (copy.address == 0) {
            Q_EMIT refused(tr("Universe %1 has no room for another “%2”.")
                               .arg(QString::number(copy.universe), m_fixtures.at(row).name));
            return;
        }
        all.append(copy);
        copies.append(copy);
    }
    add(copies);
}

bool Patch::change(const QVector<Change> &changes, const QString &text, bool merges)
{
    QVector<Change> real;
    for (const Change &change : changes) {
        if (!accepts(change.after))
            return false;
        if (!(change.before == change.after))
            real.append(change);
    }
    if (!real.isEmpty()) // a step that merges is of the same fixtures each time
        m_undo->push(new ChangeStep(this, merges ? changes : real, text, merges ? m_mergeKey : 0));
    return true;
}

void Patch::assign(const QVector<int> &rows, const QVector<PatchColor> &colors, bool merges)
{
    if (rows.isEmpty() || colors.isEmpty())
        return;
    QVector<Change> changes;
    for (int i = 0; i < rows.size(); ++i) {
        const PatchColor &color = colors.at(qMin(i, int(colors.size()) - 1));
        const Fixture &before = m_fixtures.at(rows.at(i));
        if (m_live.remove(before.id) > 0)
            showAgain(rows.at(i));
        Fixture after = before;
        after.color = color.color;
        after.uid = color.uid;
        changes.append({before, after});
    }
    if (!merges)
        endMerging();
    change(changes, tr("Assign Colour"), merges);
}

bool Patch::hasColors(const QVector<int> &rows, const QVector<PatchColor> &colors) const
{
    for (int i = 0; i < rows.size(); ++i) {
        const PatchColor &color = colors.at(qMin(i, int(colors.size()) - 1));
        const Fixture &fixture = m_fixtures.at(rows.at(i));
        if (fixture.uid != color.uid || !isSameColor(fixture.color, color.color))
            return false;
    }
    return true;
}

void Patch::endMerging()
{
    ++m_mergeKey;
}

void Patch::reset(const QVector<Fixture> &fixtures)
{
    beginResetModel();
    m_fixtures = fixtures;
    m_bytes.clear();
    m_live.clear();
    m_frames.clear();
    for (Fixture &fixture : m_fixtures) {
        fixture.id = ++m_lastId;
        followSwatch(fixture);
        m_bytes.insert(fixture.id, fixture.bytes(fixture.color));
    }
    endResetModel();
    m_undo->clear();
}

void Patch::insertFixture(int row, const Fixture &fixture)
{
    beginInsertRows(QModelIndex(), row, row);
    m_fixtures.insert(row, fixture);
    followSwatch(m_fixtures[row]);
    m_bytes.insert(fixture.id, fixture.bytes(m_fixtures.at(row).color));
    m_frames.clear();
    endInsertRows();
}

void Patch::removeFixture(int row)
{
    beginRemoveRows(QModelIndex(), row, row);
    const quint32 id = m_fixtures.at(row).id;
    m_fixtures.removeAt(row);
    m_bytes.remove(id);
    m_live.remove(id);
    m_frames.clear();
    endRemoveRows();
}

void Patch::replaceFixture(const Fixture &fixture)
{
    const int row = rowOf(fixture.id);
    const Fixture before = m_fixtures.at(row);
    Fixture recolored = before;
    recolored.color = fixture.color;
    recolored.uid = fixture.uid;
    m_fixtures[row] = fixture;
    followSwatch(m_fixtures[row]);
    if (recolored == fixture) {
        showAgain(row);
        return;
    }
    renewBytes(row);
    Q_EMIT dataChanged(index(row, 0), index(row, ColumnCount - 1));
    if (fixture.address != before.address || fixture.universe != before.universe
        || fixture.footprint() != before.footprint())
        Q_EMIT dataChanged(index(0, AddressColumn), index(rowCount() - 1, AddressColumn)); // of what overlaps
}

void Patch::renewBytes(int row)
{
    const Fixture &fixture = m_fixtures.at(row);
    m_bytes.insert(fixture.id, fixture.bytes(shownColor(row)));
    m_frames.clear();
}

/// Has views show the colour on stage, and leaves alone what somebody may be typing into another cell.
void Patch::showAgain(int row)
{
    renewBytes(row);
    Q_EMIT dataChanged(index(row, ColorColumn), index(row, BytesColumn));
}

void Patch::followLibrary()
{
    for (int row = 0; row < m_fixtures.size(); ++row) {
        if (m_fixtures.at(row).uid.isEmpty())
            continue;
        const TrelColor before = m_fixtures.at(row).color;
        followSwatch(m_fixtures[row]);
        if (!isSameColor(before, m_fixtures.at(row).color))
            showAgain(row);
    }
}

void Patch::setLive(const QVector<quint32> &ids, const TrelColor &color)
{
    for (const quint32 id : ids) {
        const int row = rowOf(id);
        if (row < 0)
            continue;
        m_live.insert(id, color);
        showAgain(row);
    }
}

TrelColor Patch::shownColor(int row) const
{
    const Fixture &fixture = m_fixtures.at(row);
    return m_live.value(fixture.id, fixture.color);
}

int Patch::freeAddress(int universe, int footprint) const
{
    return freeAddressAmong(m_fixtures, universe, footprint);
}

QString Patch::freeName(const QString &name) const
{
    return freeNameAmong(m_fixtures, name);
}

QString Patch::faultOf(int row) const
{
    const Fixture &fixture = m_fixtures.at(row);
    for (const Fixture &other : m_fixtures) {
        const bool overlaps = other.id != fixture.id && other.universe == fixture.universe
                              && other.address <= fixture.lastAddress() && fixture.address <= other.lastAddress();
        if (overlaps)
            return tr("Overlaps “%1”, slots %2 to %3.")
                .arg(other.name, QString::number(other.address), QString::number(other.lastAddress()));
    }
    return fixture.lack();
}

QVector<int> Patch::universes() const
{
    QVector<int> result;
    for (const Fixture &fixture : m_fixtures)
        result.append(fixture.universe);
    std::sort(result.begin(), result.end());
    result.erase(std::unique(result.begin(), result.end()), result.end());
    return result;
}

QByteArray Patch::frame(int universe) const
{
    const auto known = m_frames.constFind(universe);
    if (known != m_frames.constEnd())
        return *known;
    QByteArray content(Fixture::SLOTS, '\0');
    for (const Fixture &fixture : m_fixtures) {
        if (fixture.universe == universe)
            content.replace(fixture.address - 1, fixture.footprint(), m_bytes.value(fixture.id));
    }
    return *m_frames.insert(universe, content);
}
