#pragma once

#include <TrelColor.h>

#include <QAbstractButton>

/// A button that holds a colour: it takes colours that are dropped on it, and its own can be dragged away.
class ColorSlot : public QAbstractButton
{
    Q_OBJECT

public:
    /// \param name what the colour is for; shown beside it and read by screen readers.
    explicit ColorSlot(const QString &name, const TrelColor &color, QWidget *parent = nullptr);

    /// The colour that it holds.
    TrelColor color() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Holds \a color from now on.
    void setColor(const TrelColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    TrelColor m_color;
    QPoint m_pressed;
};
