#include "CctStrip.h"

#include "ColorForm.h"
#include "ColorText.h"
#include "Fixture.h"

#include <CCTUtils.h>

#include <QLocale>
#include <QPainter>
#include <QSignalBlocker>

#include <algorithm>
#include <cmath>

namespace {

constexpr double MIRED = 1e6; ///< mired × kelvin
constexpr int STOPS = 24;
constexpr int SINGLE_STEP = 50;
constexpr int PAGE_STEP = 500;
constexpr int LABELLED[] = {2000, 2700, 3200, 4000, 5600, 6500, 10000};
constexpr int STRIPE_BOTTOM = 24;
constexpr int LABEL_ALPHA = 180;

double miredOf(int cct)
{
    return MIRED / cct;
}

int onGrid(double cct)
{
    const int step = CCTUtils::getCCTStepSize();
    return std::clamp(int(std::lround(cct / step)) * step, CCTUtils::getMinCCT(), CCTUtils::getMaxCCT());
}

ColorForm whiteForm()
{
    return ColorForm(ColorForm::White, ColorUtils::GENERIC_RGB);
}

} // namespace

CctStrip::CctStrip(QWidget *parent)
    : GradientSlider(parent)
{
    setAccessibleName(tr("Colour temperature"));
    setRange(CCTUtils::getMinCCT(), CCTUtils::getMaxCCT());
    setSingleStep(SINGLE_STEP);
    setPageStep(PAGE_STEP);
    QVector<QColor> colors;
    for (int i = 0; i < STOPS; ++i) {
        const double share = double(i) / (STOPS - 1);
        const double mired = miredOf(minimum()) + share * (miredOf(maximum()) - miredOf(minimum()));
        double x = 0.0;
        double y = 0.0;
        CCTUtils::getxyFromCCT(onGrid(MIRED / mired), x, y);
        colors.append(TrelColor(x, y).getQColor(true));
    }
    setGradient(colors);
    showColor(m_color);
    connect(this, &QSlider::valueChanged, this, &CctStrip::pick);
}

TrelColor CctStrip::color() const
{
    return m_color;
}

QSize CctStrip::sizeHint() const
{
    return QSize(360, STRIPE_BOTTOM + fontMetrics().height());
}

QSize CctStrip::minimumSizeHint() const
{
    return QSize(160, STRIPE_BOTTOM + fontMetrics().height());
}

void CctStrip::setColor(const TrelColor &color)
{
    // Its own colour comes back from the window: to measure it again would wear off the tint.
    if (ColorText::problemOf(color).isEmpty() && !isSameColor(color, m_color))
        showColor(color);
}

void CctStrip::showColor(const TrelColor &color)
{
    m_color = color;
    if (whiteForm().canShow(color)) {
        const QVector<double> white = whiteForm().values(color, {});
        const QSignalBlocker quiet(this);
        setValue(int(white.at(0)));
        m_tint = int(white.at(1));
    } else {
        m_tint = 0;
    }
    update();
}

void CctStrip::pick(int cct)
{
    const double luminance = whiteForm().values(m_color, {}).at(2);
    m_color = whiteForm().color({double(onGrid(cct)), double(m_tint), luminance}, m_color.alpha16());
    setAccessibleDescription(tr("%1 K").arg(QLocale().toString(cct)));
    setToolTip(accessibleDescription());
    Q_EMIT colorChanged(m_color);
}

double CctStrip::placeOf(int value) const
{
    const double range = miredOf(maximum()) - miredOf(minimum());
    return stripe().left() + stripe().width() * (miredOf(value) - miredOf(minimum())) / range;
}

int CctStrip::valueAt(double place) const
{
    const double share = std::clamp((place - stripe().left()) / stripe().width(), 0.0, 1.0);
    return onGrid(MIRED / (miredOf(minimum()) + share * (miredOf(maximum()) - miredOf(minimum()))));
}

void CctStrip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawStripe(painter);
    drawLabels(painter);
    if (!whiteForm().canShow(m_color))
        painter.setOpacity(0.4);
    drawHandle(painter);
}

/// As many as have room.
void CctStrip::drawLabels(QPainter &painter) const
{
    const QFontMetrics metrics(painter.font());
    double free = 0.0;
    QColor ink = palette().color(QPalette::WindowText);
    ink.setAlpha(LABEL_ALPHA);
    painter.setPen(ink);
    for (const int cct : LABELLED) {
        const QString text = tr("%1 K").arg(cct);
        const double textWidth = metrics.horizontalAdvance(text);
        const double left = std::clamp(placeOf(cct) - textWidth / 2.0, 0.0, std::max(0.0, width() - textWidth));
        if (left < free || left + textWidth > width())
            continue;
        painter.drawText(QPointF(left, STRIPE_BOTTOM + metrics.ascent()), text);
        free = left + textWidth + metrics.averageCharWidth();
    }
}
