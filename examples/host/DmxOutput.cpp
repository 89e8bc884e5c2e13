#include "DmxOutput.h"

#include "Patch.h"

#include <QStringList>

namespace {

constexpr int RETRY_FRAMES = DmxOutput::FRAMES_PER_SECOND;
constexpr int QUESTION_FRAMES = DmxOutput::FRAMES_PER_SECOND;
constexpr int FAREWELL_FRAMES = DmxOutput::FRAMES_PER_SECOND;

QString listed(const QVector<int> &numbers)
{
    QStringList texts;
    for (const int number : numbers)
        texts.append(QString::number(number));
    return texts.join(QStringLiteral(", "));
}

} // namespace

bool DmxOutput::Status::operator==(const Status &other) const
{
    return state == other.state && universes == other.universes && deadUniverses == other.deadUniverses;
}

DmxOutput::DmxOutput(const Patch *patch, std::unique_ptr<DmxSink> sink, QObject *parent)
    : QObject(parent)
    , m_patch(patch)
    , m_sink(std::move(sink))
    , m_pacer(FRAMES_PER_SECOND)
{
    m_status.state = m_sink ? Off : Unavailable;
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &DmxOutput::onTimeout);
}

bool DmxOutput::isEnabled() const
{
    return m_isEnabled;
}

DmxOutput::Status DmxOutput::status() const
{
    return m_status;
}

QString DmxOutput::statusText() const
{
    switch (m_status.state) {
    case Unavailable:
        return tr("This build has no DMX output");
    case Off:
        return tr("DMX output is off");
    case Disconnected:
        return tr("The OLA daemon does not answer, trying again");
    case Sending:
        break;
    }
    if (m_status.universes.isEmpty())
        return tr("DMX output: nothing is patched");
    if (!m_status.deadUniverses.isEmpty())
        return tr("Universes without an output port in OLA: %1").arg(listed(m_status.deadUniverses));
    if (m_isBlackout)
        return tr("Blackout");
    return m_status.universes.size() == 1 ? tr("Sending universe %1").arg(m_status.universes.first())
                                          : tr("Sending universes %1").arg(listed(m_status.universes));
}

void DmxOutput::setEnabled(bool enabled)
{
    if (!m_sink || enabled == m_isEnabled)
        return;
    m_isEnabled = enabled;
    m_framesToRetry = 0;
    if (enabled) {
        m_pacer.start(FramePacer::Clock::now());
        m_timer.start(0);
    } else {
        m_timer.stop();
    }
    updateStatus(enabled ? (m_isOpen ? Sending : Disconnected) : Off);
}

void DmxOutput::setBlackout(bool blackout)
{
    if (blackout == m_isBlackout)
        return;
    m_isBlackout = blackout;
    Q_EMIT statusChanged();
}

void DmxOutput::onTimeout()
{
    if (m_pacer.take(FramePacer::Clock::now()))
        sendFrame();
    m_timer.start(m_pacer.wait(FramePacer::Clock::now()));
}

void DmxOutput::sendFrame()
{
    if (!m_isEnabled)
        return;
    m_isOpen = (m_isOpen || reopen()) && sendUniverses();
    if (m_isOpen && --m_framesToQuestion <= 0) {
        m_sink->askForUniverses();
        m_framesToQuestion = QUESTION_FRAMES;
    }
    m_sink->process();
    updateStatus(m_isOpen ? Sending : Disconnected);
}

bool DmxOutput::reopen()
{
    if (--m_framesToRetry > 0)
        return false;
    m_framesToRetry = RETRY_FRAMES;
    m_framesToQuestion = 0;
    return m_sink->open();
}

bool DmxOutput::sendUniverses()
{
    const QVector<int> universes = m_patch->universes();
    for (const int universe : universes)
        m_framesLeft.insert(universe, FAREWELL_FRAMES);
    const QByteArray zeros(Fixture::SLOTS, '\0');
    for (auto entry = m_framesLeft.begin(); entry != m_framesLeft.end();) {
        const bool isPatched = universes.contains(entry.key());
        if (!m_sink->send(entry.key(), isPatched && !m_isBlackout ? m_patch->frame(entry.key()) : zeros))
            return false;
        const bool isOver = !isPatched && --entry.value() <= 0;
        entry = isOver ? m_framesLeft.erase(entry) : std::next(entry);
    }
    return true;
}

QVector<int> DmxOutput::deadUniverses(const QVector<int> &universes) const
{
    QVector<int> dead;
    const std::optional<QSet<int>> known = m_sink->knownUniverses();
    for (const int universe : universes) {
        if (known && !known->contains(universe))
            dead.append(universe);
    }
    return dead;
}

void DmxOutput::updateStatus(State state)
{
    Status status;
    status.state = state;
    status.universes = m_patch->universes();
    if (state == Sending)
        status.deadUniverses = deadUniverses(status.universes);
    if (status == m_status)
        return;
    m_status = status;
    Q_EMIT statusChanged();
}
