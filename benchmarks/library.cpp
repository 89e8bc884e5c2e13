// The library with as many colours as a large user's file holds, timed against the models that a host would take
// instead. Nothing here touches the user's own folders: files are loaded by path, which never saves.

#include <TrelColorLibrary.h>

#include <benchmark/benchmark.h>

#include <QDomDocument>
#include <QFile>
#include <QStandardItemModel>
#include <QTemporaryDir>
#include <QUuid>

#include <malloc.h>

#include <memory>
#include <vector>

Q_DECLARE_METATYPE(TrelColor)

namespace {

using Item = TrelColorLibraryItem;

constexpr int FEW = 10000;
constexpr int MANY = 100000;
constexpr char LIST[] = "My colours";

enum class Names { Distinct, Same };

/// What a user's file says of a colour.
struct Entry
{
    QString name;
    QString uid;
    QString vendorId;
    TrelColor color;
};

QString uidOf(int number)
{
    return QUuid(unsigned(number) * 2654435761u, 0x4A7F, 0x4C6B, 0x8F, 0x55, 0x0B, 0x1F, 0x6F, 0x5D, 0x2A, 0x90)
        .toString();
}

/// Screen colours and mixed ones in turn.
TrelColor colorOf(int number)
{
    if (number % 2 == 0)
        return TrelColor::fromRgb(unsigned(number));
    TrelColor color;
    color.setYxyF(0.5, 0.3 + 1e-6 * number, 0.33);
    return color;
}

std::vector<Entry> entries(int count, Names names)
{
    std::vector<Entry> result;
    result.reserve(std::size_t(count));
    for (int i = 0; i < count; ++i) {
        const QString number = QString::number(i);
        result.push_back(
            {names == Names::Same ? QStringLiteral("Name") : "Name " + number, uidOf(i), "L" + number, colorOf(i)});
    }
    return result;
}

/// Ends with the library that it was made for.
class FreshLibrary
{
public:
    FreshLibrary()
    {
        TrelColorLibrary::cleanup();
    }
    FreshLibrary(const FreshLibrary &) = delete;
    FreshLibrary &operator=(const FreshLibrary &) = delete;
    ~FreshLibrary()
    {
        TrelColorLibrary::cleanup();
    }

    TrelColorLibrary *operator->() const
    {
        return TrelColorLibrary::Instance();
    }
};

/// A user's file with one list, for as long as it lives.
class UserFile
{
public:
    UserFile(int count, Names names)
    {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly))
            return;
        file.write("<ColorLibraryList>\n <ColorLibrary name=\"");
        file.write(LIST);
        file.write("\" isUserLibrary=\"1\">\n");
        for (const Entry &entry : entries(count, names)) {
            file.write(QStringLiteral("  <Color name=\"%1\" uid=\"%2\" value=\"%3\" originatingPreset=\"\""
                                      " colorId=\"%4\"/>\n")
                           .arg(entry.name, entry.uid, entry.color.aName(), entry.vendorId)
                           .toUtf8());
        }
        file.write(" </ColorLibrary>\n</ColorLibraryList>\n");
    }

    QString path() const
    {
        return m_folder.filePath(QStringLiteral("userColors.xml"));
    }

private:
    QTemporaryDir m_folder;
};

QString nameOfLast(Names names, int count)
{
    // The first one of a name has no number.
    return names == Names::Same ? QStringLiteral("Name %1").arg(count) : QStringLiteral("Name %1").arg(count - 1);
}

bool isLoaded(Names names, int count)
{
    const TrelColorLibrary *library = TrelColorLibrary::Instance();
    const QModelIndex last = library->getIndexOfUid(uidOf(count - 1));
    return library->rowCount(library->getIndexOfListId(LIST)) == count && last.row() == count - 1
           && last.data(Qt::EditRole).toString() == nameOfLast(names, count)
           && library->getColors(LIST).last().aName() == colorOf(count - 1).aName();
}

/// Gives the heap back that the round before has freed, or this one would pay for tidying it up.
void tidyHeap()
{
    malloc_trim(0);
}

/// Begins a round with a library without colours.
void renewLibrary(benchmark::State &state)
{
    state.PauseTiming();
    TrelColorLibrary::cleanup();
    TrelColorLibrary::Instance();
    tidyHeap();
    state.ResumeTiming();
}

/// Proves its answer on what it has timed, since each load takes long.
void load(benchmark::State &state, Names names)
{
    const int count = int(state.range(0));
    const UserFile file(count, names);
    const FreshLibrary library;
    for (auto _ : state) {
        renewLibrary(state);
        library->loadUserColors(file.path());
    }
    if (!isLoaded(names, count))
        state.SkipWithError("wrong colours");
}
BENCHMARK_CAPTURE(load, library, Names::Distinct)->Arg(FEW)->Arg(MANY)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load, library, Names::Same)
    ->Name("loadSameName/library")
    ->Arg(FEW)
    ->Arg(MANY)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(load, library, Names::Distinct)->Name("loadFile/library")->Arg(MANY)->Unit(benchmark::kMillisecond);

/// Reads the file into a document and lets that go, as the library has to as well.
/// \return the name of its last colour.
QString parse(const QString &path)
{
    QFile file(path);
    QDomDocument document;
    if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file, true))
        return QString();
    return document.documentElement().firstChildElement().lastChildElement().attribute(QStringLiteral("name"));
}

void loadIntoDocument(benchmark::State &state)
{
    const int count = int(state.range(0));
    const UserFile file(count, Names::Distinct);
    QString last;
    for (auto _ : state) {
        state.PauseTiming();
        tidyHeap();
        state.ResumeTiming();
        last = parse(file.path());
    }
    if (last != nameOfLast(Names::Distinct, count))
        state.SkipWithError("wrong document");
}
BENCHMARK(loadIntoDocument)->Name("loadFile/qdomdocument")->Arg(MANY)->Unit(benchmark::kMillisecond);

void insertIntoLibrary(const std::vector<Entry> &colors)
{
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    for (const Entry &entry : colors)
        library->createColorWithName(entry.color, entry.name, entry.uid, LIST, entry.vendorId);
}

/// An item with what a colour of the library answers for each role.
QStandardItem *itemOf(const Entry &entry)
{
    auto *item = new QStandardItem(entry.name);
    item->setData(entry.name, Qt::ToolTipRole);
    item->setData(QVariant::fromValue(entry.color), Item::ColorRole);
    item->setData(entry.uid, Item::UidRole);
    item->setData(QString(), Item::ExplicitColorRole);
    item->setData(QString(), Item::OldPresetRole);
    item->setData(false, Item::CanBeModifiedRole);
    item->setData(int(Item::UID_COLOR_ITEM), Item::ItemTypeRole);
    item->setData(1, Item::ListStateRole);
    item->setData(QString(), Item::OriginatingPresetRole);
    item->setData(entry.vendorId, Item::VendorIdRole);
    return item;
}

void insertIntoModel(const std::vector<Entry> &colors, QStandardItemModel &model)
{
    auto *list = new QStandardItem(QLatin1String(LIST));
    model.appendRow(list);
    for (const Entry &entry : colors)
        list->appendRow({itemOf(entry), new QStandardItem(entry.vendorId)});
}

double heapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks + info.hblkhd);
}

/// The heap that \a fill takes for good. The entries do not outlive it, so that their texts belong to the model.
template <typename Fill>
double heapOf(int count, Fill fill)
{
    const double before = heapInUse();
    fill(entries(count, Names::Distinct));
    return heapInUse() - before;
}

void insertLibrary(benchmark::State &state)
{
    const int count = int(state.range(0));
    const FreshLibrary library;
    TrelColorLibrary::Instance(); // with its fixed lists, which are no part of what the colours need
    state.counters["heap"] = heapOf(count, insertIntoLibrary);
    if (!isLoaded(Names::Distinct, count)) {
        state.SkipWithError("wrong colours");
        return;
    }
    const std::vector<Entry> colors = entries(count, Names::Distinct);
    for (auto _ : state) {
        renewLibrary(state);
        insertIntoLibrary(colors);
    }
}
BENCHMARK(insertLibrary)->Name("insert/library")->Arg(MANY)->Unit(benchmark::kMillisecond);

/// Rows of \a model with \a uid, one at most.
QModelIndexList matches(const QStandardItemModel &model, const QString &uid)
{
    const QModelIndex first = model.index(0, 0, model.index(0, 0));
    return model.match(first, Item::UidRole, uid, 1, Qt::MatchExactly);
}

void insertStandardModel(benchmark::State &state)
{
    const int count = int(state.range(0));
    auto model = std::make_unique<QStandardItemModel>();
    state.counters["heap"] = heapOf(count, [&](const std::vector<Entry> &colors) { insertIntoModel(colors, *model); });
    const QModelIndexList last = matches(*model, uidOf(count - 1));
    if (last.size() != 1 || last.first().row() != count - 1
        || last.first().data(Item::ColorRole).value<TrelColor>() != colorOf(count - 1)) {
        state.SkipWithError("wrong rows");
        return;
    }
    const std::vector<Entry> colors = entries(count, Names::Distinct);
    for (auto _ : state) {
        state.PauseTiming();
        model = std::make_unique<QStandardItemModel>();
        tidyHeap();
        state.ResumeTiming();
        insertIntoModel(colors, *model);
    }
}
BENCHMARK(insertStandardModel)->Name("insert/qstandarditemmodel")->Arg(MANY)->Unit(benchmark::kMillisecond);

/// Uids all over the list, out of order, the same for both sides.
std::vector<QString> wantedUids()
{
    constexpr int WANTED = 32;
    std::vector<QString> uids;
    for (int i = 0; i < WANTED; ++i)
        uids.push_back(uidOf((i * 13 % WANTED) * (MANY / WANTED) + MANY / WANTED / 2));
    return uids;
}

/// Times \a rowOf, which finds the row of a uid.
template <typename RowOf>
void timeUids(benchmark::State &state, RowOf rowOf)
{
    if (rowOf(uidOf(0)) != 0 || rowOf(uidOf(MANY / 2)) != MANY / 2 || rowOf(uidOf(MANY)) != -1) {
        state.SkipWithError("wrong row");
        return;
    }
    const std::vector<QString> uids = wantedUids();
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(rowOf(uids[i++ % uids.size()]));
}

void uidInLibrary(benchmark::State &state)
{
    const FreshLibrary library;
    insertIntoLibrary(entries(MANY, Names::Distinct));
    timeUids(state, [&](const QString &wanted) { return library->getIndexOfUid(wanted).row(); });
}
BENCHMARK(uidInLibrary)->Name("uid/library");

void uidInStandardModel(benchmark::State &state)
{
    QStandardItemModel model;
    insertIntoModel(entries(MANY, Names::Distinct), model);
    timeUids(state, [&](const QString &wanted) {
        const QModelIndexList found = matches(model, wanted);
        return found.isEmpty() ? -1 : found.first().row();
    });
}
BENCHMARK(uidInStandardModel)->Name("uid/qstandarditemmodel");

} // namespace
