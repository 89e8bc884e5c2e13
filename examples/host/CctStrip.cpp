#include "CctStrip.h"

#include "ColorText.h"

#include <QPainter>

CctStrip::CctStrip(QWidget *parent)
    : QWidget(parent)
{
}

TrelColor CctStrip::color() const
{
    return m_color;
}

QSize CctStrip::sizeHint() const
{
    return QSize(360, 44);
}

QSize CctStrip::minimumSizeHint() const
{
    return QSize(160, 44);
}

void CctStrip::setColor(const TrelColor &color)
{
    if (!ColorText::problemOf(color).isEmpty())
        return;
    m_color = color;
    update();
}

void CctStrip::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), m_color.getQColor(true));
}
