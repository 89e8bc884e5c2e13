#include "UserColorFile_p.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QMap>
#include <QSaveFile>
#include <QThread>

#ifdef Q_OS_UNIX
#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

constexpr int LOCK_TIMEOUT_MS = 5000;
constexpr int LOCK_POLL_MS = 5;
constexpr int CONFLICTS_KEPT = 10;
constexpr qint64 COPY_BYTES = 1024 * 1024;

enum class Place { Empty, File, Other };

/// What is at \a path. Where the system cannot tell, it is Other, which is not ours to replace.
Place placeOf(const QString &path)
{
#ifdef Q_OS_UNIX
    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    if (::stat(name.constData(), &status) == 0)
        return S_ISREG(status.st_mode) ? Place::File : Place::Other;
    if (errno != ENOENT)
        return Place::Other;
    return ::lstat(name.constData(), &status) == 0 || errno != ENOENT ? Place::Other : Place::Empty;
#else
    const QFileInfo info(path);
    if (info.exists() || info.isSymLink())
        return info.isFile() ? Place::File : Place::Other;
    return Place::Empty;
#endif
}

/// The first of "path", "path.2", "path.3", … that does not exist.
QString unusedPath(const QString &path)
{
    if (placeOf(path) == Place::Empty)
        return path;
    int number = 2;
    while (QFileInfo::exists(path + '.' + QString::number(number)))
        ++number;
    return path + '.' + QString::number(number);
}

/// Brings what was written to \a file to the disk. Qt does that as well, but says nothing of a failure.
bool isOnDisk(QFileDevice &file)
{
    if (!file.flush() || file.error() != QFileDevice::NoError)
        return false;
#ifdef Q_OS_UNIX
    const bool isSynced = ::fsync(file.handle()) == 0;
    return isSynced || errno == EINVAL || errno == ENOTSUP; // some file systems know no such thing
#else
    return true;
#endif
}

/// Takes \a lock within the time that an edit may wait. QLockFile's own waiting doubles its naps, so that a busy
/// neighbour could keep it out for ever.
bool take(QLockFile &lock)
{
    // A process that dies while it takes the lock leaves one that names nobody. A living one's is never taken away.
    lock.setStaleLockTime(LOCK_TIMEOUT_MS / 5);
    QElapsedTimer timer;
    timer.start();
    while (!lock.tryLock(0)) {
        if (lock.error() != QLockFile::LockFailedError || timer.elapsed() > LOCK_TIMEOUT_MS)
            return false;
        QThread::msleep(LOCK_POLL_MS);
    }
    return true;
}

} // namespace

UserColorFile::UserColorFile(const QString &path)
    : m_path(path)
{
}

bool UserColorFile::isMissing() const
{
    return placeOf(m_path) == Place::Empty;
}

void UserColorFile::noteLoad(const QByteArray &bytes, bool isWhole)
{
    m_known = bytes;
    m_mustBackUp = m_mustBackUp || !isWhole;
}

bool UserColorFile::save(const QByteArray &bytes)
{
    QLockFile lock(m_path + ".lock");
    if (!take(lock))
        return false;
    const Place place = placeOf(m_path);
    if (place == Place::Other)
        return false;
    const bool exists = place == Place::File;
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
    if (file.write(bytes) != bytes.size() || !isOnDisk(file)) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

/// Copies the file to \a path, where nothing may be yet. \return whether the copy is on the disk.
bool UserColorFile::copyAside(const QString &path) const
{
    QFile file(m_path);
    QFile copy(path);
    if (!file.open(QIODevice::ReadOnly) || !copy.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return false;
    copy.setPermissions(file.permissions());
    QByteArray bytes = file.read(COPY_BYTES);
    while (!bytes.isEmpty() && copy.write(bytes) == bytes.size())
        bytes = file.read(COPY_BYTES);
    const bool isWhole = bytes.isEmpty() && file.error() == QFileDevice::NoError && isOnDisk(copy);
    if (!isWhole)
        copy.remove();
    return isWhole;
}

/// Copies the file to "….conflict.N" unless it is the one that this process knows; keeps the newest ten.
/// \return whether nothing would be lost.
bool UserColorFile::keepConflict() const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    if (file.size() == m_known.size() && file.readAll() == m_known)
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
