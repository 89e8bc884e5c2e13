#include "SliderPanel.h"

#include "GradientSlider.h"
#include "UndoKeys.h"

#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>

#include <algorithm>
#include <cmath>

namespace {

constexpr int STOPS = 13; ///< colours along a slider
constexpr int SPACE = 6;

/// Sliders count whole steps of the finest number shown.
double unitOf(const ColorField &field)
{
    return std::pow(10.0, -field.decimals);
}

} // namespace

SliderPanel::SliderPanel(QWidget *parent)
    : QWidget(parent)
    , m_layout(new QGridLayout(this))
{
    m_layout->setSpacing(SPACE);
    m_layout->setColumnStretch(1, 1);
}

void SliderPanel::clear()
{
    m_layout->setRowStretch(int(m_rows.size()), 0);
    for (const Row &row : qAsConst(m_rows)) {
        row.slider->disconnect(this);
        row.number->disconnect(this); // it may hold a number that is not whole yet
        delete row.label;
        delete row.slider;
        delete row.number;
    }
    m_rows.clear();
}

/// The widget from which Tab leads to the first row; null where there are no rows yet, or nothing but them.
QWidget *SliderPanel::widgetBefore() const
{
    if (m_rows.isEmpty())
        return nullptr;
    QWidget *first = m_rows.first().slider;
    QWidget *widget = first->previousInFocusChain(); // which is a ring
    while (widget != first && (isAncestorOf(widget) || widget->focusProxy() || !(widget->focusPolicy() & Qt::TabFocus)))
        widget = widget->previousInFocusChain();
    return widget == first ? nullptr : widget;
}

void SliderPanel::setFields(const QVector<ColorField> &fields)
{
    QWidget *before = widgetBefore();
    clear();
    for (int i = 0; i < fields.size(); ++i) {
        m_rows.append(makeRow(fields.at(i), i));
        showValue(m_rows.last());
    }
    m_layout->setRowStretch(int(fields.size()), 1);
    for (const Row &row : qAsConst(m_rows)) {
        if (before)
            setTabOrder(before, row.slider);
        setTabOrder(row.slider, row.number);
        before = row.number;
    }
}

SliderPanel::Row SliderPanel::makeRow(const ColorField &field, int place)
{
    auto *label = new QLabel(field.label);
    auto *slider = new GradientSlider;
    auto *number = new QDoubleSpinBox;
    const double unit = unitOf(field);
    slider->setRange(int(std::lround(field.minimum / unit)), int(std::lround(field.maximum / unit)));
    slider->setSingleStep(std::max(1, int(std::lround(field.step / unit))));
    slider->setPageStep(std::max(1, (slider->maximum() - slider->minimum()) / 10));
    number->setRange(field.minimum, field.maximum);
    number->setDecimals(field.decimals);
    number->setSingleStep(field.step);
    number->setSuffix(field.unit);
    number->setKeyboardTracking(false);                      // half a number would flash in the light that it goes to
    number->findChild<QLineEdit *>()->setAcceptDrops(false); // a colour that is dropped here is for the editor
    UndoKeys::leaveToWindow(number);
    number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setBuddy(number);
    for (QWidget *widget : {static_cast<QWidget *>(slider), static_cast<QWidget *>(number)}) {
        widget->setAccessibleName(field.label);
        widget->setAccessibleDescription(field.hint);
        widget->setToolTip(field.hint);
    }
    m_layout->addWidget(label, place, 0);
    m_layout->addWidget(slider, place, 1);
    m_layout->addWidget(number, place, 2);
    connect(slider, &QSlider::valueChanged, this, [this, place, unit](int value) { edit(place, value * unit); });
    connect(number, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
            [this, place](double value) { edit(place, value); });
    return {field, field.minimum, label, slider, number};
}

void SliderPanel::showValue(const Row &row)
{
    const QSignalBlocker quietSlider(row.slider);
    const QSignalBlocker quietNumber(row.number);
    row.slider->setValue(int(std::lround(row.value / unitOf(row.field))));
    row.number->setValue(row.value);
}

QVector<double> SliderPanel::values() const
{
    QVector<double> result;
    for (const Row &row : m_rows)
        result.append(row.value);
    return result;
}

void SliderPanel::setValues(const QVector<double> &values)
{
    for (int i = 0; i < m_rows.size(); ++i) {
        Row &row = m_rows[i];
        row.value = std::clamp(values.at(i), row.field.minimum, row.field.maximum);
        showValue(row);
    }
    renewGradients();
}

void SliderPanel::setPreview(const std::function<QColor(const QVector<double> &)> &preview)
{
    m_preview = preview;
    renewGradients();
}

void SliderPanel::edit(int place, double value)
{
    Row &row = m_rows[place];
    row.value = std::clamp(value, row.field.minimum, row.field.maximum);
    showValue(row);
    renewGradients();
    Q_EMIT edited();
}

void SliderPanel::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    renewGradients();
}

void SliderPanel::renewGradients()
{
    if (!m_preview || !isVisible())
        return;
    for (int i = 0; i < m_rows.size(); ++i) {
        const ColorField &field = m_rows.at(i).field;
        QVector<double> at = values();
        QVector<QColor> colors;
        for (int stop = 0; stop < STOPS; ++stop) {
            at[i] = field.minimum + (field.maximum - field.minimum) * stop / (STOPS - 1);
            colors.append(m_preview(at));
        }
        m_rows.at(i).slider->setGradient(colors);
    }
}
