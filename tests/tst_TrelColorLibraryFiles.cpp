#include "TestSupport.h"

#include <KestraProjectHelper.h>
#include <TrelColorLibrary.h>

#include <QCursor>
#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <cstdio>
#include <utility>

using Item = TrelColorLibraryItem;

/// Where colour lists come from and go to: preset files, the user's file, the colour section of a project.
class tst_TrelColorLibraryFiles : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void odd69_userFileHasBackslashes();
    void folderIsLookedUpOnce();
    void folderIsCreatedWithItsParents();

    void userDocument();
    void userDocumentIsWrittenToTheDebugOutput();
    void userDocumentIsTheSameInEveryProcess();
    void onlyUserListsAreSaved();
    void saveLoadSave_data();
    void saveLoadSave();
    void namesSurvive_data();
    void namesSurvive();

    void loadedLists_data();
    void loadedLists();
    void loadedColors_data();
    void loadedColors();
    void missingFileAddsNothing();
    void sameFileTwice();
    void editsBeforeLoadingAreNotSaved();
    void editsAfterLoadingAreSavedOnce();
    void batchAfterLoadingIsSavedOnce();
    void loadingUserColorsIsABatch();
    void loadingSavesOnce();
    void otherFileNeverEnablesSaving_data();
    void otherFileNeverEnablesSaving();
    void otherFileJoinsTheUsersOne();
    void waitCursor_data();
    void waitCursor();
    void waitCursorLeavesTheHostsCursor();

    void presets_data();
    void presets();

    void projectRoundTrip();
    void projectElement();
    void projectHoldsNoOtherColors();
    void projectSectionIsReplaced();
    void projectKeepsOriginAndVendor();
    void projectReaderComplains();
    void projectOfAnotherApplication();
    void projectLoadIsAnnounced_data();
    void projectLoadIsAnnounced();
    void projectListSurvivesLoading();
    void oldPresets_data();
    void oldPresets();
    void clearedOldPresets();

    void colorDocument();
    void colorDocumentOfNothing();
    void colorDocumentLoads();
};

namespace {

const char RED[] = "aRgb;1;0;#ffffffff00000000";
const char GREEN[] = "aRgb;1;0;#80800000ffff0000";
const char WHITE[] = "aYxy;1;0;65535;1.000000;0.312700;0.329000";
const char LEVELS[] = "aNchannel;6;5;65535;100;200;300;400;1";

const char HOME_VARIABLE[] = "TREL_TEST_DATA_HOME";

QtMessageHandler s_next = nullptr;
QStringList s_debugLines;

void keepDebugLines(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtDebugMsg)
        s_debugLines.append(text);
    else
        s_next(type, context, text);
}

/// Documents written since the last call, as the debug output had them.
QStringList takeWritten()
{
    return std::exchange(s_debugLines, {}).filter("<ColorLibraryList");
}

TrelColorLibrary &library()
{
    return *TrelColorLibrary::Instance();
}

QString userFile()
{
    return TrelColorLibrary::applicationSupportDir() + "\\userColors.xml";
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
}

void removeUserFiles()
{
    const QFileInfo user(userFile());
    const QStringList names = user.dir().entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString &name : names) {
        if (name.startsWith(user.fileName()))
            user.dir().remove(name);
    }
    QDir().rmdir(TrelColorLibrary::applicationSupportDir());
}

/// A library that has loaded nothing, of a user without a file.
TrelColorLibrary &freshLibrary()
{
    TrelColorLibrary::cleanup();
    removeUserFiles();
    s_debugLines.clear();
    return library();
}

/// The library of the next run of the same program.
TrelColorLibrary &nextRun()
{
    TrelColorLibrary::cleanup();
    s_debugLines.clear();
    return library();
}

/// What the user's file and preset files look like, put together without the library.
QByteArray color(const QByteArray &name, const QByteArray &uid, const QByteArray &value = RED,
                 const QByteArray &preset = "", const QByteArray &vendor = "")
{
    return "  <Color name=\"" + name + "\" uid=\"" + uid + "\" value=\"" + value + "\" originatingPreset=\"" + preset
           + "\" colorId=\"" + vendor + "\"/>\n";
}

QByteArray list(const QByteArray &name, const QByteArray &colors, const QByteArray &isUser = "1")
{
    const QByteArray tag = " <ColorLibrary name=\"" + name + "\" isUserLibrary=\"" + isUser + "\"";
    return colors.isEmpty() ? tag + "/>\n" : tag + ">\n" + colors + " </ColorLibrary>\n";
}

QByteArray document(const QByteArray &lists)
{
    return "<ColorLibraryList>\n" + lists + "</ColorLibraryList>\n";
}

QString valueAt(const QModelIndex &index)
{
    return static_cast<const TrelColor *>(index.data(Item::ColorRole).value<void *>())->aName();
}

/// "name|uid|value|preset|vendor" of each colour.
QStringList colorsOf(const QString &listId)
{
    QStringList result;
    const QModelIndex parent = library().getIndexOfListId(listId);
    for (int row = 0; row < library().rowCount(parent); ++row) {
        const QModelIndex index = library().index(row, 0, parent);
        result.append(QStringList{index.data(Qt::EditRole).toString(), index.data(Item::UidRole).toString(),
                                  valueAt(index), index.data(Item::OriginatingPresetRole).toString(),
                                  index.data(Item::VendorIdRole).toString()}
                          .join('|'));
    }
    return result;
}

QStringList namesOf(const QString &listId)
{
    QStringList names = colorsOf(listId);
    for (QString &name : names)
        name = name.section('|', 0, 0);
    return names;
}

/// The lists but for the two fixed ones, "*" before those of the user.
QStringList listNames()
{
    QStringList result;
    for (int row = 2; row < library().rowCount(library().rootIndex()); ++row) {
        const QModelIndex index = library().index(row, 0, library().rootIndex());
        result.append((library().isUserListIndex(index) ? "*" : "") + index.data(Qt::EditRole).toString());
    }
    return result;
}

void addColor(const QString &listId, const QString &name, const QString &uid, const QString &value = RED)
{
    library().createColorWithName(TrelColor(value), name, uid, listId, QString());
}

QDomDocument parsed(const QByteArray &bytes)
{
    QDomDocument result;
    if (!result.setContent(bytes, true))
        qFatal("not well-formed: %s", bytes.constData());
    return result;
}

QModelIndex projectIndex()
{
    return library().getIndexOfListId("Project Swatches");
}

QString loadProject(const QByteArray &bytes, double version = 1)
{
    QDomDocument project = parsed(bytes);
    QString error;
    if (!library().loadDocument(project, error, version, KESTRA_APPLICATION_ID))
        return "returned false: " + error;
    return error;
}

QByteArray savedProject()
{
    QDomDocument project;
    bool ok = false;
    project.appendChild(project.createElement("Project"));
    project.documentElement().appendChild(library().createElement(project, ok, KESTRA_APPLICATION_ID));
    return ok ? KestraProjectHelper::toByteArray(project) : QByteArray("not ok");
}

/// \a count colours with uids {1}, {2}, … as the colours of a list.
QByteArray numberedColors(int count)
{
    QByteArray result;
    for (int i = 1; i <= count; ++i)
        result += color("c" + QByteArray::number(i), "{" + QByteArray::number(i) + "}");
    return result;
}

QStringList numberedUids(int count)
{
    QStringList result;
    for (int i = 1; i <= count; ++i)
        result.append(QString("{%1}").arg(i));
    return result;
}

/// "what first-last rows" of every announcement about the project list, with the rows that it has then.
class Announcements
{
public:
    Announcements()
    {
        using Model = QAbstractItemModel;
        note(&Model::rowsAboutToBeRemoved, "removing");
        note(&Model::rowsRemoved, "removed");
        note(&Model::rowsAboutToBeInserted, "inserting");
        note(&Model::rowsInserted, "inserted");
        QObject::connect(&library(), &Model::modelReset, &m_context, [this] { lines.append("reset"); });
        QObject::connect(&library(), &Model::layoutChanged, &m_context, [this] { lines.append("layout"); });
    }

    QStringList lines;

private:
    template <typename Signal>
    void note(Signal signal, const QString &what)
    {
        QObject::connect(&library(), signal, &m_context, [=](const QModelIndex &parent, int first, int last) {
            const QString where = parent == projectIndex() ? QString() : " elsewhere";
            lines.append(
                QString("%1 %2-%3 of %4%5").arg(what).arg(first).arg(last).arg(library().rowCount(parent)).arg(where));
        });
    }

    QObject m_context;
};

void printWarnings(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtDebugMsg)
        std::printf("%s\n", qPrintable(text));
}

/// Runs \a session under an application, in the folder for user data that the parent chose.
void runSession(void (*session)())
{
    qputenv("XDG_DATA_HOME", qgetenv(HOME_VARIABLE));
    int argc = 1;
    char name[] = "session";
    char *argv[] = {name, nullptr};
    const QGuiApplication application(argc, argv);
    qInstallMessageHandler(printWarnings);
    session();
}

/// Many attributes, so that an order by hash would differ from process to process.
void printSavedFile()
{
    library().loadUserColors(QString());
    library().createColorList("A", true);
    for (int i = 0; i < 20; ++i)
        addColor("A", QString::number(i), QString("{%1}").arg(i));
    std::fputs(bytesOf(userFile()).constData(), stdout);
}

void printPresets()
{
    library().loadPresetFiles();
    const QStringList lists = listNames();
    for (const QString &name : lists) {
        std::printf("%s\n", qPrintable(name));
        const QStringList colors = colorsOf(QString(name).remove('*'));
        for (const QString &line : colors)
            std::printf(" %s\n", qPrintable(line));
    }
    std::printf("%s", QFile::exists(userFile()) ? "user file\n" : "");
}

const ChildCases childCases{
    {"save", [] { runSession(printSavedFile); }},
    {"presets", [] { runSession(printPresets); }},
};

} // namespace

void tst_TrelColorLibraryFiles::initTestCase()
{
    s_next = qInstallMessageHandler(keepDebugLines);
}

void tst_TrelColorLibraryFiles::cleanupTestCase()
{
    TrelColorLibrary::cleanup();
    qInstallMessageHandler(s_next);
}

void tst_TrelColorLibraryFiles::odd69_userFileHasBackslashes()
{
    freshLibrary();
    const QFileInfo dataHome(qEnvironmentVariable("XDG_DATA_HOME"));
    QCOMPARE(TrelColorLibrary::applicationSupportDir(), dataHome.filePath() + "\\Orvane");
    QVERIFY(dataHome.isDir());

    library().loadUserColors(QString());
    library().createColorList("A", true);
    QVERIFY(dataHome.dir().entryList().contains("XDG_DATA_HOME\\Orvane\\userColors.xml"));
    QVERIFY(QFileInfo(dataHome.dir(), "XDG_DATA_HOME\\Orvane").isDir());
}

void tst_TrelColorLibraryFiles::folderIsLookedUpOnce()
{
    const QString folder = TrelColorLibrary::applicationSupportDir();
    const QByteArray dataHome = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", dataHome + "2");
    const QString again = TrelColorLibrary::applicationSupportDir();
    qputenv("XDG_DATA_HOME", dataHome);
    QCOMPARE(again, folder);
}

void tst_TrelColorLibraryFiles::folderIsCreatedWithItsParents()
{
    const QTemporaryDir folder;
    qputenv(HOME_VARIABLE, folder.filePath("a/b/c").toUtf8());
    const ChildResult result = runChild("save");
    QCOMPARE(result.code, 0);
    QVERIFY(QFileInfo(folder.filePath("a/b/c\\Orvane")).isDir());
    QCOMPARE(bytesOf(folder.filePath("a/b/c\\Orvane\\userColors.xml")), result.out);
}

void tst_TrelColorLibraryFiles::userDocument()
{
    freshLibrary().loadUserColors(QString());
    library().createColorList("B & \"C\"", true);
    addColor("B & \"C\"", "Rot <1>", "{r}", RED);
    library().createColor(TrelColor(WHITE), "{w}", "B & \"C\"", "Whites/D65", "v 1");
    library().createColorList("A", true);
    library().createColorList(QString::fromUtf8("Ü"), true);
    addColor(QString::fromUtf8("Ü"), QString::fromUtf8("Grün 🟢"), "{g}", GREEN);
    library().createColor(TrelColor(LEVELS), "{n}", QString::fromUtf8("Ü"), QString(), QString());

    const QByteArray special = "B &amp; &quot;C&quot;";
    const QByteArray expected =
        document(list(special, color("Rot &lt;1>", "{r}") + color("Color", "{w}", WHITE, "Whites/D65", "v 1"))
                 + list("A", "") + list("Ü", color("Grün 🟢", "{g}", GREEN) + color("Color", "{n}", LEVELS)));
    QCOMPARE(bytesOf(userFile()), expected);
}

void tst_TrelColorLibraryFiles::userDocumentIsWrittenToTheDebugOutput()
{
    freshLibrary().loadUserColors(QString());
    library().createColorList("A", true);
    addColor("A", QString::fromUtf8("Grün"), "{1}");
    const QStringList written = takeWritten();
    QCOMPARE(written.size(), 2);
    QCOMPARE(written.last().trimmed().toUtf8(), bytesOf(userFile()).trimmed());
}

void tst_TrelColorLibraryFiles::userDocumentIsTheSameInEveryProcess()
{
    QByteArray colors;
    for (int i = 0; i < 20; ++i)
        colors += color(QByteArray::number(i), "{" + QByteArray::number(i) + "}");
    for (int run = 0; run < 3; ++run) {
        const QTemporaryDir folder;
        qputenv(HOME_VARIABLE, folder.filePath("home").toUtf8());
        QCOMPARE(runChild("save").out, document(list("A", colors)));
    }
}

void tst_TrelColorLibraryFiles::onlyUserListsAreSaved()
{
    freshLibrary().loadUserColors(QString());
    library().createColorList("Preset", false);
    library().createNewLibraryIfNecessary("Other", false);
    library().createNewLibraryIfNecessary("Hidden", true);
    for (const char *listId : {"Preset", "Other", "Hidden", "Project Swatches"})
        addColor(listId, "x", QString("{%1}").arg(listId));
    library().get(RED);
    QVERIFY(!QFile::exists(userFile()));

    library().createColorList("Mine", true);
    addColor("Mine", "x", "{m}");
    QCOMPARE(bytesOf(userFile()), document(list("Mine", color("x", "{m}"))));
    library().setData(library().getIndexOfListId("Other"), true, Item::CanBeModifiedRole);
    library().setData(library().getIndexOfListId("Project Swatches"), true, Item::CanBeModifiedRole);
    library().saveUserColors();
    QCOMPARE(bytesOf(userFile()), document(list("Other", color("x", "{Other}")) + list("Mine", color("x", "{m}"))));
}

void tst_TrelColorLibraryFiles::saveLoadSave_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("no list") << QByteArray("<ColorLibraryList/>\n");
    QTest::newRow("empty list") << document(list("A", ""));
    QTest::newRow("one colour") << document(list("A", color("Red", "{1}")));
    QTest::newRow("lists and colours in order") << document(
        list("Z", color("b", "{2}", WHITE) + color("a", "{1}", LEVELS)) + list("A", color("x", "{3}", GREEN)));
    QTest::newRow("empty list between") << document(list("A", color("a", "{1}")) + list("B", "")
                                                    + list("C", color("c", "{2}")));
    QTest::newRow("vendor") << document(list("A", color("a", "{1}", RED, "", "R 80")));
    QTest::newRow("uid is any text") << document(list("A", color("a", "no braces") + color("b", "}")));
    QTest::newRow("twenty lists") << [] {
        QByteArray lists;
        for (int i = 0; i < 20; ++i)
            lists += list("L" + QByteArray::number(i), color("c", "{" + QByteArray::number(i) + "}"));
        return document(lists);
    }();
}

void tst_TrelColorLibraryFiles::saveLoadSave()
{
    QFETCH(QByteArray, bytes);

    freshLibrary();
    writeFile(userFile(), bytes);
    for (int run = 0; run < 2; ++run) {
        nextRun().loadUserColors(QString());
        library().saveUserColors();
        QCOMPARE(bytesOf(userFile()), bytes);
    }
}

void tst_TrelColorLibraryFiles::namesSurvive_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *what, const QString &name) { QTest::newRow(what) << name << name; };
    row("markup", "<a> & 'b' \"c\" ]]>");
    row("placeholder", "%1 %2");
    row("blanks around", "  a  b ");
    row("tab and line ends", "a\tb\nc\rd");
    row("non-breaking space", QString(QChar(0xa0)) + "a");
    row("beyond the basic plane", QString::fromUtf8("🎨"));
    row("combining", QString::fromUtf8("e\u0301"));
    row("last character that XML can carry", QString("a") + QChar(0xfffd));
    QTest::newRow("control characters") << QString("a\x01") + QChar(0x1f) + QChar(0) + "b"
                                        << "ab";
    QTest::newRow("U+FFFE and U+FFFF") << QString("a") + QChar(0xfffe) + QChar(0xffff) + "b"
                                       << "ab";
    QTest::newRow("high surrogate alone") << QString("a") + QChar(0xd83c) + "b"
                                          << "ab";
    QTest::newRow("low surrogate alone") << QString("a") + QChar(0xdfa8) + "b"
                                         << "ab";
}

void tst_TrelColorLibraryFiles::namesSurvive()
{
    QFETCH(QString, name);
    QFETCH(QString, expected);

    freshLibrary().loadUserColors(QString());
    library().createColorList(name, true);
    addColor(name, name, "{1}");
    nextRun().loadUserColors(QString());
    QCOMPARE(listNames(), QStringList("*" + expected));
    QCOMPARE(colorsOf(expected), QStringList(expected + "|{1}|" + RED + "||"));
}

void tst_TrelColorLibraryFiles::loadedLists_data()
{
    QTest::addColumn<QByteArray>("lists");
    QTest::addColumn<QStringList>("expected");

    const QByteArray red = color("r", "{1}");
    QTest::newRow("document order") << list("Z", red) + list("A", red) << QStringList{"*Z", "*A"};
    QTest::newRow("same name") << list("A", red) + list("A", red) + list("A", red) << QStringList{"*A", "*A 2", "*A 3"};
    QTest::newRow("name of a fixed list") << list("Project Swatches", red) << QStringList{"*Project Swatches 2"};
    QTest::newRow("not the user's") << list("A", red, "0") << QStringList{"A"};
    QTest::newRow("any number but 0") << list("A", red, "-7") << QStringList{"*A"};
    QTest::newRow("no number") << list("A", red, "true") << QStringList{"A"};
    QTest::newRow("no attribute") << list("A", red).replace(" isUserLibrary=\"1\"", "") << QStringList{"A"};
    QTest::newRow("list without a name") << list("A", red).replace("name=\"A\" ", "") << QStringList{"*"};
    QTest::newRow("deeper elements") << "<x><y>" + list("A", red) + "</y></x>" << QStringList{"*A"};
    QTest::newRow("other elements") << "<List name='B'/>" + list("A", "<Light/>" + red) + "<!-- C -->"
                                    << QStringList{"*A"};
    QTest::newRow("nothing") << QByteArray() << QStringList{};
}

void tst_TrelColorLibraryFiles::loadedLists()
{
    QFETCH(QByteArray, lists);
    QFETCH(QStringList, expected);

    freshLibrary();
    writeFile(userFile(), document(lists));
    library().loadUserColors(QString());
    QCOMPARE(listNames(), expected);
}

void tst_TrelColorLibraryFiles::loadedColors_data()
{
    QTest::addColumn<QByteArray>("colors");
    QTest::addColumn<QStringList>("expected");

    const QString red = QString("|") + RED;
    QTest::newRow("document order") << color("b", "{2}") + color("a", "{1}", WHITE)
                                    << QStringList{"b|{2}" + red + "||", QString("a|{1}|") + WHITE + "||"};
    QTest::newRow("origin is dropped, vendor kept")
        << color("a", "{1}", RED, "Whites/D65", "R 80") << QStringList{"a|{1}" + red + "||R 80"};
    QTest::newRow("same name") << color("a", "{1}") + color("a", "{2}") + color("a", "{3}")
                               << QStringList{"a|{1}" + red + "||", "a 2|{2}" + red + "||", "a 3|{3}" + red + "||"};
    QTest::newRow("provisional name counts") << color("Color", "{1}") << QStringList{"Color 2|{1}" + red + "||"};
    QTest::newRow("empty name") << color("", "{1}") << QStringList{"Color|{1}" + red + "||"};
    QTest::newRow("attribute order") << QByteArray("<Color colorId='v' value='red' uid='{1}' name='a'/>")
                                     << QStringList{"a|{1}" + red + "||v"};
    QTest::newRow("name missing") << QByteArray("<Color uid='{1}' value='#ff0000'/>")
                                  << QStringList{"empty attribute|{1}" + red + "||"};
}

void tst_TrelColorLibraryFiles::loadedColors()
{
    QFETCH(QByteArray, colors);
    QFETCH(QStringList, expected);

    freshLibrary();
    writeFile(userFile(), document(list("A", colors)));
    library().loadUserColors(QString());
    QCOMPARE(colorsOf("A"), expected);
}

void tst_TrelColorLibraryFiles::missingFileAddsNothing()
{
    freshLibrary().loadUserColors(QString());
    QCOMPARE(listNames(), QStringList());
    QVERIFY(!QFile::exists(userFile()));
    QVERIFY(s_debugLines.isEmpty());
}

void tst_TrelColorLibraryFiles::sameFileTwice()
{
    freshLibrary();
    const QTemporaryDir folder;
    writeFile(folder.filePath("f"), document(list("A", color("a", "{1}"))));
    library().loadUserColors(folder.filePath("f"));
    library().loadUserColors(folder.filePath("f"));
    QCOMPARE(listNames(), (QStringList{"*A", "*A 2"}));
}

void tst_TrelColorLibraryFiles::editsBeforeLoadingAreNotSaved()
{
    freshLibrary().createColorList("A", true);
    addColor("A", "a", "{1}");
    library().rename("{1}", "b", false);
    library().saveUserColors();
    QVERIFY(!QFile::exists(userFile()));
    QVERIFY(takeWritten().isEmpty());
}

void tst_TrelColorLibraryFiles::editsAfterLoadingAreSavedOnce()
{
    freshLibrary().loadUserColors(QString());
    library().createColorList("A", true);
    addColor("A", "a", "{1}");
    QCOMPARE(takeWritten().size(), 2);
    library().rename("{1}", "b", false);
    QCOMPARE(takeWritten().size(), 1);
    QCOMPARE(bytesOf(userFile()), document(list("A", color("b", "{1}"))));
    library().removeRows(0, 1, library().getIndexOfListId("A"));
    QCOMPARE(takeWritten().size(), 1);
    QCOMPARE(bytesOf(userFile()), document(list("A", "")));
}

void tst_TrelColorLibraryFiles::batchAfterLoadingIsSavedOnce()
{
    freshLibrary().loadUserColors(QString());
    library().setEditingMultipleColors(true);
    library().createColorList("A", true);
    addColor("A", "a", "{1}");
    addColor("A", "b", "{2}");
    QVERIFY(!QFile::exists(userFile()));
    library().setEditingMultipleColors(false);
    QCOMPARE(takeWritten().size(), 1);
    QCOMPARE(bytesOf(userFile()), document(list("A", color("a", "{1}") + color("b", "{2}"))));
}

void tst_TrelColorLibraryFiles::loadingUserColorsIsABatch()
{
    freshLibrary().loadUserColors(QString());
    library().setEditingMultipleColors(true);
    library().createColorList("A", true);

    const QTemporaryDir folder;
    writeFile(folder.filePath("other"), document(list("B", color("b", "{1}")) + list("C", color("c", "{2}"))));
    library().loadUserColors(folder.filePath("other"));
    const QStringList written = takeWritten();
    QCOMPARE(written.size(), 2);
    QVERIFY(!written.first().contains("{1}"));
    QVERIFY(written.last().contains("{1}") && written.last().contains("{2}"));

    addColor("A", "a", "{3}");
    QCOMPARE(takeWritten().size(), 1);
}

void tst_TrelColorLibraryFiles::loadingSavesOnce()
{
    freshLibrary();
    const QByteArray lists = list("A", color("a", "{1}") + color("b", "{2}")) + list("B", color("b", "{3}"));
    writeFile(userFile(), "<?xml version='1.0' encoding='UTF-8'?>" + document(lists));
    library().loadUserColors(QString());
    QCOMPARE(takeWritten().size(), 1);
    QCOMPARE(bytesOf(userFile()), document(lists));
}

void tst_TrelColorLibraryFiles::otherFileNeverEnablesSaving_data()
{
    QTest::addColumn<QString>("path");

    QTest::newRow("another file") << "other";
    QTest::newRow("missing file") << "missing";
    QTest::newRow("default file by its path") << userFile();
}

void tst_TrelColorLibraryFiles::otherFileNeverEnablesSaving()
{
    QFETCH(QString, path);

    freshLibrary();
    const QTemporaryDir folder;
    const QByteArray bytes = document(list("A", color("a", "{1}")));
    writeFile(folder.filePath("other"), bytes);
    writeFile(userFile(), bytes);
    library().loadUserColors(QDir(folder.path()).filePath(path));
    QCOMPARE(listNames(), path == "missing" ? QStringList() : QStringList("*A"));

    library().createColorList("New", true);
    addColor("New", "n", "{2}");
    library().setEditingMultipleColors(true);
    library().setEditingMultipleColors(false);
    library().saveUserColors();
    QCOMPARE(bytesOf(userFile()), bytes);
    QCOMPARE(bytesOf(folder.filePath("other")), bytes);
    QVERIFY(takeWritten().isEmpty());
}

void tst_TrelColorLibraryFiles::otherFileJoinsTheUsersOne()
{
    freshLibrary();
    const QTemporaryDir folder;
    const QByteArray mine = list("A", color("a", "{1}"));
    const QByteArray other = list("B", color("b", "{2}"));
    writeFile(folder.filePath("other"), document(other));
    writeFile(userFile(), document(mine));
    library().loadUserColors(QString());
    library().loadUserColors(folder.filePath("other"));
    QCOMPARE(bytesOf(userFile()), document(mine + other));
    QCOMPARE(bytesOf(folder.filePath("other")), document(other));
}

void tst_TrelColorLibraryFiles::waitCursor_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("isSeen");

    QTest::newRow("good file") << document(list("A", color("a", "{1}"))) << true;
    QTest::newRow("partly failing file") << document(list("A", color("a", "{1}")) + list("B", "<x/>")) << true;
    QTest::newRow("unparsable file") << QByteArray("<ColorLibraryList>") << false;
    QTest::newRow("missing file") << QByteArray() << false;
}

void tst_TrelColorLibraryFiles::waitCursor()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, isSeen);

    freshLibrary();
    if (!bytes.isEmpty())
        writeFile(userFile(), bytes);
    QList<Qt::CursorShape> shapes;
    QObject context;
    QObject::connect(&library(), &QAbstractItemModel::rowsInserted, &context, [&shapes] {
        const QCursor *cursor = QGuiApplication::overrideCursor();
        shapes.append(cursor ? cursor->shape() : Qt::ArrowCursor);
    });
    library().loadUserColors(QString());
    QCOMPARE(!shapes.isEmpty(), isSeen);
    QCOMPARE(shapes.count(Qt::WaitCursor), int(shapes.size()));
    QVERIFY(!QGuiApplication::overrideCursor());
}

void tst_TrelColorLibraryFiles::waitCursorLeavesTheHostsCursor()
{
    freshLibrary();
    QGuiApplication::setOverrideCursor(Qt::CrossCursor);
    library().loadUserColors(QString());
    const QCursor *cursor = QGuiApplication::overrideCursor();
    const Qt::CursorShape shape = cursor ? cursor->shape() : Qt::ArrowCursor;
    QGuiApplication::restoreOverrideCursor();
    QCOMPARE(shape, Qt::CrossCursor);
    QVERIFY(!QGuiApplication::overrideCursor());
}

using Files = QMap<QString, QByteArray>;
Q_DECLARE_METATYPE(Files)

void tst_TrelColorLibraryFiles::presets_data()
{
    QTest::addColumn<Files>("files");
    QTest::addColumn<QByteArray>("expected");

    const auto shown = [](const QByteArray &name, const QByteArray &uid) {
        return " " + name + "|" + uid + "|" + RED + "||\n";
    };
    const auto one = [](const QByteArray &name, const QByteArray &uid) {
        return document(list(name, color("c", uid), "0"));
    };
    QTest::newRow("no folder") << Files{} << QByteArray();
    QTest::newRow("no file") << Files{{"readme.txt", one("A", "{1}")}} << QByteArray();
    QTest::newRow("one file") << Files{{"a.trelcolors",
                                        document(list("A", color("x", "{1}") + color("y", "{2}"), "0"))}}
                              << "A\n" + shown("x", "{1}") + shown("y", "{2}");
    QTest::newRow("name order") << Files{{"b.trelcolors", one("First", "{2}")},
                                         {"a.trelcolors", one("Second", "{1}")},
                                         {"d.trelcolors", one("Third", "{4}")},
                                         {"c.trelcolors", one("Fourth", "{3}")}}
                                << "Second\n" + shown("c", "{1}") + "First\n" + shown("c", "{2}") + "Fourth\n"
                                       + shown("c", "{3}") + "Third\n" + shown("c", "{4}");
    QTest::newRow("several lists of a file")
        << Files{{"a.trelcolors", document(list("B", color("c", "{1}"), "0") + list("A", color("c", "{2}"), "0"))}}
        << "B\n" + shown("c", "{1}") + "A\n" + shown("c", "{2}");
    QTest::newRow("same list in two files")
        << Files{{"a.trelcolors", one("A", "{1}")}, {"b.trelcolors", one("A", "{2}")}}
        << "A\n" + shown("c", "{1}") + "A 2\n" + shown("c", "{2}");
    QTest::newRow("other names") << Files{{"a.trelcolors", one("A", "{1}")},
                                          {"b.trelcolors.bak", one("B", "{2}")},
                                          {"c.xml", one("C", "{3}")}}
                                 << "A\n" + shown("c", "{1}");
    QTest::newRow("broken file between") << Files{{"a.trelcolors", one("A", "{1}")},
                                                  {"b.trelcolors", "<ColorLibraryList>"},
                                                  {"c.trelcolors", one("C", "{3}")}}
                                         << "A\n" + shown("c", "{1}") + "C\n" + shown("c", "{3}");
    QTest::newRow("entities in a file") << Files{{"a.trelcolors", "<!DOCTYPE x [<!ENTITY e 'A'>]>" + one("&e;", "{1}")},
                                                 {"c.trelcolors", one("C", "{3}")}}
                                        << "C\n" + shown("c", "{3}");
    QTest::newRow("reader fails in a file")
        << Files{{"a.trelcolors", document(list("A", color("c", "{1}"), "0") + list("B", "", "0"))},
                 {"c.trelcolors", one("C", "{3}")}}
        << "A\n" + shown("c", "{1}") + "B\nC\n" + shown("c", "{3}");
}

void tst_TrelColorLibraryFiles::presets()
{
    QFETCH(Files, files);
    QFETCH(QByteArray, expected);

    const QTemporaryDir folder;
    qputenv(HOME_VARIABLE, folder.filePath("home").toUtf8());
    QVERIFY(QDir(folder.path()).mkdir("bin"));
    const QString program = folder.filePath("bin/presets");
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
    if (!files.isEmpty())
        QVERIFY(QDir(folder.path()).mkpath("Resources/Presets"));
    for (auto file = files.constBegin(); file != files.constEnd(); ++file)
        writeFile(folder.filePath("Resources/Presets/" + file.key()), file.value());

    const ChildResult result = runChild("presets", program);
    QCOMPARE(result.code, 0);
    QCOMPARE(result.out, expected);
    if (!files.isEmpty())
        QCOMPARE(QDir(folder.filePath("Resources/Presets")).entryList(QDir::Files), files.keys());
}

void tst_TrelColorLibraryFiles::projectRoundTrip()
{
    freshLibrary();
    addColor("Project Swatches", "Rot", "{r}");
    library().createColor(TrelColor(WHITE), "{w}", "Project Swatches", "Whites/D65", "R 80");
    addColor("Project Swatches", "Levels", "{n}", LEVELS);
    addColor("Project Swatches", QString::fromUtf8("Grün"), "{g}", GREEN);
    const QStringList before = colorsOf("Project Swatches");
    const QByteArray saved = savedProject();

    for (int run = 0; run < 2; ++run) {
        nextRun();
        QCOMPARE(loadProject(saved), QString());
        QCOMPARE(colorsOf("Project Swatches"), before);
        QCOMPARE(savedProject(), saved);
    }
}

void tst_TrelColorLibraryFiles::projectElement()
{
    freshLibrary();
    addColor("Project Swatches", "Rot", "{r}");
    library().createColor(TrelColor(WHITE), "{w}", "Project Swatches", "Whites/D65", "R 80");
    QDomDocument project;
    bool ok = false;
    const QDomElement element = library().createElement(project, ok, KESTRA_APPLICATION_ID);
    QVERIFY(ok);
    QCOMPARE(element.tagName(), QString("ColorLibrary"));
    QCOMPARE(element.attribute("name"), QString("Project Swatches"));
    QVERIFY(element.parentNode().isNull());

    project.appendChild(element);
    const QByteArray bytes = KestraProjectHelper::toByteArray(project);
    const QByteArray colors = color("Rot", "{r}") + color("Color", "{w}", WHITE, "Whites/D65", "R 80");
    QCOMPARE(bytes.mid(bytes.indexOf('\n') + 1), QByteArray(colors).replace("  <", " <") + "</ColorLibrary>\n");
}

void tst_TrelColorLibraryFiles::projectHoldsNoOtherColors()
{
    freshLibrary().createColorList("Mine", true);
    addColor("Mine", "m", "{m}");
    library().get(RED);
    QDomDocument project;
    bool ok = false;
    QVERIFY(!library().createElement(project, ok, KESTRA_APPLICATION_ID).hasChildNodes());
    QVERIFY(ok);
}

void tst_TrelColorLibraryFiles::projectSectionIsReplaced()
{
    freshLibrary().createColorList("Mine", true);
    addColor("Mine", "m", "{m}");
    addColor("Project Swatches", "old", "{o}");
    QCOMPARE(loadProject("<P>" + list("Any", color("a", "{1}")) + list("Other", color("b", "{2}"), "0") + "</P>"),
             QString());
    QCOMPARE(colorsOf("Project Swatches"),
             (QStringList{QString("a|{1}|") + RED + "||", QString("b|{2}|") + RED + "||"}));
    QVERIFY(!library().containsUid("{o}"));
    QCOMPARE(listNames(), QStringList("*Mine"));
    QCOMPARE(namesOf("Mine"), QStringList("m"));

    QCOMPARE(loadProject("<P/>"), QString());
    QCOMPARE(library().rowCount(projectIndex()), 0);
}

void tst_TrelColorLibraryFiles::projectKeepsOriginAndVendor()
{
    freshLibrary();
    loadProject("<P>" + list("Project Swatches", color("a", "{1}", RED, "Whites/D65", "R 80")) + "</P>");
    QCOMPARE(colorsOf("Project Swatches"), QStringList(QString("a|{1}|") + RED + "|Whites/D65|R 80"));
    QCOMPARE(library().getIndexOfOriginatingPreset("Whites/D65").data(Item::UidRole).toString(), QString("{1}"));
}

void tst_TrelColorLibraryFiles::projectReaderComplains()
{
    freshLibrary();
    const QByteArray lists = list("A", color("a", "{1}")) + list("B", "") + list("C", color("c", "{2}"));
    QCOMPARE(loadProject("<P>" + lists + "</P>"), QString("Found NULL TrelColorLibrary element"));
    QCOMPARE(namesOf("Project Swatches"), QStringList("a"));
}

void tst_TrelColorLibraryFiles::projectOfAnotherApplication()
{
    freshLibrary();
    addColor("Project Swatches", "old", "{o}");
    QDomDocument project = parsed("<P>" + list("A", color("a", "{1}")) + "</P>");
    for (const char *application : {"", "kestra", "Kestra 2"}) {
        const Announcements announcements;
        QString error = "untouched";
        QVERIFY(library().loadDocument(project, error, 1, application));
        QCOMPARE(error, QString("untouched"));
        QCOMPARE(announcements.lines, QStringList());
        QCOMPARE(namesOf("Project Swatches"), QStringList("old"));

        bool ok = true;
        QVERIFY(library().createElement(project, ok, application).isNull());
        QVERIFY(!ok);
    }
}

void tst_TrelColorLibraryFiles::projectLoadIsAnnounced_data()
{
    QTest::addColumn<int>("before");
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<QStringList>("expected");

    const QByteArray three = list("A", numberedColors(3));
    QTest::newRow("into an empty list") << 0 << three << QStringList{"inserting 0-2 of 0", "inserted 0-2 of 3"};
    QTest::newRow("instead of others") << 2 << three
                                       << QStringList{"removing 0-1 of 2", "removed 0-1 of 0", "inserting 0-2 of 0",
                                                      "inserted 0-2 of 3"};
    QTest::newRow("nothing instead") << 1 << QByteArray() << QStringList{"removing 0-0 of 1", "removed 0-0 of 0"};
    QTest::newRow("nothing at all") << 0 << QByteArray() << QStringList{};
    QTest::newRow("old presets among them") << 0 << list("A", numberedColors(2)).replace("name=\"A\"", "")
                                            << QStringList{"inserting 0-3 of 0", "inserted 0-3 of 4"};
    QTest::newRow("reader fails") << 1 << three + list("B", "") + list("C", color("c", "{9}"))
                                  << QStringList{"removing 0-0 of 1", "removed 0-0 of 0", "inserting 0-2 of 0",
                                                 "inserted 0-2 of 3"};
}

void tst_TrelColorLibraryFiles::projectLoadIsAnnounced()
{
    QFETCH(int, before);
    QFETCH(QByteArray, section);
    QFETCH(QStringList, expected);

    freshLibrary();
    for (int i = 0; i < before; ++i)
        addColor("Project Swatches", QString::number(i), QString::number(i));
    const Announcements announcements;
    loadProject("<P>" + section + "</P>", 0.9);
    QCOMPARE(announcements.lines, expected);
}

void tst_TrelColorLibraryFiles::projectListSurvivesLoading()
{
    freshLibrary().loadUserColors(QString());
    addColor("Project Swatches", "old", "{o}");
    const QPersistentModelIndex root(library().rootIndex());
    const QPersistentModelIndex project(projectIndex());
    const QPersistentModelIndex colour(library().getIndexOfUid("{o}"));
    loadProject("<P>" + list("A", numberedColors(2)) + "</P>");
    QVERIFY(root == library().rootIndex());
    QVERIFY(project == projectIndex());
    QVERIFY(!colour.isValid());
    QCOMPARE(library().getIndexOfUid("{2}").row(), 1);
    QVERIFY(takeWritten().isEmpty());
}

void tst_TrelColorLibraryFiles::oldPresets_data()
{
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<double>("version");
    QTest::addColumn<QStringList>("expected");

    const auto unnamed = [](const QByteArray &colors) { return list("", colors).replace("name=\"\" ", ""); };
    QTest::newRow("list without a name") << unnamed(numberedColors(3)) << 0.95 << numberedUids(3);
    QTest::newRow("empty name") << list("", numberedColors(3)) << 0.0 << numberedUids(3);
    QTest::newRow("twelve") << unnamed(numberedColors(12)) << 0.95 << numberedUids(12);
    QTest::newRow("only the first twelve") << unnamed(numberedColors(13)) << 0.95 << numberedUids(12);
    QTest::newRow("twelve of each list") << unnamed(numberedColors(13)) + unnamed(color("x", "{x}")) << 0.95
                                         << numberedUids(12) + QStringList("{x}");
    QTest::newRow("version 0.96") << unnamed(numberedColors(3)) << 0.96 << QStringList();
    QTest::newRow("list with a name") << list("A", numberedColors(3)) << 0.95 << QStringList();
    QTest::newRow("reader fails") << unnamed(numberedColors(3)) + list("B", "") << 0.95 << QStringList();
}

void tst_TrelColorLibraryFiles::oldPresets()
{
    QFETCH(QByteArray, section);
    QFETCH(double, version);
    QFETCH(QStringList, expected);

    freshLibrary();
    loadProject("<P>" + section + "</P>", version);
    QCOMPARE(library().oldPresets(), expected);
    const int colors = library().rowCount(projectIndex()) - int(expected.size());
    for (int i = 0; i < int(expected.size()); ++i) {
        const QModelIndex index = library().getIndexOfOldPreset(expected.at(i));
        QCOMPARE(index.row(), colors + i);
        QCOMPARE(index.data(Item::ItemTypeRole).toInt(), int(Item::OLD_PRESET_ITEM));
        QCOMPARE(index.data(Item::CanBeModifiedRole).toBool(), false);
    }
}

void tst_TrelColorLibraryFiles::clearedOldPresets()
{
    freshLibrary();
    QVERIFY(library().oldPresets().isEmpty());
    library().clearOldPresets();
    loadProject("<P>" + list("", numberedColors(3)) + "</P>", 0.9);
    const QByteArray saved = savedProject();
    QVERIFY(!library().oldPresets().isEmpty());

    const QSignalSpy removed(&library(), &QAbstractItemModel::rowsRemoved);
    library().clearOldPresets();
    QVERIFY(library().oldPresets().isEmpty());
    QVERIFY(!library().getIndexOfOldPreset("{1}").isValid());
    QCOMPARE(library().getColorUids("Project Swatches"), numberedUids(3));
    QVERIFY(!removed.isEmpty());
    QCOMPARE(savedProject(), saved);
}

void tst_TrelColorLibraryFiles::colorDocument()
{
    freshLibrary().createColorList("A", true);
    addColor("A", "a", "{1}");
    library().createColor(TrelColor(WHITE), "{2}", "A", "Whites/D65", "R 80");
    addColor("B", "b", "{3}", LEVELS);
    const QModelIndexList indexes{library().getIndexOfUid("{3}"), QModelIndex(), library().getIndexOfUid("{2}")};
    const QDomDocument exported = library().createColorDoc(indexes, "Mine");

    const QDomNodeList lists = exported.elementsByTagName("ColorLibrary");
    QCOMPARE(lists.size(), 1);
    QCOMPARE(lists.at(0).toElement().attribute("name"), QString("Mine"));
    const QByteArray bytes = KestraProjectHelper::toByteArray(exported);
    const int first = int(bytes.indexOf("  <Color "));
    QCOMPARE(bytes.mid(first), color("b", "{3}", LEVELS) + color("Color", "{2}", WHITE, "Whites/D65", "R 80")
                                   + " </ColorLibrary>\n</ColorLibraryList>\n");
}

void tst_TrelColorLibraryFiles::colorDocumentOfNothing()
{
    freshLibrary();
    const QDomDocument exported = library().createColorDoc({QModelIndex()}, "Mine");
    QCOMPARE(exported.elementsByTagName("ColorLibrary").size(), 1);
    QCOMPARE(exported.elementsByTagName("Color").size(), 0);
}

void tst_TrelColorLibraryFiles::colorDocumentLoads()
{
    freshLibrary().createColorList("A", true);
    addColor("A", "a", "{1}");
    addColor("A", "b", "{2}", WHITE);
    const QStringList before = colorsOf("A");
    const QModelIndexList indexes{library().getIndexOfUid("{1}"), library().getIndexOfUid("{2}")};
    const QTemporaryDir folder;
    writeFile(folder.filePath("x.trelcolors"),
              KestraProjectHelper::toByteArray(library().createColorDoc(indexes, "Mine")));
    nextRun().loadUserColors(folder.filePath("x.trelcolors"));
    QCOMPARE(colorsOf("Mine"), before);
}

TREL_TEST_MAIN_WITH(QGuiApplication, tst_TrelColorLibraryFiles, childCases)

#include "tst_TrelColorLibraryFiles.moc"
