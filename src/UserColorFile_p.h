#pragma once

#include <QByteArray>
#include <QString>

/// The user's colour file on disk, saved so that no colour is ever lost: a save leaves the old file or the new
/// one, whole, and what another process or a failed load would lose is copied aside first.
class UserColorFile
{
public:
    explicit UserColorFile(const QString &path);

    /// Whether there is certainly no file, and nothing else, under the path.
    bool isMissing() const;

    /// Takes note of what a load found: the bytes that were read, or that the file exists but could not be read
    /// whole, so that the next save copies it to "….bak".
    void noteLoad(const QByteArray &bytes, bool isWhole);

    /// Replaces the file by \a bytes. \return whether it did, and they are on the disk; otherwise the old file is
    /// still there.
    bool save(const QByteArray &bytes);

private:
    bool replace(const QByteArray &bytes) const;
    bool copyAside(const QString &path) const;
    bool keepConflict() const;

    QString m_path;
    QByteArray m_known; ///< what this process last read or wrote; before that nothing, which no save would lose
    bool m_mustBackUp = false;
};
