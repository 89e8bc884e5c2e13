#include "UserColorFile_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QMap>
#include <QSaveFile>

namespace {

constexpr int LOCK_TIMEOUT_MS = 5000;
constexpr int CONFLICTS_KEPT = 10;

/// The first of "path", "path.2", "path.3", … that does not exist.
QString unusedPath(const QString &path)
{
    if (!QFileInfo::exists(path))
        return path;
    int number = 2;
    while (QFileInfo::exists(path + '.' + QString::number(number)))
        ++number;
    return path + '.' + QString::number(number);
}

} // namespace

UserColorFile::UserColorFile(const QString &path)
    : m_path(path)
{
}

void UserColorFile::noteLoad(const QByteArray &bytes, bool isWhole)
{
    m_known = bytes;
    m_mustBackUp = m_mustBackUp || !isWhole;
}

bool UserColorFile::save(const QByteArray &bytes)
{
    QLockFile lock(m_path + ".lock");
    if (!lock.tryLock(LOCK_TIMEOUT_MS))
        return false;
    const QFileInfo info(m_path);
    const bool exists = info.isFile();
    if (!exists && (info.exists() || info.isSymLink()))
        return false; // a folder, a pipe or a link to nowhere is not ours to replace
    if (exists && m_mustBackUp && !copyAside(unusedPath(m_path + ".bak")))
        return false;
    if (exists && !m_mustBackUp && !keepConflict())
        return false;
    m_mustBackUp = false;
    if (!replace(bytes))
        return false;
    m_known = bytes;
    return true;
}

bool UserColorFile::replace(const QByteArray &bytes) const
{
    QSaveFile file(m_path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const bool isWritten = file.write(bytes) == bytes.size() && file.flush() && file.error() == QFileDevice::NoError;
    if (!isWritten) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

bool UserColorFile::copyAside(const QString &path) const
{
    return QFile::copy(m_path, path);
}

/// Copies the file to "….conflict.N" unless it is the one that this process knows; keeps the newest ten.
/// \return whether nothing would be lost.
bool UserColorFile::keepConflict() const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    if (m_known && file.readAll() == *m_known)
        return true;
    file.close();

    const QFileInfo info(m_path);
    const QString prefix = info.fileName() + ".conflict.";
    QDir folder = info.dir();
    int newest = 0;
    QMap<int, QString> conflicts;
    const QStringList names = folder.entryList(QDir::Files);
    for (const QString &name : names) {
        const int number = name.startsWith(prefix) ? name.mid(prefix.size()).toInt() : 0;
        if (number > 0)
            conflicts.insert(number, name);
        newest = qMax(newest, number);
    }
    if (!copyAside(folder.filePath(prefix + QString::number(newest + 1))))
        return false;
    while (conflicts.size() >= CONFLICTS_KEPT)
        folder.remove(conflicts.take(conflicts.firstKey()));
    return true;
}
