#include "TestSupport.h"

#include <QProcess>
#include <QTemporaryDir>

#include <csignal>
#include <cstdio>

#include <sys/resource.h>

namespace {

constexpr int CHILD_TIMEOUT_MS = 60000;
constexpr int EXIT_UNKNOWN_CASE = 99;
/// What the platform without a screen says of each dialog.
constexpr char SCREENLESS_WARNING[] = "This plugin does not support propagateSizeHints()";

QtMessageHandler s_next = nullptr;
QStringList s_expected;
QStringList s_seen;

void recordWarnings(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    const bool isOurs = text != QLatin1String(SCREENLESS_WARNING);
    if (isOurs && (type == QtWarningMsg || type == QtCriticalMsg))
        s_seen.append(text);
    s_next(type, context, text);
}

} // namespace

void TrelTest::expectWarning(const QString &text)
{
    s_expected.append(text);
    QTest::ignoreMessage(QtWarningMsg, text.toUtf8().constData());
}

void TrelTest::expectDebug(const QString &text)
{
    QTest::ignoreMessage(QtDebugMsg, text.toUtf8().constData());
}

void TrelTest::setUp()
{
}

void TrelTest::tearDown()
{
}

void TrelTest::init()
{
    s_expected.clear();
    s_seen.clear();
    s_next = qInstallMessageHandler(recordWarnings);
    setUp();
}

void TrelTest::cleanup()
{
    tearDown();
    qInstallMessageHandler(s_next);
    for (const QString &text : qAsConst(s_expected))
        s_seen.removeOne(text);
    QVERIFY2(s_seen.isEmpty(), qPrintable("undeclared warnings: " + s_seen.join("\n")));
}

ChildResult runChild(const QString &name, const QString &program)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_FORCE_STDERR_LOGGING", "1");
    process.setProcessEnvironment(environment);
    process.start(program.isEmpty() ? QCoreApplication::applicationFilePath() : program, {"--child", name});
    if (!process.waitForFinished(CHILD_TIMEOUT_MS))
        qFatal("child case %s did not end", qPrintable(name));
    ChildResult result;
    result.crashed = process.exitStatus() == QProcess::CrashExit;
    result.code = process.exitCode();
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

bool diesWith(const QString &name, const QByteArray &text)
{
    const ChildResult result = runChild(name);
    if (result.crashed && result.code == SIGABRT && result.err.contains(text))
        return true;
    std::fprintf(stderr, "child case %s: crashed %d, code %d, standard error:\n%s\n", qPrintable(name), result.crashed,
                 result.code, result.err.constData());
    return false;
}

bool ranChildCase(int argc, char **argv, const ChildCases &cases)
{
    if (argc != 3 || qstrcmp(argv[1], "--child") != 0)
        return false;
    const rlimit noCoreFile = {0, 0};
    setrlimit(RLIMIT_CORE, &noCoreFile);
    const auto child = cases.value(argv[2]);
    if (!child)
        std::exit(EXIT_UNKNOWN_CASE);
    child();
    return true;
}

void isolateFromUser()
{
    static const QTemporaryDir folder;
    if (!folder.isValid())
        qFatal("no temporary folder");
    qputenv("QT_QPA_PLATFORM", qEnvironmentVariable("TREL_TEST_PLATFORM", QStringLiteral("offscreen")).toLatin1());
    for (const char *variable : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        qputenv(variable, folder.filePath(variable).toUtf8());
}
