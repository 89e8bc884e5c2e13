#include "UserColorFile_p.h"

#include <TrelColorLibrary.h>

#include <QByteArrayList>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include <dlfcn.h>

// The program that the fault drivers start, fail, fill up and kill. It keeps one list of colours in the user's file
// of XDG_DATA_HOME; the first colour's value holds the number of the edit and who made it, so that a driver knows
// every version byte for byte. It takes commands on standard input and answers each with lines on standard output.

namespace {

constexpr char LIST_NAME[] = "Work";

QString userPath()
{
    return TrelColorLibrary::applicationSupportDir() + QStringLiteral("\\userColors.xml");
}

/// What the worker writes as edit \a number.
struct Version
{
    int writer;
    int number;
    int colors;
};

QByteArray uidOf(int row)
{
    return "{00000000-0000-4000-8000-" + QByteArray::number(row).rightJustified(12, '0') + '}';
}

QByteArray nameOf(int row)
{
    return row == 0 ? QByteArray("Counter") : "Padding " + QByteArray::number(row);
}

QByteArray hexWord(int word)
{
    return QByteArray::number(word & 0xffff, 16).rightJustified(4, '0');
}

QByteArray valueOf(const Version &version, int row)
{
    const QByteArray digits = row == 0
                                  ? hexWord(version.writer) + hexWord(version.number >> 16) + hexWord(version.number)
                                  : hexWord(row) + "00000000";
    return "aRgb;1;0;#ffff" + digits;
}

TrelColor colorOf(const Version &version, int row)
{
    return TrelColor(QString::fromLatin1(valueOf(version, row)));
}

QByteArray documentOf(const Version &version)
{
    QByteArray text =
        QByteArray("<ColorLibraryList>\n <ColorLibrary name=\"") + LIST_NAME + "\" isUserLibrary=\"1\">\n";
    for (int row = 0; row < version.colors; ++row) {
        text += "  <Color name=\"" + nameOf(row) + "\" uid=\"" + uidOf(row) + "\" value=\"" + valueOf(version, row)
                + "\" originatingPreset=\"\" colorId=\"\"/>\n";
    }
    return text + " </ColorLibrary>\n</ColorLibraryList>\n";
}

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A way to keep the colours.
class Store
{
public:
    Store() = default;
    Store(const Store &) = delete;
    Store &operator=(const Store &) = delete;
    virtual ~Store() = default;

    /// Begins anew, as the next run of the program. \param isWhole whether the file is taken to be sound.
    /// \return how many colours there are.
    virtual int load(bool isWhole) = 0;
    /// \return the word for how it went.
    virtual const char *edit(const Version &version) = 0;
};

/// Through the library alone, as hosts get there. It has no word for a save that failed.
class LibraryStore : public Store
{
public:
    ~LibraryStore() override
    {
        TrelColorLibrary::cleanup();
    }

    int load(bool) override
    {
        TrelColorLibrary::cleanup();
        TrelColorLibrary *library = TrelColorLibrary::Instance();
        library->loadUserColors(QString());
        int count = 0;
        for (int row = 0; row < library->rowCount(library->rootIndex()); ++row)
            count += library->rowCount(library->index(row, 0, library->rootIndex()));
        return count;
    }

    const char *edit(const Version &version) override
    {
        TrelColorLibrary *library = TrelColorLibrary::Instance();
        const QString counter = QString::fromLatin1(uidOf(0));
        if (library->containsUid(counter))
            return library->set(counter, colorOf(version, 0)) ? "edited" : "failed";
        library->setEditingMultipleColors(true);
        library->createColorList(QLatin1String(LIST_NAME), true);
        for (int row = 0; row < version.colors; ++row)
            library->createColorWithName(colorOf(version, row), QString::fromLatin1(nameOf(row)),
                                         QString::fromLatin1(uidOf(row)), QLatin1String(LIST_NAME), QString());
        library->setEditingMultipleColors(false);
        return "edited";
    }
};

/// Through the unit below the library, which says whether a save went well.
class FileStore : public Store
{
public:
    int load(bool isWhole) override
    {
        QDir().mkpath(TrelColorLibrary::applicationSupportDir());
        m_file = std::make_unique<UserColorFile>(userPath());
        const QByteArray bytes = bytesOf(userPath());
        m_file->noteLoad(bytes, isWhole);
        return int(bytes.count("<Color "));
    }

    const char *edit(const Version &version) override
    {
        return m_file->save(documentOf(version)) ? "done" : "failed";
    }

private:
    std::unique_ptr<UserColorFile> m_file;
};

/// As one should not do it: the control that shows what the drivers would find.
class PlainStore : public Store
{
public:
    int load(bool) override
    {
        return int(bytesOf(userPath()).count("<Color "));
    }

    const char *edit(const Version &version) override
    {
        QFile file(userPath());
        const QByteArray bytes = documentOf(version);
        const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush();
        return isWritten ? "done" : "failed";
    }
};

/// The preloaded shim's entry points; null without it.
struct FaultShim
{
    using Arm = void (*)(const char *folder, const char *call, long at, int error, int isLasting);
    using Disarm = long (*)(long *calls);

    // POSIX promises that the address of a function comes through dlsym() whole.
    Arm arm = reinterpret_cast<Arm>(dlsym(RTLD_DEFAULT, "faultShimArm"));
    Disarm disarm = reinterpret_cast<Disarm>(dlsym(RTLD_DEFAULT, "faultShimDisarm"));
};

/// The most memory that the process ever held, in KiB.
int peakMemory()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArrayList lines = file.readAll().split('\n');
    const auto peak =
        std::find_if(lines.begin(), lines.end(), [](const QByteArray &line) { return line.startsWith("VmHWM:"); });
    return peak == lines.end() ? 0 : peak->mid(6).trimmed().split(' ').first().toInt();
}

class Worker
{
public:
    Worker(std::unique_ptr<Store> store, int writer, int colors)
        : m_store(std::move(store))
        , m_writer(writer)
        , m_colors(colors)
    {
    }

    /// Serves commands until standard input ends. \return the exit code.
    int serve()
    {
        static const std::map<QByteArray, void (Worker::*)(const QByteArrayList &)> COMMANDS = {
            {"load", &Worker::load}, {"edit", &Worker::edit}, {"run", &Worker::run}, {"fault", &Worker::fault}};
        char line[256];
        while (std::fgets(line, sizeof line, stdin)) {
            const QByteArrayList words = QByteArray(line).trimmed().split(' ');
            const auto command = COMMANDS.find(words.first());
            if (command == COMMANDS.end()) {
                std::fprintf(stderr, "no such command: %s\n", words.first().constData());
                return 2;
            }
            (this->*command->second)(words.mid(1));
            std::fflush(stdout);
        }
        return 0;
    }

private:
    /// load WHOLE: "loaded COLOURS MICROSECONDS PEAK-BEFORE PEAK-AFTER"
    void load(const QByteArrayList &words)
    {
        const int before = peakMemory();
        QElapsedTimer timer;
        timer.start();
        const int colors = m_store->load(words.value(0) != "0");
        const qint64 microseconds = timer.nsecsElapsed() / 1000;
        std::printf("loaded %d %lld %d %d\n", colors, static_cast<long long>(microseconds), before, peakMemory());
    }

    /// edit NUMBER: "begin NUMBER", then "done", "failed" or "edited NUMBER"
    void edit(const QByteArrayList &words)
    {
        const int number = words.value(0).toInt();
        std::printf("begin %d\n", number);
        std::fflush(stdout);
        const char *word = m_store->edit({m_writer, number, m_colors});
        std::printf("%s %d\n", word, number);
        std::fflush(stdout);
    }

    /// run FIRST COUNT: that many edits without a pause
    void run(const QByteArrayList &words)
    {
        const int first = words.value(0).toInt();
        for (int i = 0; i < words.value(1).toInt(); ++i)
            edit({QByteArray::number(first + i)});
        std::puts("ran");
    }

    /// fault CALL AT ERRNO LASTING NUMBER: edits while the shim strikes, then "struck COUNT of CALLS"
    void fault(const QByteArrayList &words)
    {
        if (!m_shim.arm || !m_shim.disarm) {
            std::puts("no shim");
            return;
        }
        const QByteArray folder = QFile::encodeName(QFileInfo(userPath()).path());
        std::printf("begin %d\n", words.value(4).toInt());
        m_shim.arm(folder.constData(), words.value(0).constData(), words.value(1).toLong(), words.value(2).toInt(),
                   words.value(3).toInt());
        const char *word = m_store->edit({m_writer, words.value(4).toInt(), m_colors});
        long calls = 0;
        const long struck = m_shim.disarm(&calls);
        std::printf("%s %d\nstruck %ld of %ld\n", word, words.value(4).toInt(), struck, calls);
    }

    std::unique_ptr<Store> m_store;
    int m_writer;
    int m_colors;
    FaultShim m_shim;
};

/// Debug lines repeat every document that is saved; a fault makes Qt warn.
void dropMessages(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

std::unique_ptr<Store> storeNamed(const QByteArray &name)
{
    if (name == "library")
        return std::make_unique<LibraryStore>();
    if (name == "file")
        return std::make_unique<FileStore>();
    if (name == "plain")
        return std::make_unique<PlainStore>();
    return nullptr;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::fputs("usage: save_worker library|file|plain WRITER COLOURS\n", stderr);
        return 2;
    }
    qInstallMessageHandler(dropMessages);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QByteArray store = argv[1];
    const int writer = QByteArray(argv[2]).toInt();
    const int colors = QByteArray(argv[3]).toInt();
    std::unique_ptr<QCoreApplication> application;
    if (store == "library")
        application = std::make_unique<QGuiApplication>(argc, argv);
    else
        application = std::make_unique<QCoreApplication>(argc, argv);
    std::unique_ptr<Store> chosen = storeNamed(store);
    return chosen ? Worker(std::move(chosen), writer, colors).serve() : 2;
}
