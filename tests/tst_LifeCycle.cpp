#include "ColorUtils.h"
#include "TestSupport.h"
#include "TrelColorLibrary.h"
#include "TrelColorLibraryItem.h"

#include <QDomDocument>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMimeData>
#include <QPersistentModelIndex>
#include <QPixmap>
#include <QPointer>

#include <cstdio>
#include <memory>

/// The colour library comes and goes with its host: before, under, between and after application objects. Whether
/// it leaks is for the sanitizer to say, at the end of each process.
class tst_LifeCycle : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void rounds();
    void cleanupTwice();
    void removedColorsGoWithTheEventLoop();
    void viewsSurviveTheLibrary();
    void askedForWhileItGoes();
    void inAProcessOfItsOwn_data();
    void inAProcessOfItsOwn();
    void leaksAreSeen_data();
    void leaksAreSeen();
};

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool SEES_LEAKS = true;
#elif defined(__has_feature)
constexpr bool SEES_LEAKS = __has_feature(address_sanitizer);
#else
constexpr bool SEES_LEAKS = false;
#endif

constexpr int ROUNDS = 1000;
constexpr int APPLICATIONS = 20;
constexpr int ROUNDS_EACH = ROUNDS / APPLICATIONS;
constexpr int SAVED_EVERY = 50; ///< rounds; a save costs more than the rest of a round

const QStringList FIXED_LISTS{"Explicit Colors", "Project Swatches"};

/// An application object with a command line that lives as long.
template <typename Application>
class Hosted
{
private:
    int m_count = 1;
    char m_name[5] = "host";
    char *m_arguments[2] = {m_name, nullptr};
    Application m_application{m_count, m_arguments};
};

QPixmap square(const TrelColor &color)
{
    QPixmap pixmap(2, 2);
    pixmap.fill(color.getQColor(true));
    return pixmap;
}

/// Where pixmaps can be made, thumbnails are.
TrelColorLibrary::ThumbnailGenerator generator()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance()) ? square : nullptr;
}

QStringList listNames(const TrelColorLibrary &library)
{
    QStringList names;
    for (int row = 0; row < library.rowCount(library.rootIndex()); ++row)
        names += library.data(library.index(row, 0, library.rootIndex()), Qt::EditRole).toString();
    return names;
}

/// Colours come by every road, change, and go; one is removed and left to the event loop.
bool useColors(TrelColorLibrary &library)
{
    const TrelColor orange("orange");
    library.createColorWithName(orange, "One", "{1}", "Mine", "v1");
    library.createColorWithName(orange, "Two", "{2}", "Mine", "v2");
    library.createColor(orange, "{3}", "Theirs", "preset", "v3");
    library.rename("{1}", "First", false);
    library.set("{2}", TrelColor(Qt::blue));
    const bool isExplicit = library.get("aYxy;1;0;65535;0.500000;0.312700;0.329000").spec() == TrelColor::Yxy;
    const QString swatch = library.createNewSwatchUidFromUid("{1}", "Theirs");
    const QString exposed = library.getExposableUidFromUid("{2}");
    const bool isRemoved = library.remove("{3}");
    return isExplicit && isRemoved && library.containsUid(swatch) && library.containsUid(exposed)
           && !library.containsUid("{3}") && library.get("{2}") == TrelColor(Qt::blue)
           && library.pathOfUid("{1}") == "Mine/First" && library.getColorUids("Mine") == QStringList({"{1}", "{2}"});
}

/// The project's section is written and read again.
bool useDocument(TrelColorLibrary &library)
{
    QDomDocument document;
    bool ok = false;
    document.appendChild(library.createElement(document, ok, "Kestra"));
    QString error;
    const QStringList before = library.getColorUids("Project Swatches");
    return ok && library.loadDocument(document, error, 1.0, "Kestra") && error.isEmpty() && before.size() == 1
           && library.getColorUids("Project Swatches") == before;
}

/// Whether \a icon is what a library with that generator shows; without an application object no pixmap can be made.
bool isRightIcon(const QVariant &icon, bool canGenerate)
{
    if (!QCoreApplication::instance())
        return !icon.isValid();
    return icon.isValid() && icon.value<QPixmap>().isNull() == !canGenerate;
}

bool useModel(const TrelColorLibrary &library)
{
    const QModelIndex color = library.getIndexOfUid("{1}");
    const std::unique_ptr<QMimeData> dragged(library.mimeData({color}));
    return color.isValid() && library.parent(color) == library.getIndexOfListId("Mine")
           && dragged->formats().size() >= 2 && library.data(color, Qt::EditRole) == "First"
           && isRightIcon(library.data(color, Qt::DecorationRole), library.canGeneratePixmap());
}

/// The user's list, which the life before has saved, is read, changed and saved.
bool useFile(TrelColorLibrary &library)
{
    const bool wasSaved = QFileInfo::exists(TrelColorLibrary::applicationSupportDir() + "\\userColors.xml");
    library.loadUserColors(QString());
    if (library.containsUid("{kept}") != wasSaved)
        return false;
    if (!wasSaved)
        library.createColorList("Kept", true);
    library.clear("Kept");
    return library.createColor(TrelColor(Qt::red), "{kept}", "Kept", QString(), QString()) == "{kept}";
}

/// A fresh library is used in every way; whether it answered as it should.
bool use(bool isSaved)
{
    TrelColorLibrary &library = *TrelColorLibrary::Instance();
    if (listNames(library) != FIXED_LISTS || library.containsUid("{1}") || library.canGeneratePixmap())
        return false;
    library.setThumbnailGenerator(generator());
    return (!isSaved || useFile(library)) && useColors(library) && useDocument(library) && useModel(library);
}

/// \a count lives of a library; whether each went well and ended.
bool live(int count)
{
    for (int round = 0; round < count; ++round) {
        const bool isRight = use(round % SAVED_EVERY == 0);
        const QPointer<QObject> library(TrelColorLibrary::Instance());
        TrelColorLibrary::cleanup();
        if (isRight && library.isNull())
            continue;
        std::printf("life %d went wrong\n", round);
        return false;
    }
    return true;
}

/// Flushed, since a process that leaks is ended by the sanitizer.
void report(bool isRight)
{
    std::puts(isRight ? "well" : "not well");
    std::fflush(stdout);
}

void withoutApplication()
{
    report(live(ROUNDS));
}

template <typename Application>
void underTheApplication()
{
    const Hosted<Application> host;
    report(live(ROUNDS));
}

template <typename Application>
void afterTheApplication()
{
    std::make_unique<Hosted<Application>>();
    report(live(ROUNDS));
}

/// A used library and its host; the host goes first.
template <typename Application>
bool goesWithTheApplication(bool isMadeBefore)
{
    bool isRight = !isMadeBefore || use(false);
    QPointer<QObject> library;
    {
        const Hosted<Application> host;
        isRight = isRight && (isMadeBefore || use(false)) && TrelColorLibrary::Instance()->containsUid("{1}");
        library = TrelColorLibrary::Instance();
    }
    return isRight && library.isNull();
}

template <typename Application>
void leftToTheApplication()
{
    report(goesWithTheApplication<Application>(false) && live(1));
}

template <typename Application>
void fromBeforeTheApplication()
{
    report(goesWithTheApplication<Application>(true) && live(1));
}

/// \a livesBetween where no application object exists.
void applicationsInTurn(int livesBetween)
{
    bool isRight = true;
    for (int i = 0; isRight && i < APPLICATIONS; ++i) {
        {
            const Hosted<QCoreApplication> host;
            isRight = live(ROUNDS_EACH);
        }
        isRight = isRight && live(livesBetween);
        {
            const Hosted<QGuiApplication> host;
            isRight = isRight && live(ROUNDS_EACH);
        }
        isRight = isRight && live(livesBetween) && goesWithTheApplication<QGuiApplication>(false)
                  && goesWithTheApplication<QCoreApplication>(false);
    }
    report(isRight);
}

void neverCleanedUp()
{
    static const Hosted<QGuiApplication> host;
    report(use(true));
}

/// A host may delete what it was given; the library notices.
void deletedByTheHost()
{
    const Hosted<QGuiApplication> host;
    bool isRight = use(false);
    delete TrelColorLibrary::Instance();
    isRight = isRight && listNames(*TrelColorLibrary::Instance()) == FIXED_LISTS;
    TrelColorLibrary::cleanup();
    TrelColorLibrary::cleanup();
    report(isRight);
}

/// Uses the library when all of main() is over. Where the library was used before, it must be made after that: Qt
/// creates no model once its own globals are gone, which go in the reverse order of their first use.
class LastWords
{
public:
    ~LastWords()
    {
        report(live(1) && live(1));
    }
};

void inAStaticDestructor()
{
    static const LastWords words;
}

void inAStaticDestructorAfterTheApplication()
{
    const Hosted<QGuiApplication> host;
    if (!use(true))
        std::puts("went wrong under the application");
    static const LastWords words;
}

void inAStaticDestructorUnderTheApplication()
{
    static const Hosted<QGuiApplication> host;
    static const LastWords words;
}

void leakBytes()
{
    std::unique_ptr<char[]> bytes(new char[1000]);
    bytes[0] = 'x';
    report(bytes[0] == 'x');
    bytes.release();
}

/// An item that no list owns, as the library would lose one.
void leakItem()
{
    const Hosted<QGuiApplication> host;
    auto item = std::make_unique<TrelColorLibraryItem>(nullptr, false);
    item->setDisplayName("lost");
    report(item->displayName() == "lost");
    item.release();
}

const ChildCases livesInAProcess{
    {"before any application", withoutApplication},
    {"under a core application", underTheApplication<QCoreApplication>},
    {"under a gui application", underTheApplication<QGuiApplication>},
    {"after a core application", afterTheApplication<QCoreApplication>},
    {"after a gui application", afterTheApplication<QGuiApplication>},
    {"left to a core application", leftToTheApplication<QCoreApplication>},
    {"left to a gui application", leftToTheApplication<QGuiApplication>},
    {"from before a core application", fromBeforeTheApplication<QCoreApplication>},
    {"from before a gui application", fromBeforeTheApplication<QGuiApplication>},
    {"applications in turn", [] { applicationsInTurn(0); }},
    {"applications in turn and between them", [] { applicationsInTurn(ROUNDS_EACH); }},
    {"never cleaned up", neverCleanedUp},
    {"deleted by the host", deletedByTheHost},
    {"in a static destructor, without application", inAStaticDestructor},
    {"in a static destructor, after the application", inAStaticDestructorAfterTheApplication},
    {"in a static destructor, under the application", inAStaticDestructorUnderTheApplication},
};

const ChildCases leaks{
    {"of bytes", leakBytes},
    {"of an item", leakItem},
};

ChildCases childCases()
{
    ChildCases all = livesInAProcess;
    for (auto leak = leaks.cbegin(); leak != leaks.cend(); ++leak)
        all.insert(leak.key(), leak.value());
    return all;
}

void addRows(const ChildCases &cases)
{
    QTest::addColumn<QString>("name");
    for (auto row = cases.cbegin(); row != cases.cend(); ++row)
        QTest::newRow(qPrintable(row.key())) << row.key();
}

} // namespace

void tst_LifeCycle::rounds()
{
    TrelColorLibrary::cleanup();
    QVERIFY(live(ROUNDS));
}

void tst_LifeCycle::cleanupTwice()
{
    TrelColorLibrary::cleanup();
    QVERIFY(use(false));
    TrelColorLibrary::cleanup();
    TrelColorLibrary::cleanup();
    QVERIFY(use(false));
}

void tst_LifeCycle::removedColorsGoWithTheEventLoop()
{
    TrelColorLibrary::cleanup();
    QVERIFY(use(false));
    TrelColorLibrary &library = *TrelColorLibrary::Instance();
    const QPointer<QObject> removed(static_cast<QObject *>(library.getIndexOfUid("{1}").internalPointer()));
    const QPointer<QObject> kept(static_cast<QObject *>(library.getIndexOfUid("{2}").internalPointer()));
    QVERIFY(removed && kept && library.remove("{1}"));
    QVERIFY2(!removed.isNull(), "a view may still hold it");
    TrelColorLibrary::cleanup();
    QVERIFY2(kept.isNull(), "the library takes its colours along");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(removed.isNull());
}

void tst_LifeCycle::viewsSurviveTheLibrary()
{
    TrelColorLibrary::cleanup();
    QVERIFY(use(false));
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    const QPersistentModelIndex list(library->getIndexOfListId("Mine"));
    const QPersistentModelIndex color(library->getIndexOfUid("{1}"));
    QVERIFY(list.isValid() && color.isValid());
    QSignalSpy reset(library, &QAbstractItemModel::modelReset);
    QSignalSpy removed(library, &QAbstractItemModel::rowsRemoved);
    TrelColorLibrary::cleanup();
    QCOMPARE(int(reset.count()), 1);
    QCOMPARE(int(removed.count()), 1);
    QVERIFY(!list.isValid() && !color.isValid());
}

void tst_LifeCycle::askedForWhileItGoes()
{
    TrelColorLibrary::cleanup();
    QVERIFY(use(false));
    int answers = 0;
    const TrelColorLibrary *going = TrelColorLibrary::Instance();
    const auto ask = [&answers, going] {
        TrelColorLibrary *library = TrelColorLibrary::Instance();
        if (library == going && !library->containsUid("{1}") && listNames(*library).isEmpty())
            ++answers;
    };
    connect(going, &QAbstractItemModel::rowsRemoved, this, ask);
    connect(going, &QAbstractItemModel::modelReset, this, ask);
    TrelColorLibrary::cleanup();
    QCOMPARE(answers, 2);
    QCOMPARE(listNames(*TrelColorLibrary::Instance()), FIXED_LISTS);
}

void tst_LifeCycle::inAProcessOfItsOwn_data()
{
    addRows(livesInAProcess);
}

void tst_LifeCycle::inAProcessOfItsOwn()
{
    QFETCH(QString, name);
    const ChildResult result = runChild(name);
    QVERIFY2(!result.crashed && result.code == 0, result.err.right(2000).constData());
    QCOMPARE(result.out, QByteArray("well\n"));
}

void tst_LifeCycle::leaksAreSeen_data()
{
    addRows(leaks);
}

void tst_LifeCycle::leaksAreSeen()
{
    QFETCH(QString, name);
    const ChildResult result = runChild(name);
    QVERIFY(!result.crashed);
    QCOMPARE(result.out, QByteArray("well\n"));
    QCOMPARE(result.code != 0, SEES_LEAKS);
}

TREL_TEST_MAIN_WITH(QGuiApplication, tst_LifeCycle, childCases())
#include "tst_LifeCycle.moc"
