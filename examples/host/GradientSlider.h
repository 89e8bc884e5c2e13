#pragma once

#include <QColor>
#include <QSlider>
#include <QVector>

/// A horizontal slider over a stripe that shows what each of its places gives.
class GradientSlider : public QSlider
{
    Q_OBJECT

public:
    explicit GradientSlider(QWidget *parent = nullptr);

    /// The stripe's colours, evenly spaced from the left end to the right one.
    void setGradient(const QVector<QColor> &colors);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

    /// The stripe, in the widget.
    QRectF stripe() const;
    /// Where the handle stands for \a value, and which value stands at a place.
    virtual double placeOf(int value) const;
    virtual int valueAt(double place) const;

    /// Draws the stripe and the handle.
    void drawStripe(QPainter &painter) const;
    void drawHandle(QPainter &painter) const;

private:
    QVector<QColor> m_gradient;
};
