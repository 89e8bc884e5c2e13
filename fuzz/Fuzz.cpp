#include "Fuzz.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <limits>

namespace {

void ignoreMessage(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtFatalMsg)
        return; // hostile input is warned of at every turn
    std::fprintf(stderr, "%s\n", qPrintable(text));
    std::abort();
}

/// A folder for everything that a run writes: the user's own must stay out of it.
const QString &folder()
{
    static const QTemporaryDir temporary;
    static const QString path = temporary.path();
    return path;
}

} // namespace

void Fuzz::fail(const char *condition, const char *file, int line)
{
    std::fprintf(stderr, "%s:%d: not so: %s\n", file, line, condition);
    std::abort();
}

void Fuzz::prepare()
{
    qInstallMessageHandler(ignoreMessage);
    for (const char *variable : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
        qputenv(variable, QFile::encodeName(folder()));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "fuzz";
    static char *argv[] = {name, nullptr};
    static const QGuiApplication application(argc, argv);
}

void Fuzz::deleteLater()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QString Fuzz::fileWith(const QByteArray &bytes)
{
    const QString path = QDir(folder()).filePath(QStringLiteral("input"));
    QFile::remove(path); // a file system may flush one that is truncated and written anew
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        fail("the file can be written", __FILE__, __LINE__);
    return path;
}

double Fuzz::Input::real()
{
    using Limits = std::numeric_limits<double>;
    constexpr double SPECIAL[] = {0.0,
                                  -0.0,
                                  1.0,
                                  0.5,
                                  -1.0,
                                  0.3127,
                                  0.329,
                                  1e-9,
                                  360.0,
                                  255.0,
                                  65535.0,
                                  1e9,
                                  -1e308,
                                  Limits::max(),
                                  1e-3,
                                  0.2,
                                  0.1978,
                                  0.4683,
                                  Limits::denorm_min(),
                                  Limits::infinity(),
                                  Limits::quiet_NaN()};
    const int choice = draw(256);
    if (choice < int(std::size(SPECIAL)))
        return SPECIAL[choice];
    if (choice < 160)
        return double(any<std::uint16_t>()) / 65535.0;
    if (choice < 200)
        return (double(any<std::uint32_t>()) - 2147483648.0) / 65536.0;
    return any<double>();
}

int Fuzz::Input::integer()
{
    constexpr int SPECIAL[] = {
        0, 1, -1, 255, 256, 65535, 65536, 360, 36000, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()};
    const int choice = draw(256);
    if (choice < int(std::size(SPECIAL)))
        return SPECIAL[choice];
    if (choice < 120)
        return draw(256);
    if (choice < 220)
        return any<std::uint16_t>();
    return any<int>();
}

QByteArray Fuzz::Input::rest()
{
    const QByteArray bytes(reinterpret_cast<const char *>(m_data), int(m_size));
    skip(m_size);
    return bytes;
}

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    Fuzz::prepare();
    return 0;
}
