#include "RecentFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

namespace {

constexpr char KEY[] = "recentFiles";

QString absolute(const QString &path)
{
    return QFileInfo(path).absoluteFilePath();
}

} // namespace

RecentFiles::RecentFiles(const QString &title, QWidget *parent)
    : QMenu(title, parent)
{
    setToolTipsVisible(true);
    rebuild();
}

QStringList RecentFiles::paths() const
{
    return QSettings().value(KEY).toStringList();
}

void RecentFiles::add(const QString &path)
{
    QStringList all = paths();
    all.removeAll(absolute(path));
    all.prepend(absolute(path));
    setPaths(all.mid(0, MAX_FILES));
}

void RecentFiles::remove(const QString &path)
{
    QStringList all = paths();
    all.removeAll(absolute(path));
    setPaths(all);
}

void RecentFiles::setPaths(const QStringList &paths)
{
    QSettings().setValue(KEY, paths);
    rebuild();
}

void RecentFiles::rebuild()
{
    clear();
    const QStringList all = paths();
    setEnabled(!all.isEmpty());
    for (int i = 0; i < all.size(); ++i) {
        const QString &path = all.at(i);
        const QString name = QFileInfo(path).completeBaseName().replace('&', QStringLiteral("&&"));
        QAction *action = addAction(QStringLiteral("&%1 %2").arg(QString::number(i + 1), name));
        action->setToolTip(QDir::toNativeSeparators(path));
        connect(action, &QAction::triggered, this, [this, path] { Q_EMIT chosen(path); });
    }
}
