#include "TestSupport.h"

#include <TrelColorLibrary.h>

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QGuiApplication>
#include <QLockFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>

#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

/// What becomes of the user's colours when the file is damaged, the disk full, the folder closed or another process
/// at work. Through the library alone, as hosts get there.
class tst_UserColorFile : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void refusedFileIsCopiedAside_data();
    void refusedFileIsCopiedAside();
    void refusedFileStaysUntilTheFirstSave();
    void truncatedAtEveryByte();
    void acceptedFileIsNotCopiedAside_data();
    void acceptedFileIsNotCopiedAside();
    void otherEncodings_data();
    void otherEncodings();
    void sizeLimit_data();
    void sizeLimit();
    void lossIsCopiedAside_data();
    void lossIsCopiedAside();
    void nameLostToAUidIsCopiedAside_data();
    void nameLostToAUidIsCopiedAside();
    void earlierCopiesStay();
    void copyGoesAroundAFolder();
    void oneCopyForARun();
    void damagedTwiceIsCopiedAside();
    void listThatIsNotSavedIsCopiedAside();
    void copiesDoNotPileUp_data();
    void copiesDoNotPileUp();
    void otherFilesAreNeverCopied();

    void otherThanAFile_data();
    void otherThanAFile();
    void fifo_data();
    void fifo();
    void linkToTheFile();
    void unreadableFile();
    void readOnlyFile();
    void unwritableFolder();

    void everySizeLimit_data();
    void everySizeLimit();
    void fullDisk();

    void replacedVersionIsKept_data();
    void replacedVersionIsKept();
    void newestTenConflictsAreKept();
    void ownVersionIsNoConflict();
    void twoProcesses();
    void killedProcess();
    void lockIsRespected();
    void lockOfADeadProcess();
};

namespace {

const char RED[] = "aRgb;1;0;#ffffffff00000000";

const char HOME_VARIABLE[] = "TREL_TEST_DATA_HOME";
const char ARGUMENT_VARIABLE[] = "TREL_TEST_ARGUMENT";

constexpr int EXIT_SKIPPED = 77;
constexpr int CHILD_TIMEOUT_MS = 120000;

/// A file may be this long.
constexpr qint64 LIMIT_BYTES = 64 * 1024 * 1024;

QtMessageHandler s_next = nullptr;

void dropDebugLines(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type != QtDebugMsg)
        s_next(type, context, text);
}

TrelColorLibrary &library()
{
    return *TrelColorLibrary::Instance();
}

QString userFile()
{
    return TrelColorLibrary::applicationSupportDir() + "\\userColors.xml";
}

/// Names beside the user's file that begin with its name, each without it; "" is the file itself.
QStringList suffixes(const QString &path = userFile())
{
    const QFileInfo user(path);
    QStringList result;
    const QStringList names = user.dir().entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
    for (const QString &name : names) {
        if (name.startsWith(user.fileName()))
            result.append(name.mid(user.fileName().size()));
    }
    return result;
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush())
        qFatal("cannot write %s", qPrintable(path));
}

/// Contents of the files "userColors.xml" + \a suffix + anything.
QList<QByteArray> copies(const QString &suffix, const QString &path = userFile())
{
    QList<QByteArray> result;
    const QStringList names = suffixes(path).filter(QRegularExpression('^' + QRegularExpression::escape(suffix)));
    for (const QString &name : names) {
        if (QFileInfo(path + name).isFile())
            result.append(bytesOf(path + name));
    }
    return result;
}

void removeUserFiles()
{
    const QStringList names = suffixes();
    for (const QString &name : names) {
        const QFileInfo info(userFile() + name);
        if (info.isDir() && !info.isSymLink())
            QDir(info.filePath()).removeRecursively();
        else
            QFile::remove(info.filePath());
    }
}

/// The library of the next run of the same program.
TrelColorLibrary &nextRun()
{
    TrelColorLibrary::cleanup();
    return library();
}

/// A library that has loaded nothing, of a user without a file.
TrelColorLibrary &freshLibrary()
{
    TrelColorLibrary::cleanup();
    removeUserFiles();
    return library();
}

QByteArray color(const QByteArray &name, const QByteArray &value = RED)
{
    return "  <Color name=\"" + name + "\" uid=\"{" + name + "}\" value=\"" + value
           + "\" originatingPreset=\"\" colorId=\"\"/>\n";
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

/// A document that every reader takes.
QByteArray goodDocument()
{
    return document(list("Good", color("g")));
}

QByteArray nested(int depth)
{
    QByteArray inner = list("Deep", color("d"));
    for (int i = 0; i < depth - 3; ++i)
        inner = "<x>" + inner + "</x>";
    return document(inner);
}

QByteArray utf16(const QString &text, bool isBigEndian)
{
    QByteArray bytes = isBigEndian ? "\xfe\xff" : "\xff\xfe";
    for (const QChar c : text) {
        const char high = char(c.unicode() >> 8);
        const char low = char(c.unicode() & 0xff);
        bytes += isBigEndian ? high : low;
        bytes += isBigEndian ? low : high;
    }
    return bytes;
}

/// "List: colour, colour" of every list but for the two fixed ones.
QStringList contents()
{
    QStringList result;
    for (int row = 2; row < library().rowCount(library().rootIndex()); ++row) {
        const QModelIndex listIndex = library().index(row, 0, library().rootIndex());
        QStringList names;
        for (int i = 0; i < library().rowCount(listIndex); ++i)
            names.append(library().index(i, 0, listIndex).data(Qt::EditRole).toString());
        result.append(listIndex.data(Qt::EditRole).toString() + ": " + names.join(", "));
    }
    return result;
}

/// What the user's file holds for the next run.
QStringList savedContents()
{
    nextRun().loadUserColors(QString());
    return contents();
}

void addColor(const QString &name, const QString &listId)
{
    if (!library().nameExists(listId))
        library().createColorList(listId, true);
    library().createColorWithName(TrelColor(RED), name, '{' + name + '}', listId, QString());
}

bool isWhole(const QByteArray &bytes)
{
    return bytes.endsWith("</ColorLibraryList>\n") && QDomDocument().setContent(bytes);
}

/// Colours of list \a listId in a document.
int colorCount(const QByteArray &bytes, const QString &listId)
{
    QDomDocument parsed;
    parsed.setContent(bytes);
    const QDomNodeList lists = parsed.elementsByTagName("ColorLibrary");
    for (int i = 0; i < lists.size(); ++i) {
        const QDomElement element = lists.at(i).toElement();
        if (element.attribute("name") == listId)
            return int(element.elementsByTagName("Color").size());
    }
    return 0;
}

/// Nothing but the file, copies and the lock stands there: no remains of a save.
bool isTidy(const QString &path = userFile())
{
    const QStringList names = suffixes(path);
    return std::all_of(names.begin(), names.end(), [](const QString &name) {
        return name.isEmpty() || name == ".lock" || name.startsWith(".bak") || name.startsWith(".conflict.");
    });
}

// Child cases run in the folder for user data that the parent chose, and check for themselves: the first failure ends
// the process with its text on standard error.

void require(bool condition, const char *what, int line)
{
    if (condition)
        return;
    std::fprintf(stderr, "line %d: %s\n", line, what);
    std::exit(1);
}

#define REQUIRE(condition) require(condition, #condition, __LINE__)

void runSession(void (*session)())
{
    qputenv("XDG_DATA_HOME", qgetenv(HOME_VARIABLE));
    int argc = 1;
    char name[] = "session";
    char *argv[] = {name, nullptr};
    const QGuiApplication application(argc, argv);
    s_next = qInstallMessageHandler(dropDebugLines);
    session();
    TrelColorLibrary::cleanup();
}

QString argument()
{
    return qEnvironmentVariable(ARGUMENT_VARIABLE);
}

/// The file system's word counts from here on, also for the superuser.
void dropPrivileges()
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct none[2] = {};
    REQUIRE(syscall(SYS_capset, &header, none) == 0);
}

void setMode(const QString &path, mode_t mode)
{
    REQUIRE(chmod(QFile::encodeName(path).constData(), mode) == 0);
}

void setSizeLimit(rlim_t bytes)
{
    rlimit limit{};
    REQUIRE(getrlimit(RLIMIT_FSIZE, &limit) == 0);
    limit.rlim_cur = std::min(bytes, limit.rlim_max);
    REQUIRE(setrlimit(RLIMIT_FSIZE, &limit) == 0);
}

void sessionWithUnreadableFile()
{
    dropPrivileges();
    const QByteArray bytes = goodDocument();
    writeFile(userFile(), bytes);
    setMode(userFile(), 0);
    REQUIRE(bytesOf(userFile()) == "no such file");
    library().loadUserColors(QString());
    REQUIRE(contents().isEmpty());
    addColor("n", "New");

    const QStringList names = suffixes();
    bool isKept = false;
    for (const QString &name : names) {
        setMode(userFile() + name, 0600);
        isKept = isKept || bytesOf(userFile() + name) == bytes;
    }
    REQUIRE(isKept);
}

void sessionWithReadOnlyFile()
{
    dropPrivileges();
    writeFile(userFile(), goodDocument());
    setMode(userFile(), 0400);
    library().loadUserColors(QString());
    addColor("n", "New");
    const QByteArray now = bytesOf(userFile());
    REQUIRE(now == goodDocument() || now == document(list("Good", color("g")) + list("New", color("n"))));
    REQUIRE(isTidy());
}

void sessionInUnwritableFolder()
{
    dropPrivileges();
    writeFile(userFile(), goodDocument());
    library().loadUserColors(QString());
    const QString folder = QFileInfo(userFile()).path();
    const QStringList before = suffixes();
    setMode(folder, 0500);
    REQUIRE(!QFile(folder + "/probe").open(QIODevice::WriteOnly));
    addColor("n", "New");
    REQUIRE(bytesOf(userFile()) == goodDocument());
    REQUIRE(suffixes() == before);
    REQUIRE(contents() == (QStringList{"Good: g", "New: n"}));

    setMode(folder, 0700);
    addColor("o", "New");
    REQUIRE(bytesOf(userFile()) == document(list("Good", color("g")) + list("New", color("n") + color("o"))));
    REQUIRE(isTidy());
}

/// Saves under every limit of a file's size, from nothing to enough, with what argument() names at stake.
void sessionUnderSizeLimits()
{
    std::signal(SIGXFSZ, SIG_IGN);
    const bool isDamaged = argument() == "damaged";
    const bool isForeign = argument() == "foreign";
    const QByteArray old = isDamaged ? goodDocument() + "rest" : goodDocument();
    const QByteArray foreign = document(list("Foreign", color("f")));
    const QByteArray atStake = isForeign ? foreign : old;
    const QByteArray loaded = isDamaged ? QByteArray() : list("Good", color("g"));
    const rlim_t enough = rlim_t(goodDocument().size()) + 400;
    for (rlim_t limit = 0; limit < enough; limit += 23) {
        freshLibrary();
        writeFile(userFile(), old);
        library().loadUserColors(QString());
        if (isForeign)
            writeFile(userFile(), foreign);
        setSizeLimit(limit);
        addColor("n", "New");
        setSizeLimit(RLIM_INFINITY);
        const QByteArray now = bytesOf(userFile());
        REQUIRE(isTidy());
        REQUIRE(now == atStake || now == document(loaded + list("New", ""))
                || now == document(loaded + list("New", color("n"))));
        const bool mustBeKept = isDamaged || isForeign;
        REQUIRE(!mustBeKept || now == atStake || copies(".").contains(atStake));

        addColor("o", "New");
        REQUIRE(bytesOf(userFile()) == document(loaded + list("New", color("n") + color("o"))));
        REQUIRE(!mustBeKept || copies(isForeign ? ".conflict." : ".bak").contains(atStake));
    }
}

void skip(const char *why)
{
    std::printf("%s", why);
    std::fflush(stdout);
    std::_Exit(EXIT_SKIPPED);
}

void makeSmallDisk(const QString &path)
{
    const bool isRoot = geteuid() == 0;
    const QByteArray userMap = "0 " + QByteArray::number(geteuid()) + " 1";
    const QByteArray groupMap = "0 " + QByteArray::number(getegid()) + " 1";
    if (unshare(isRoot ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) != 0)
        skip("no name space of its own here");
    if (!isRoot) {
        writeFile("/proc/self/setgroups", "deny");
        writeFile("/proc/self/uid_map", userMap);
        writeFile("/proc/self/gid_map", groupMap);
    }
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0
        || mount("none", QFile::encodeName(path).constData(), "tmpfs", 0, "size=256k") != 0)
        skip("no mount here");
}

void fillDisk(const QString &path)
{
    QFile file(path);
    REQUIRE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (file.write(QByteArray(512, 'x')) > 0)
        continue;
    REQUIRE(errno == ENOSPC);
}

void sessionOnAFullDisk()
{
    const QString disk = QFileInfo(userFile()).path();
    const QByteArray damaged = goodDocument() + "rest";
    for (const QByteArray &old : {goodDocument(), damaged}) {
        freshLibrary();
        writeFile(userFile(), old);
        library().loadUserColors(QString());
        fillDisk(disk + "/filling");
        for (int i = 0; i < 40; ++i)
            addColor(QString("n%1").arg(i), "New");
        REQUIRE(bytesOf(userFile()) == old);
        REQUIRE(isTidy());

        REQUIRE(QFile::remove(disk + "/filling"));
        addColor("o", "New");
        REQUIRE(colorCount(bytesOf(userFile()), "New") == 41);
        REQUIRE(old != damaged || copies(".bak").contains(damaged));
    }
}

/// Loads, tells so, waits for a word and then edits a list of its own.
void sessionOfManyEdits()
{
    library().loadUserColors(QString());
    std::puts("loaded");
    std::fflush(stdout);
    if (std::getchar() == EOF)
        return;
    const int count = qEnvironmentVariableIntValue("TREL_TEST_EDITS");
    const int known = int(library().getColors(argument()).size());
    for (int i = 0; i < count; ++i) {
        addColor(argument() + QString::number(known + i), argument());
        std::printf("%d\n", i);
        std::fflush(stdout);
    }
}

bool isFifo(const QString &path)
{
    struct stat status = {};
    return lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISFIFO(status.st_mode);
}

/// With argument(), the pipe lies elsewhere, and a link leads to it.
void sessionWithAFifo()
{
    const bool isLinked = !argument().isEmpty();
    const QString fifo = isLinked ? QFileInfo(userFile()).path() + "/fifo" : userFile();
    REQUIRE(mkfifo(QFile::encodeName(fifo).constData(), 0600) == 0);
    REQUIRE(!isLinked || QFile::link(fifo, userFile()));
    library().loadUserColors(QString());
    REQUIRE(contents().isEmpty());
    addColor("n", "New");
    REQUIRE(isFifo(fifo) || isFifo(userFile() + ".bak"));
    REQUIRE(contents() == QStringList("New: n"));
    REQUIRE(isTidy());
}

/// Holds the lock for a while and tells what the file was at the end of it.
void sessionHoldingTheLock()
{
    QLockFile lock(userFile() + ".lock");
    REQUIRE(lock.tryLock(0));
    const QByteArray before = bytesOf(userFile());
    std::puts("locked");
    std::fflush(stdout);
    QTest::qSleep(argument().toInt());
    std::puts(bytesOf(userFile()) == before ? "unchanged" : "changed");
    std::fflush(stdout);
}

void sessionThatDiesWithTheLock()
{
    QLockFile lock(userFile() + ".lock");
    REQUIRE(lock.tryLock(0));
    raise(SIGKILL);
}

const ChildCases childCases{
    {"unreadable file", [] { runSession(sessionWithUnreadableFile); }},
    {"read-only file", [] { runSession(sessionWithReadOnlyFile); }},
    {"unwritable folder", [] { runSession(sessionInUnwritableFolder); }},
    {"size limits", [] { runSession(sessionUnderSizeLimits); }},
    {"full disk",
     [] {
         makeSmallDisk(QFileInfo(qEnvironmentVariable(HOME_VARIABLE)).path());
         runSession(sessionOnAFullDisk);
     }},
    {"many edits", [] { runSession(sessionOfManyEdits); }},
    {"fifo", [] { runSession(sessionWithAFifo); }},
    {"hold the lock", [] { runSession(sessionHoldingTheLock); }},
    {"die with the lock", [] { runSession(sessionThatDiesWithTheLock); }},
};

void prepareChild(const QString &dataHome, const QString &value = QString())
{
    qputenv(HOME_VARIABLE, dataHome.toUtf8());
    qputenv(ARGUMENT_VARIABLE, value.toUtf8());
}

QByteArray nextLine(QProcess &process)
{
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead(CHILD_TIMEOUT_MS))
            return "no line";
    }
    return process.readLine().trimmed();
}

void startChild(QProcess &process, const QString &name)
{
    process.setProcessEnvironment(QProcessEnvironment::systemEnvironment());
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {"--child", name});
}

void finish(QProcess &process)
{
    QVERIFY(process.waitForFinished(CHILD_TIMEOUT_MS));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
}

/// The case in a folder of its own; false with its complaint on standard error.
bool succeedsInAFolder(const QString &name, const QString &value = QString())
{
    const QTemporaryDir folder;
    prepareChild(folder.filePath("home"), value);
    const ChildResult result = runChild(name);
    if (result.code != 0)
        std::fprintf(stderr, "%s\n", result.err.constData());
    return !result.crashed && result.code == 0;
}

} // namespace

void tst_UserColorFile::initTestCase()
{
    // Children that are killed leave their temporary folders behind: this one goes with the test.
    qputenv("TMPDIR", QFileInfo(qEnvironmentVariable("XDG_DATA_HOME")).path().toUtf8());
    s_next = qInstallMessageHandler(dropDebugLines);
}

void tst_UserColorFile::cleanupTestCase()
{
    TrelColorLibrary::cleanup();
    qInstallMessageHandler(s_next);
}

void tst_UserColorFile::refusedFileIsCopiedAside_data()
{
    QTest::addColumn<QByteArray>("bytes");

    const QByteArray good = goodDocument();
    QTest::newRow("no XML") << QByteArray("colours");
    QTest::newRow("nothing but blanks") << QByteArray(" \n");
    QTest::newRow("no end tag") << good.left(good.indexOf("</ColorLibraryList"));
    QTest::newRow("text behind the end") << good + "rest";
    QTest::newRow("two documents") << good + good;
    QTest::newRow("attribute twice") << QByteArray(good).replace("uid=", "name=");
    QTest::newRow("zero bytes") << QByteArray(good.size(), '\0');
    QTest::newRow("zero byte within") << QByteArray(good).replace("Good", QByteArray("G\0od", 4));
    QTest::newRow("control character") << QByteArray(good).replace("Good", "G\x01od");
    QTest::newRow("undeclared entity") << QByteArray(good).replace("Good", "&e;");
    QTest::newRow("undeclared prefix") << QByteArray(good).replace("<ColorLibrary ", "<p:ColorLibrary ");
    QTest::newRow("entity declaration") << "<!DOCTYPE x [<!ENTITY e 'Good'>]>" + good;
    QTest::newRow("entity declaration that is used")
        << "<!DOCTYPE x [<!ENTITY e 'Good'>]>" + QByteArray(good).replace("Good", "&e;");
    QTest::newRow("entity in two levels")
        << "<!DOCTYPE x [<!ENTITY a 'Good'><!ENTITY b '&a;&a;'>]>" + QByteArray(good).replace("Good", "&b;");
    QTest::newRow("elements in two levels of entities")
        << "<!DOCTYPE x [<!ENTITY a '<x><x/></x>'><!ENTITY b '&a;&a;&a;'>]>" + document("&b;");
    QTest::newRow("parameter entity") << "<!DOCTYPE x [<!ENTITY % p '<!ENTITY e \"Good\">'>%p;]>" + good;
    QTest::newRow("external entity") << "<!DOCTYPE x [<!ENTITY e SYSTEM 'userColors.xml'>]>" + good;
    QTest::newRow("entity of entities") << [] {
        QByteArray bytes = "<!DOCTYPE x [<!ENTITY e0 'eeeeeeeeee'>";
        for (int i = 1; i < 12; ++i) {
            const QByteArray inner = "&e" + QByteArray::number(i - 1) + ";";
            bytes += "<!ENTITY e" + QByteArray::number(i) + " '" + inner.repeated(10) + "'>";
        }
        return bytes + "]>" + QByteArray(goodDocument()).replace("Good", "&e11;");
    }();
    QTest::newRow("65 levels") << nested(65);
    QTest::newRow("30,000 levels") << nested(30000);
    QTest::newRow("30,000 levels, none closed") << QByteArray("<x>").repeated(30000);
    QTest::newRow("65 levels in a list") << document(
        list("L", color("c") + QByteArray("<x>").repeated(63) + QByteArray("</x>").repeated(63)));
    QTest::newRow("UTF-16 with an entity declaration") << utf16("<!DOCTYPE x [<!ENTITY e 'Good'>]>" + good, false);
    QTest::newRow("UTF-16 without a mark, with one") << utf16("<!DOCTYPE x [<!ENTITY e 'A'>]>" + good, true).mid(2);
    QTest::newRow("UTF-16 of 65 levels") << utf16(nested(65), true);
    QTest::newRow("UTF-16 of 30,000 levels") << utf16(nested(30000), false);
    QTest::newRow("UTF-16 cut within a character") << utf16(good, false).chopped(1) + QByteArray("\xd8");
    QTest::newRow("no UTF-8") << QByteArray(good).replace("Good", "G\xff\xfe");
    QTest::newRow("UTF-8 cut") << QByteArray(good).replace("Good", "G\xc3");
}

void tst_UserColorFile::refusedFileIsCopiedAside()
{
    QFETCH(QByteArray, bytes);

    freshLibrary();
    writeFile(userFile(), bytes);
    library().loadUserColors(QString());
    QCOMPARE(contents(), QStringList());
    QCOMPARE(bytesOf(userFile()), bytes);

    addColor("n", "New");
    QCOMPARE(bytesOf(userFile() + ".bak"), bytes);
    QCOMPARE(suffixes(), (QStringList{"", ".bak"}));
    QCOMPARE(savedContents(), QStringList("New: n"));
}

void tst_UserColorFile::refusedFileStaysUntilTheFirstSave()
{
    freshLibrary();
    writeFile(userFile(), "damaged");
    for (int run = 0; run < 3; ++run) {
        nextRun().loadUserColors(QString());
        library().setEditingMultipleColors(true);
        library().setEditingMultipleColors(false);
    }
    nextRun();
    QCOMPARE(suffixes(), QStringList(""));
    QCOMPARE(bytesOf(userFile()), QByteArray("damaged"));
}

void tst_UserColorFile::truncatedAtEveryByte()
{
    const QByteArray whole = document(list("A", color("a")) + list(QByteArray("Grün"), color("g"))).trimmed();
    for (int size = 1; size < int(whole.size()); ++size) {
        freshLibrary();
        const QByteArray part = whole.left(size);
        writeFile(userFile(), part);
        library().loadUserColors(QString());
        QVERIFY2(contents().isEmpty(), part.constData());
        addColor("n", "New");
        QCOMPARE(bytesOf(userFile() + ".bak"), part);
        QCOMPARE(bytesOf(userFile()), document(list("New", color("n"))));
    }
}

void tst_UserColorFile::acceptedFileIsNotCopiedAside_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("expected");

    const QByteArray good = goodDocument();
    QTest::newRow("plain") << good << QStringList{"Good: g"};
    QTest::newRow("64 levels") << nested(64) << QStringList{"Deep: d"};
    QTest::newRow("declaration") << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + good << QStringList{"Good: g"};
    QTest::newRow("byte order mark") << "\xef\xbb\xbf" + good << QStringList{"Good: g"};
    QTest::newRow("document type without entities") << "<!DOCTYPE ColorLibraryList>\n" + good << QStringList{"Good: g"};
    QTest::newRow("text of an entity declaration") << "<!-- <!ENTITY e 'x'> -->" + good << QStringList{"Good: g"};
    QTest::newRow("line ends of two characters") << QByteArray(good).replace("\n", "\r\n") << QStringList{"Good: g"};
    QTest::newRow("no list") << document("") << QStringList{};
}

void tst_UserColorFile::acceptedFileIsNotCopiedAside()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, expected);

    freshLibrary();
    writeFile(userFile(), bytes);
    library().loadUserColors(QString());
    QCOMPARE(contents(), expected);
    addColor("n", "New");
    QCOMPARE(suffixes(), QStringList(""));
    QCOMPARE(savedContents(), expected + QStringList("New: n"));
}

void tst_UserColorFile::otherEncodings_data()
{
    QTest::addColumn<QByteArray>("bytes");

    const QString text = QString::fromUtf8(document(list("Grün", color("g"))));
    QTest::newRow("UTF-16, little end first") << utf16(text, false);
    QTest::newRow("UTF-16, big end first") << utf16(text, true);
    QTest::newRow("UTF-16 without a mark") << utf16(text, false).mid(2);
    QTest::newRow("Latin-1, declared") << "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>" + text.toLatin1();
    QTest::newRow("Latin-1, not declared") << text.toLatin1();
    QTest::newRow("unknown encoding") << "<?xml version=\"1.0\" encoding=\"x-none\"?>" + text.toUtf8();
}

void tst_UserColorFile::otherEncodings()
{
    QFETCH(QByteArray, bytes);

    freshLibrary();
    writeFile(userFile(), bytes);
    library().loadUserColors(QString());
    const bool isWhole = contents() == QStringList(QString::fromUtf8("Grün: g"));
    addColor("n", "New");
    QVERIFY(isWhole || bytesOf(userFile() + ".bak") == bytes);
    QCOMPARE(colorCount(bytesOf(userFile()), QString::fromUtf8("Grün")), isWhole ? 1 : 0);
}

void tst_UserColorFile::sizeLimit_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<bool>("isSparse");
    QTest::addColumn<bool>("isRefused");

    QTest::newRow("64 MiB") << LIMIT_BYTES << false << false;
    QTest::newRow("one byte more") << LIMIT_BYTES + 1 << false << true;
    QTest::newRow("4 GiB and one byte, most of them a hole") << 64 * LIMIT_BYTES + 1 << true << true;
}

void tst_UserColorFile::sizeLimit()
{
    QFETCH(qint64, size);
    QFETCH(bool, isSparse);
    QFETCH(bool, isRefused);

    freshLibrary();
    const QByteArray good = goodDocument();
    writeFile(userFile(), isSparse ? good : good + QByteArray(int(size) - int(good.size()), ' '));
    QVERIFY(QFile::resize(userFile(), size));
    library().loadUserColors(QString());
    QCOMPARE(contents(), isRefused ? QStringList() : QStringList("Good: g"));
    if (isSparse)
        return;
    addColor("n", "New");
    QCOMPARE(suffixes(), isRefused ? (QStringList{"", ".bak"}) : QStringList(""));
    QVERIFY(!isRefused || QFileInfo(userFile() + ".bak").size() == size);
    removeUserFiles();
}

void tst_UserColorFile::lossIsCopiedAside_data()
{
    QTest::addColumn<QByteArray>("lists");
    QTest::addColumn<QStringList>("expected");
    QTest::addColumn<QString>("warning");
    QTest::addColumn<bool>("isCopied");

    const QByteArray a = list("A", color("a"));
    const QByteArray c = list("C", color("c"));
    const QStringList aAndC{"A: a", "B: ", "C: c"};
    QTest::newRow("reader fails between") << a + list("B", "<Light/>") + c << aAndC << "" << true;
    QTest::newRow("reader fails at text") << a + list("B", "red, green") + c << aAndC << "" << true;
    QTest::newRow("reader fails first") << list("B", "<Light/>") + c << QStringList{"B: ", "C: c"} << "" << true;
    QTest::newRow("reader fails last") << a + list("B", "<Light/>") << QStringList{"A: a", "B: "} << "" << true;
    QTest::newRow("reader fails twice") << list("B", "<Light/>") + list("D", "<Light/>") + c
                                        << QStringList{"B: ", "D: ", "C: c"} << "" << true;
    QTest::newRow("empty list between") << a + list("B", "") + c << aAndC << "" << false;
    QTest::newRow("empty lists only") << list("B", "") + list("D", "") << QStringList{"B: ", "D: "} << "" << false;
    QTest::newRow("value is no colour") << a + list("B", color("b", "rubbish") + color("x")) + c
                                        << QStringList{"A: a", "B: b, x", "C: c"}
                                        << "TrelColor::setNamedColor: Unknown color name 'rubbish'" << true;
    QTest::newRow("value has a bad digit") << list("B", color("b", "aRgb;1;0;#ffffffff0000000x")) << QStringList{"B: b"}
                                           << "TrelColor::setRgb16: RGB parameters out of range" << true;
    QTest::newRow("value is cut") << list("B", color("b", "aYxy;1;0;65535;1.0")) << QStringList{"B: b"} << "" << true;
    QTest::newRow("value is missing") << list("B", "<Color name=\"b\" uid=\"{b}\"/>") << QStringList{"B: b"}
                                      << "TrelColor::setNamedColor: Unknown color name 'empty attribute'" << true;
}

void tst_UserColorFile::lossIsCopiedAside()
{
    QFETCH(QByteArray, lists);
    QFETCH(QStringList, expected);
    QFETCH(QString, warning);
    QFETCH(bool, isCopied);

    freshLibrary();
    writeFile(userFile(), document(lists));
    if (!warning.isEmpty())
        expectWarning(warning);
    library().loadUserColors(QString());
    QCOMPARE(contents(), expected);
    addColor("n", "New");
    QVERIFY(isTidy());
    QVERIFY(!isCopied || bytesOf(userFile() + ".bak") == document(lists));
    QCOMPARE(savedContents(), expected + QStringList("New: n"));
}

void tst_UserColorFile::nameLostToAUidIsCopiedAside_data()
{
    QTest::addColumn<QByteArray>("lists");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("in one list") << list("B", color("b") + color("x") + color("b")) << QStringList{"B: b 2, x, Color"};
    QTest::newRow("in two lists") << list("A", color("a")) + list("B", color("a")) << QStringList{"A: a", "B: Color"};
}

void tst_UserColorFile::nameLostToAUidIsCopiedAside()
{
    QFETCH(QByteArray, lists);
    QFETCH(QStringList, expected);

    freshLibrary();
    writeFile(userFile(), document(lists));
    library().loadUserColors(QString());
    QCOMPARE(contents(), expected);
    QCOMPARE(bytesOf(userFile() + ".bak"), document(lists));
}

void tst_UserColorFile::earlierCopiesStay()
{
    freshLibrary();
    QList<QByteArray> damaged;
    writeFile(userFile() + ".bak", "by hand");
    damaged.append("by hand");
    for (int run = 0; run < 12; ++run) {
        damaged.append("damaged " + QByteArray::number(run));
        writeFile(userFile(), damaged.last());
        nextRun().loadUserColors(QString());
        addColor("n", "New");
    }
    QCOMPARE(bytesOf(userFile() + ".bak"), QByteArray("by hand"));
    QList<QByteArray> kept = copies(".bak");
    std::sort(kept.begin(), kept.end());
    std::sort(damaged.begin(), damaged.end());
    QCOMPARE(kept, damaged);
}

void tst_UserColorFile::copyGoesAroundAFolder()
{
    freshLibrary();
    QVERIFY(QDir().mkdir(userFile() + ".bak"));
    writeFile(userFile(), "damaged");
    library().loadUserColors(QString());
    addColor("n", "New");
    QVERIFY(QFileInfo(userFile() + ".bak").isDir());
    QVERIFY(copies(".bak").contains("damaged") || bytesOf(userFile()) == "damaged");
}

void tst_UserColorFile::oneCopyForARun()
{
    freshLibrary();
    writeFile(userFile(), "damaged");
    library().loadUserColors(QString());
    for (int i = 0; i < 5; ++i)
        addColor(QString::number(i), "New");
    QCOMPARE(suffixes(), (QStringList{"", ".bak"}));
    nextRun().loadUserColors(QString());
    addColor("n", "New");
    QCOMPARE(suffixes(), (QStringList{"", ".bak"}));
}

void tst_UserColorFile::damagedTwiceIsCopiedAside()
{
    freshLibrary();
    writeFile(userFile(), "damaged");
    library().loadUserColors(QString());
    writeFile(userFile(), "damaged again");
    library().loadUserColors(QString());
    addColor("n", "New");
    QCOMPARE(bytesOf(userFile() + ".bak"), QByteArray("damaged again"));
    QCOMPARE(suffixes(), (QStringList{"", ".bak"}));
}

void tst_UserColorFile::listThatIsNotSavedIsCopiedAside()
{
    freshLibrary();
    const QByteArray bytes = document(list("A", color("a")) + list("Other", color("o"), "0"));
    writeFile(userFile(), bytes);
    library().loadUserColors(QString());
    addColor("n", "A");
    QCOMPARE(bytesOf(userFile()), document(list("A", color("a") + color("n"))));
    QCOMPARE(bytesOf(userFile() + ".bak"), bytes);
}

void tst_UserColorFile::copiesDoNotPileUp_data()
{
    QTest::addColumn<QByteArray>("lists");
    QTest::addColumn<QString>("warning");

    QTest::newRow("empty list") << list("B", "") << "";
    QTest::newRow("colour without a value") << list("B", color("b", "")) << "";
    QTest::newRow("value is no colour") << list("B", color("b", "rubbish"))
                                        << "TrelColor::setNamedColor: Unknown color name 'rubbish'";
}

void tst_UserColorFile::copiesDoNotPileUp()
{
    QFETCH(QByteArray, lists);
    QFETCH(QString, warning);

    freshLibrary();
    writeFile(userFile(), document(lists));
    if (!warning.isEmpty())
        expectWarning(warning);
    for (int run = 0; run < 5; ++run) {
        nextRun().loadUserColors(QString());
        addColor(QString::number(run), "New");
    }
    QVERIFY2(copies(".bak").size() <= 1, qPrintable(suffixes().join(' ')));
}

void tst_UserColorFile::otherFilesAreNeverCopied()
{
    freshLibrary().loadUserColors(QString());
    const QTemporaryDir folder;
    const QString path = folder.filePath("other");
    for (const QByteArray &bytes : {QByteArray("damaged"), document(list("A", color("a")) + list("B", "<x/>"))}) {
        writeFile(path, bytes);
        library().loadUserColors(path);
        addColor("n", "New");
        QCOMPARE(bytesOf(path), bytes);
    }
    QCOMPARE(suffixes(path), QStringList(""));
    QCOMPARE(suffixes(), QStringList(""));
}

void tst_UserColorFile::otherThanAFile_data()
{
    QTest::addColumn<QString>("target");

    QTest::newRow("folder") << QString();
    QTest::newRow("link to itself") << userFile();
    QTest::newRow("link to nothing") << userFile() + ".nothing/at/all";
    QTest::newRow("link to a folder") << qEnvironmentVariable("XDG_DATA_HOME");
}

void tst_UserColorFile::otherThanAFile()
{
    QFETCH(QString, target);

    freshLibrary();
    if (target.isEmpty()) {
        QVERIFY(QDir().mkdir(userFile()));
        writeFile(userFile() + "/inside", goodDocument());
    } else {
        QVERIFY(QFile::link(target, userFile()));
    }
    library().loadUserColors(QString());
    QCOMPARE(contents(), QStringList());
    addColor("n", "New");
    QCOMPARE(contents(), QStringList("New: n"));
    QVERIFY(isTidy());
    const bool isSaved = QFileInfo(userFile()).isFile() && colorCount(bytesOf(userFile()), "New") == 1;
    if (target.isEmpty())
        QVERIFY(isSaved || bytesOf(userFile() + "/inside") == goodDocument());
    else
        QVERIFY(isSaved || QFileInfo(userFile()).isSymLink());
    removeUserFiles();
}

void tst_UserColorFile::fifo_data()
{
    QTest::addColumn<QString>("where");

    QTest::newRow("in the file's place") << QString();
    QTest::newRow("behind a link") << "linked";
}

void tst_UserColorFile::fifo()
{
    QFETCH(QString, where);

    QVERIFY(succeedsInAFolder("fifo", where));
}

void tst_UserColorFile::linkToTheFile()
{
    freshLibrary();
    const QTemporaryDir folder;
    const QString target = folder.filePath("colours.xml");
    writeFile(target, goodDocument());
    QVERIFY(QFile::link(target, userFile()));
    library().loadUserColors(QString());
    QCOMPARE(contents(), QStringList("Good: g"));
    addColor("n", "New");
    QVERIFY(isTidy());
    QCOMPARE(savedContents(), (QStringList{"Good: g", "New: n"}));
}

void tst_UserColorFile::unreadableFile()
{
    QVERIFY(succeedsInAFolder("unreadable file"));
}

void tst_UserColorFile::readOnlyFile()
{
    QVERIFY(succeedsInAFolder("read-only file"));
}

void tst_UserColorFile::unwritableFolder()
{
    QVERIFY(succeedsInAFolder("unwritable folder"));
}

void tst_UserColorFile::everySizeLimit_data()
{
    QTest::addColumn<QString>("atStake");

    QTest::newRow("good file") << "good";
    QTest::newRow("damaged file") << "damaged";
    QTest::newRow("file of another process") << "foreign";
}

void tst_UserColorFile::everySizeLimit()
{
    QFETCH(QString, atStake);

    QVERIFY(succeedsInAFolder("size limits", atStake));
}

void tst_UserColorFile::fullDisk()
{
    const QTemporaryDir folder;
    prepareChild(folder.filePath("home"));
    const ChildResult result = runChild("full disk");
    if (result.code == EXIT_SKIPPED && !result.crashed)
        QSKIP(result.out.constData());
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
}

void tst_UserColorFile::replacedVersionIsKept_data()
{
    QTest::addColumn<QByteArray>("loaded");
    QTest::addColumn<QByteArray>("foreign");
    QTest::addColumn<QStringList>("suffixes");

    const QByteArray foreign = document(list("Foreign", color("f")));
    QTest::newRow("changed since it was loaded") << goodDocument() << foreign << QStringList{"", ".conflict.1"};
    QTest::newRow("made since none was found") << QByteArray() << foreign << QStringList{"", ".conflict.1"};
    QTest::newRow("one byte of the same size")
        << goodDocument() << QByteArray(goodDocument()).replace("Good", "Goof") << QStringList{"", ".conflict.1"};
    QTest::newRow("damaged since it was loaded")
        << goodDocument() << QByteArray("damaged") << QStringList{"", ".conflict.1"};
    QTest::newRow("written again with the same bytes") << goodDocument() << goodDocument() << QStringList{""};
}

void tst_UserColorFile::replacedVersionIsKept()
{
    QFETCH(QByteArray, loaded);
    QFETCH(QByteArray, foreign);
    QFETCH(QStringList, suffixes);

    freshLibrary();
    if (!loaded.isEmpty())
        writeFile(userFile(), loaded);
    library().loadUserColors(QString());
    const QStringList before = contents();
    QFile::remove(userFile());
    writeFile(userFile(), foreign);
    addColor("n", "New");
    QCOMPARE(::suffixes(), suffixes);
    if (suffixes.size() > 1)
        QCOMPARE(bytesOf(userFile() + ".conflict.1"), foreign);
    QCOMPARE(savedContents(), before + QStringList("New: n"));
}

void tst_UserColorFile::newestTenConflictsAreKept()
{
    freshLibrary().loadUserColors(QString());
    QList<QByteArray> expected;
    for (int i = 0; i < 23; ++i) {
        const QByteArray foreign = document(list("F" + QByteArray::number(i), color("f")));
        writeFile(userFile(), foreign);
        addColor(QString::number(i), "New");
        expected.append(foreign);
        if (expected.size() > 10)
            expected.removeFirst();
        QList<QByteArray> kept = copies(".conflict.");
        QList<QByteArray> sorted = expected;
        std::sort(kept.begin(), kept.end());
        std::sort(sorted.begin(), sorted.end());
        QCOMPARE(kept, sorted);
    }
}

void tst_UserColorFile::ownVersionIsNoConflict()
{
    freshLibrary().loadUserColors(QString());
    for (int i = 0; i < 5; ++i)
        addColor(QString::number(i), "New");
    QFile::remove(userFile());
    addColor("again", "New");
    QCOMPARE(suffixes(), QStringList(""));
    QCOMPARE(savedContents(), QStringList("New: 0, 1, 2, 3, 4, again"));
}

void tst_UserColorFile::twoProcesses()
{
    constexpr int EDITS = 200;
    const QTemporaryDir folder;
    const QString file = folder.filePath("home\\Orvane\\userColors.xml");
    qputenv("TREL_TEST_EDITS", QByteArray::number(EDITS));
    QProcess a;
    prepareChild(folder.filePath("home"), "a");
    startChild(a, "many edits");
    QProcess b;
    prepareChild(folder.filePath("home"), "b");
    startChild(b, "many edits");
    QCOMPARE(nextLine(a), QByteArray("loaded"));
    QCOMPARE(nextLine(b), QByteArray("loaded"));
    a.write("\n");
    b.write("\n");
    for (int i = 0; i < EDITS; ++i) {
        QCOMPARE(nextLine(a), QByteArray::number(i));
        const QByteArray bytes = bytesOf(file);
        QVERIFY2(isWhole(bytes), bytes.constData());
    }
    finish(a);
    finish(b);

    QVERIFY(isTidy(file));
    QList<QByteArray> kept = copies(".conflict.", file);
    QVERIFY(kept.size() <= 10);
    kept.append(bytesOf(file));
    for (const QByteArray &bytes : qAsConst(kept))
        QVERIFY2(isWhole(bytes), bytes.constData());
    for (const char *listId : {"a", "b"}) {
        QVERIFY(std::any_of(kept.constBegin(), kept.constEnd(),
                            [listId](const QByteArray &bytes) { return colorCount(bytes, listId) == EDITS; }));
    }
}

void tst_UserColorFile::killedProcess()
{
    freshLibrary();
    qputenv("TREL_TEST_EDITS", "1000000");
    prepareChild(qEnvironmentVariable("XDG_DATA_HOME"), "a");
    int saved = 0;
    for (const int edits : {1, 2, 7, 20, 31}) {
        QProcess process;
        startChild(process, "many edits");
        QCOMPARE(nextLine(process), QByteArray("loaded"));
        process.write("\n");
        for (int i = 0; i < edits; ++i)
            QCOMPARE(nextLine(process), QByteArray::number(i));
        process.kill();
        QVERIFY(process.waitForFinished(CHILD_TIMEOUT_MS));
        const QByteArray bytes = bytesOf(userFile());
        QVERIFY2(isWhole(bytes), bytes.constData());
        saved += edits;
        QVERIFY(colorCount(bytes, "a") >= saved);
        saved = colorCount(bytes, "a");
    }
    nextRun().loadUserColors(QString());
    QCOMPARE(library().getColors("a").size(), saved);
    addColor("n", "New");
    QCOMPARE(colorCount(bytesOf(userFile()), "a"), saved);
    QCOMPARE(colorCount(bytesOf(userFile()), "New"), 1);
    QVERIFY(copies(".bak").isEmpty());
}

void tst_UserColorFile::lockIsRespected()
{
    freshLibrary();
    writeFile(userFile(), goodDocument());
    library().loadUserColors(QString());
    QProcess holder;
    prepareChild(qEnvironmentVariable("XDG_DATA_HOME"), "1500");
    startChild(holder, "hold the lock");
    QCOMPARE(nextLine(holder), QByteArray("locked"));
    addColor("n", "New");
    QCOMPARE(nextLine(holder), QByteArray("unchanged"));
    finish(holder);
    addColor("o", "New");
    QCOMPARE(savedContents(), (QStringList{"Good: g", "New: n, o"}));
    QVERIFY(copies(".").isEmpty());
}

void tst_UserColorFile::lockOfADeadProcess()
{
    freshLibrary();
    prepareChild(qEnvironmentVariable("XDG_DATA_HOME"));
    QVERIFY(runChild("die with the lock").crashed);
    QCOMPARE(suffixes(), QStringList(".lock"));
    library().loadUserColors(QString());
    addColor("n", "New");
    QCOMPARE(bytesOf(userFile()), document(list("New", color("n"))));
}

TREL_TEST_MAIN_WITH(QGuiApplication, tst_UserColorFile, childCases)

#include "tst_UserColorFile.moc"
