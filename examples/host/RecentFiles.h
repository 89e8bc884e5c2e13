#pragma once

#include <QMenu>
#include <QStringList>

/// The menu of the files that were opened or saved last, newest first; kept in the user's settings.
class RecentFiles : public QMenu
{
    Q_OBJECT

public:
    static constexpr int MAX_FILES = 8; ///< the oldest make room

    /// The menu with the files of the settings.
    explicit RecentFiles(const QString &title, QWidget *parent = nullptr);

    /// Absolute paths.
    QStringList paths() const;
    /// Puts \a path first.
    void add(const QString &path);
    /// Forgets \a path.
    void remove(const QString &path);

Q_SIGNALS:
    /// The user chose a file.
    void chosen(const QString &path);

private:
    void setPaths(const QStringList &paths);
    void rebuild();
};
