#include "Progress.h"

#include <cstdio>

#include <unistd.h>

namespace {

constexpr qint64 PATIENCE_MS = 1000;
constexpr qint64 STEP_MS = 100;
constexpr int WIDTH = 40;

void write(const QString &text)
{
    std::fputs(text.toUtf8().constData(), stderr);
    std::fflush(stderr);
}

} // namespace

Progress::Progress(const QString &label, qint64 total)
    : m_label(label)
    , m_total(qMax(total, qint64(1)))
    , m_nextMs(PATIENCE_MS)
    , m_isTerminal(isatty(STDERR_FILENO) == 1)
{
    m_timer.start();
}

Progress::~Progress()
{
    if (m_isShown)
        write(QStringLiteral("\r\033[K"));
}

void Progress::show(qint64 done)
{
    if (!m_isTerminal || m_timer.elapsed() < m_nextMs)
        return;
    m_nextMs = m_timer.elapsed() + STEP_MS;
    m_isShown = true;
    const double fraction = qBound(0.0, double(done) / double(m_total), 1.0);
    const int filled = int(fraction * WIDTH);
    write(QStringLiteral("\r%1 [%2%3] %4 %")
              .arg(m_label, QString(filled, '#'), QString(WIDTH - filled, ' '), QString::number(int(fraction * 100))));
}
