#pragma once

#include <QElapsedTimer>
#include <QString>

/// A bar on standard error while a work lasts: only on a terminal, and only once the work has taken a second. It is
/// wiped at the end.
class Progress
{
public:
    /// \param total amount of work, in any unit
    Progress(const QString &label, qint64 total);
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;
    ~Progress();

    /// Shows that \a done of the total is done. May be called as often as one likes.
    void show(qint64 done);

private:
    QString m_label;
    qint64 m_total;
    QElapsedTimer m_timer;
    qint64 m_nextMs;
    bool m_isTerminal;
    bool m_isShown = false;
};
