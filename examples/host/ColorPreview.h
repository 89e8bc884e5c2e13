#pragma once

#include <TrelColor.h>

#include <QPoint>
#include <QWidget>

/// A large swatch: the wanted colour, and beside it, where a fixture gives another one, that one. It can be dragged.
class ColorPreview : public QWidget
{
    Q_OBJECT

public:
    explicit ColorPreview(QWidget *parent = nullptr);

    /// \param given the same as \a wanted where the fixture can give it.
    void setColors(const TrelColor &wanted, const TrelColor &given, bool isClamped);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    TrelColor m_wanted;
    TrelColor m_given;
    bool m_isClamped = false;
    QPoint m_pressed;
};
