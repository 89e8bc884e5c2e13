#include "LibraryTwins.h"
#include "TestSupport.h"

#include <TrelColorLibrary.h>

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QSet>

#include <random>

using Item = TrelColorLibraryItem;

namespace {

constexpr char EXPLICIT_COLORS[] = "Explicit Colors";
constexpr char PROJECT_SWATCHES[] = "Project Swatches";

// Quadratic work on so many colours would take hours. Sanitizers make each step several times slower.
#if defined(__SANITIZE_ADDRESS__)
constexpr int MANY = 20000;
#else
constexpr int MANY = 100000;
#endif

QString braced(int number)
{
    return QStringLiteral("{%1}").arg(number);
}

// The colour with this number, so that each differs from its neighbours.
TrelColor numbered(int number)
{
    return TrelColor::fromRgb(unsigned(number));
}

QModelIndex listNamed(const char *name)
{
    return TrelColorLibrary::Instance()->getIndexOfListId(name);
}

int countOf(const char *name)
{
    return TrelColorLibrary::Instance()->rowCount(listNamed(name));
}

QString nameAt(int row, const char *list = "A")
{
    return TrelColorLibrary::Instance()->index(row, 0, listNamed(list)).data(Qt::EditRole).toString();
}

} // namespace

class tst_TrelColorLibraryGrowth : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void sameAsPlainLibrary_data();
    void sameAsPlainLibrary();

    void manyDistinctNames();
    void manyEqualNames();
    void manyEqualNamesWithNumbersOfTheirOwn();
    void manyProvisionalNames();
    void manyEqualUidsInAListItem();
    void manyDistinctInAListItem();
    void manyExplicitColors();
    void manyRenamed();
    void manyRemovedAndAddedAgain();

private:
    void insertAll(const QString &name, int count);
};

void tst_TrelColorLibraryGrowth::initTestCase()
{
    TrelColorLibrary::cleanup();
}

void tst_TrelColorLibraryGrowth::sameAsPlainLibrary_data()
{
    QTest::addColumn<unsigned int>("seed");
    for (const unsigned int seed : {1u, 2u, 3u, 4u, 5u})
        QTest::newRow(qPrintable(QString("seed %1").arg(seed))) << seed;
}

void tst_TrelColorLibraryGrowth::sameAsPlainLibrary()
{
    QFETCH(unsigned int, seed);
    TrelColorLibrary::cleanup();
    std::mt19937 random(seed);
    LibraryTwins twins([&random] { return unsigned(random()); });
    for (int i = 0; i < 1000; ++i) {
        twins.step();
        for (int j = 0; j < 5; ++j)
            twins.lookUp();
        const QString difference = twins.difference();
        QVERIFY2(difference.isEmpty(), qPrintable(QString("operation %1: ").arg(i) + difference));
    }
}

void tst_TrelColorLibraryGrowth::insertAll(const QString &name, int count)
{
    TrelColorLibrary::cleanup();
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    for (int i = 0; i < count; ++i)
        library->handleInsertColor(braced(i), name.isEmpty() ? QString("Name %1").arg(i) : name, numbered(i).aName(),
                                   QString(), "A", QString());
}

void tst_TrelColorLibraryGrowth::manyDistinctNames()
{
    insertAll(QString(), MANY);
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    QCOMPARE(countOf("A"), MANY);
    for (int i = 0; i < MANY; ++i) {
        QCOMPARE(library->getIndexOfUid(braced(i)).row(), i);
        QCOMPARE(library->get(braced(i)), numbered(i));
        QCOMPARE(nameAt(i), QString("Name %1").arg(i));
    }
}

void tst_TrelColorLibraryGrowth::manyEqualNames()
{
    insertAll("Name", MANY);
    QCOMPARE(countOf("A"), MANY);
    QCOMPARE(nameAt(0), QString("Name"));
    for (int i = 1; i < MANY; ++i)
        QCOMPARE(nameAt(i), QString("Name %1").arg(i + 1));
}

void tst_TrelColorLibraryGrowth::manyEqualNamesWithNumbersOfTheirOwn()
{
    TrelColorLibrary::cleanup();
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    QSet<QString> names;
    for (int i = 0; i < MANY / 2; ++i) {
        library->createColorWithName(numbered(i), "Name", braced(2 * i), "A", QString());
        library->createColorWithName(numbered(i), "Name 2", braced(2 * i + 1), "A", QString());
    }
    for (int i = 0; i < MANY; ++i)
        names.insert(nameAt(i));
    QCOMPARE(int(names.size()), MANY);
    QCOMPARE(nameAt(0), QString("Name"));
    QCOMPARE(nameAt(1), QString("Name 2"));
    QCOMPARE(nameAt(2), QString("Name 3"));
    QCOMPARE(nameAt(3), QString("Name 2 2"));
    QCOMPARE(nameAt(MANY - 2), QString("Name %1").arg(MANY / 2 + 1));
    QCOMPARE(nameAt(MANY - 1), QString("Name 2 %1").arg(MANY / 2));
}

void tst_TrelColorLibraryGrowth::manyProvisionalNames()
{
    TrelColorLibrary::cleanup();
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    for (int i = 0; i < MANY; ++i)
        library->createColor(numbered(i), QString(), "A", QString(), QString());
    QCOMPARE(nameAt(0), QString("Color"));
    for (int i = 1; i < MANY; ++i)
        QCOMPARE(nameAt(i), QString("Color %1").arg(i + 1));
}

void tst_TrelColorLibraryGrowth::manyEqualUidsInAListItem()
{
    TrelColorLibrary::cleanup();
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    Item *list = static_cast<Item *>(listNamed(PROJECT_SWATCHES).internalPointer());
    for (int i = 0; i < MANY; ++i)
        list->handleInsertColor("{x}", QString("Name %1").arg(i), numbered(i).aName(), "", "", "");
    QCOMPARE(countOf(PROJECT_SWATCHES), MANY);
    QCOMPARE(nameAt(0, PROJECT_SWATCHES), QString("Name %1").arg(MANY - 1));
    QCOMPARE(nameAt(MANY - 1, PROJECT_SWATCHES), QString());
    QCOMPARE(library->getIndexOfUid("{x}").row(), 0);
    QCOMPARE(library->get("{x}"), numbered(MANY - 1));
}

void tst_TrelColorLibraryGrowth::manyDistinctInAListItem()
{
    TrelColorLibrary::cleanup();
    Item *list = static_cast<Item *>(listNamed(PROJECT_SWATCHES).internalPointer());
    for (int i = 0; i < MANY; ++i)
        list->handleInsertColor(braced(i), QString("Name %1").arg(i), numbered(i).aName(), "", "", "");
    for (int i = 0; i < MANY; ++i)
        QCOMPARE(nameAt(i, PROJECT_SWATCHES), QString("Name %1").arg(i));
}

void tst_TrelColorLibraryGrowth::manyExplicitColors()
{
    TrelColorLibrary::cleanup();
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < MANY; ++i)
            QCOMPARE(library->get(numbered(i).aName()), numbered(i));
        QCOMPARE(countOf(EXPLICIT_COLORS), MANY);
    }
}

void tst_TrelColorLibraryGrowth::manyRenamed()
{
    insertAll("Name", MANY);
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    for (int i = 0; i < MANY; ++i)
        library->rename(braced(i), QString("New %1").arg(i), true);
    for (int i = 0; i < MANY; ++i)
        QCOMPARE(nameAt(i), QString("New %1").arg(i));

    // Every number is free again.
    library->createColorWithName(numbered(0), "Name", "{first}", "A", QString());
    library->createColorWithName(numbered(0), "Name", "{second}", "A", QString());
    QCOMPARE(nameAt(MANY), QString("Name"));
    QCOMPARE(nameAt(MANY + 1), QString("Name 2"));
}

void tst_TrelColorLibraryGrowth::manyRemovedAndAddedAgain()
{
    insertAll("Name", MANY);
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    library->removeRows(1, MANY - 2, listNamed("A"));
    QCOMPARE(nameAt(1), QString("Name %1").arg(MANY));
    QVERIFY(!library->containsUid(braced(1)));
    QCOMPARE(library->getIndexOfUid(braced(MANY - 1)).row(), 1);

    for (int i = 0; i < MANY; ++i)
        library->handleInsertColor(braced(MANY + i), "Name", numbered(i).aName(), "", "A", "");
    QCOMPARE(nameAt(2), QString("Name 2"));
    QCOMPARE(nameAt(MANY - 1), QString("Name %1").arg(MANY - 1));
    QCOMPARE(nameAt(MANY), QString("Name %1").arg(MANY + 1));
    QVERIFY(library->clear("A"));
    QCOMPARE(countOf("A"), 0);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!library->containsUid(braced(MANY)));
}

TREL_TEST_MAIN_WITH(QGuiApplication, tst_TrelColorLibraryGrowth, {})
#include "tst_TrelColorLibraryGrowth.moc"
