#include "GradientSlider.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr int STRIPE_HEIGHT = 12;
constexpr int HANDLE_WIDTH = 8;
constexpr int HEIGHT = 24;
constexpr int WIDTH = 140;
constexpr int MIN_WIDTH = 60;
constexpr double ROUNDING = 3.0;

} // namespace

GradientSlider::GradientSlider(QWidget *parent)
    : QSlider(Qt::Horizontal, parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void GradientSlider::setGradient(const QVector<QColor> &colors)
{
    if (colors == m_gradient)
        return;
    m_gradient = colors;
    update();
}

QSize GradientSlider::sizeHint() const
{
    return QSize(WIDTH, HEIGHT);
}

QSize GradientSlider::minimumSizeHint() const
{
    return QSize(MIN_WIDTH, HEIGHT);
}

QRectF GradientSlider::stripe() const
{
    const double margin = HANDLE_WIDTH / 2.0 + 1.0;
    return QRectF(margin, (HEIGHT - STRIPE_HEIGHT) / 2.0, std::max(1.0, width() - 2.0 * margin), STRIPE_HEIGHT);
}

double GradientSlider::placeOf(int value) const
{
    const double range = std::max(1, maximum() - minimum());
    return stripe().left() + stripe().width() * (value - minimum()) / range;
}

int GradientSlider::valueAt(double place) const
{
    const double share = std::clamp((place - stripe().left()) / stripe().width(), 0.0, 1.0);
    return minimum() + int(std::lround(share * (maximum() - minimum())));
}

void GradientSlider::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawStripe(painter);
    drawHandle(painter);
}

void GradientSlider::drawStripe(QPainter &painter) const
{
    const QRectF rect = stripe();
    QLinearGradient gradient(rect.topLeft(), rect.topRight());
    const int last = int(m_gradient.size()) - 1;
    for (int i = 0; i <= last; ++i)
        gradient.setColorAt(last > 0 ? double(i) / last : 0.0, m_gradient.at(i));
    painter.setOpacity(isEnabled() ? 1.0 : 0.3);
    painter.setPen(QPen(palette().color(QPalette::Mid), 1));
    painter.setBrush(m_gradient.isEmpty() ? palette().brush(QPalette::Mid) : QBrush(gradient));
    painter.drawRoundedRect(rect.adjusted(-0.5, -0.5, 0.5, 0.5), ROUNDING, ROUNDING);
}

void GradientSlider::drawHandle(QPainter &painter) const
{
    const double place = placeOf(value());
    const QRectF handle(place - HANDLE_WIDTH / 2.0, stripe().top() - 4.0, HANDLE_WIDTH, STRIPE_HEIGHT + 8.0);
    painter.setPen(QPen(hasFocus() ? palette().color(QPalette::Highlight) : palette().color(QPalette::Shadow),
                        hasFocus() ? 2.0 : 1.0));
    painter.setBrush(palette().color(QPalette::Active, QPalette::ButtonText));
    painter.drawRoundedRect(handle, ROUNDING, ROUNDING);
}

void GradientSlider::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    setSliderDown(true);
    setValue(valueAt(event->pos().x()));
}

void GradientSlider::mouseMoveEvent(QMouseEvent *event)
{
    if (isSliderDown())
        setValue(valueAt(event->pos().x()));
}

void GradientSlider::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        setSliderDown(false);
}
