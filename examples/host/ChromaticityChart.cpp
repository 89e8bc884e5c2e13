#include "ChromaticityChart.h"

#include "ColorText.h"

#include <QPainter>

ChromaticityChart::ChromaticityChart(QWidget *parent)
    : QWidget(parent)
{
}

TrelColor ChromaticityChart::color() const
{
    return m_color;
}

QSize ChromaticityChart::sizeHint() const
{
    return QSize(360, 400);
}

QSize ChromaticityChart::minimumSizeHint() const
{
    return QSize(180, 200);
}

void ChromaticityChart::setColor(const TrelColor &color)
{
    if (!ColorText::problemOf(color).isEmpty())
        return;
    m_color = color;
    update();
}

void ChromaticityChart::setProfile(ColorUtils::HuelockProfileID profile)
{
    m_profile = profile;
    update();
}

void ChromaticityChart::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), m_color.getQColor(true));
}
