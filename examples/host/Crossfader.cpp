#include "Crossfader.h"

#include "ColorSlot.h"
#include "Theme.h"
#include "UndoKeys.h"

#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>

namespace {

constexpr int STEPS = 1000;  // of the slider
constexpr int FRAME_MS = 22; // a new blend for about each DMX frame
constexpr double MAX_SECONDS = 3600.0;

QLabel *makeTitle(const QString &text)
{
    auto *label = new QLabel(text);
    label->setObjectName(QStringLiteral("paneTitle"));
    return label;
}

} // namespace

Crossfader::Crossfader(QWidget *parent)
    : QWidget(parent)
    , m_currentColor(TrelColor::fromRgb(0xffffff))
    , m_from(new ColorSlot(tr("From"), TrelColor::fromRgb(0)))
    , m_to(new ColorSlot(tr("To"), TrelColor::fromRgb(0xffffff)))
    , m_slider(new QSlider(Qt::Horizontal))
    , m_seconds(new QDoubleSpinBox)
    , m_go(new QPushButton)
{
    auto *timeLabel = new QLabel(tr("&Time"));
    timeLabel->setBuddy(m_seconds);
    UndoKeys::leaveToWindow(m_seconds);
    auto *layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(makeTitle(tr("Crossfade")), 0, 0, 1, 2);
    layout->addWidget(m_from, 1, 0);
    layout->addWidget(m_to, 1, 1);
    layout->addWidget(m_slider, 2, 0, 1, 2);
    layout->addWidget(timeLabel, 3, 0);
    layout->addWidget(m_seconds, 3, 1);
    layout->addWidget(m_go, 4, 0, 1, 2);
    layout->setRowStretch(5, 1);

    m_slider->setRange(0, STEPS);
    m_slider->setPageStep(STEPS / 10);
    m_slider->setSingleStep(STEPS / 100);
    m_slider->setAccessibleName(tr("Crossfade position"));
    m_seconds->setRange(0.0, MAX_SECONDS);
    m_seconds->setDecimals(1);
    m_seconds->setSingleStep(0.5);
    m_seconds->setValue(3.0);
    m_seconds->setSuffix(tr(" s"));
    m_timer.setInterval(FRAME_MS);
    m_timer.setTimerType(Qt::PreciseTimer);

    connect(m_from, &QAbstractButton::clicked, this, [this] { m_from->setColor(m_currentColor); });
    connect(m_to, &QAbstractButton::clicked, this, [this] { m_to->setColor(m_currentColor); });
    connect(m_slider, &QSlider::valueChanged, this, &Crossfader::onSliderMoved);
    connect(m_slider, &QSlider::sliderPressed, this, [this] {
        m_timer.stop(); // the hand goes on from here
        showPosition();
    });
    connect(m_slider, &QSlider::sliderReleased, this, &Crossfader::finish);
    connect(m_go, &QPushButton::clicked, this, &Crossfader::toggle);
    connect(&m_timer, &QTimer::timeout, this, [this] { advance(m_clock.elapsed()); });
    showPosition();
}

TrelColor Crossfader::color() const
{
    return TrelColor::blend(m_to->color(), m_from->color(), position());
}

double Crossfader::position() const
{
    return double(m_slider->value()) / STEPS;
}

bool Crossfader::isRunning() const
{
    return m_timer.isActive();
}

void Crossfader::setCurrentColor(const TrelColor &color)
{
    m_currentColor = color;
}

void Crossfader::toggle()
{
    if (isRunning()) {
        finish();
        return;
    }
    m_start = position();
    m_end = m_start < 1.0 ? 1.0 : 0.0;
    m_isFading = true;
    Q_EMIT started();
    m_clock.start();
    m_timer.start();
    showPosition();
}

void Crossfader::advance(qint64 elapsed)
{
    if (!isRunning())
        return;
    const double total = m_seconds->value() * 1000.0;
    const double share = total > 0.0 ? qMin(1.0, double(elapsed) / total) : 1.0;
    m_slider->setValue(qRound((m_start + (m_end - m_start) * share) * STEPS));
    if (share >= 1.0)
        finish();
}

void Crossfader::onSliderMoved()
{
    if (!m_isFading) {
        m_isFading = true;
        Q_EMIT started();
    }
    Q_EMIT moved(color());
    const bool isByKey = !isRunning() && !m_slider->isSliderDown();
    if (isByKey)
        finish();
}

void Crossfader::finish()
{
    m_timer.stop();
    showPosition();
    if (!m_isFading)
        return;
    m_isFading = false;
    Q_EMIT finished(color());
}

void Crossfader::showPosition()
{
    m_go->setText(isRunning() ? tr("Stop") : tr("Start Fade"));
    m_go->setIcon(Theme::icon(isRunning() ? QStringLiteral("stop") : QStringLiteral("play")));
}
