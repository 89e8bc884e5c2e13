// Runs the inputs of a target that are kept, files or folders of them, without a fuzzer.

#include "Fuzz.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

namespace {

bool replay(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    std::printf("%s\n", qPrintable(QFileInfo(path).fileName())); // the last one is the culprit
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.constData()), std::size_t(bytes.size()));
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    LLVMFuzzerInitialize(&argc, &argv);
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        const QDir folder(QFile::decodeName(argv[i]));
        const QStringList names = folder.entryList(QDir::Files, QDir::Name);
        for (const QString &name : names)
            count += replay(folder.filePath(name)) ? 1 : 0;
    }
    std::printf("%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
