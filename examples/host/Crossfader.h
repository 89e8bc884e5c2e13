#pragma once

#include <TrelColor.h>

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

class ColorSlot;
class QDoubleSpinBox;
class QPushButton;
class QSlider;

/// Blends two colours, by hand or over time.
///
/// A colour slot takes the current colour when it is clicked, and any that is dropped on it.
class Crossfader : public QWidget
{
    Q_OBJECT

public:
    /// From black to white.
    explicit Crossfader(QWidget *parent = nullptr);

    /// The blend at the slider.
    TrelColor color() const;
    /// The slider, 0 for the first colour to 1 for the second.
    double position() const;
    /// Whether a fade over time is under way.
    bool isRunning() const;

public Q_SLOTS:
    /// What a slot takes when it is clicked.
    void setCurrentColor(const TrelColor &color);
    /// Goes to the other end over the set time, or stops where it is.
    void toggle();
    /// Places a fade that is under way \a elapsed milliseconds behind its start; it ends behind its time.
    void advance(qint64 elapsed);

Q_SIGNALS:
    /// A fade or a movement by hand begins.
    void started();
    /// The blend on the way.
    void moved(const TrelColor &color);
    /// The blend where it ended.
    void finished(const TrelColor &color);

private:
    void onSliderMoved();
    void finish();
    void showPosition();

    TrelColor m_currentColor;
    ColorSlot *m_from;
    ColorSlot *m_to;
    QSlider *m_slider;
    QDoubleSpinBox *m_seconds;
    QPushButton *m_go;
    QTimer m_timer;
    QElapsedTimer m_clock;
    double m_start = 0.0; ///< position where the fade began
    double m_end = 1.0;   ///< position where it ends
    bool m_isFading = false;
};
