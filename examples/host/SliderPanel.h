#pragma once

#include "ColorForm.h"

#include <QVector>
#include <QWidget>

#include <functional>

class GradientSlider;
class QDoubleSpinBox;
class QGridLayout;

/// A row with label, slider and number for each field of a colour form.
class SliderPanel : public QWidget
{
    Q_OBJECT

public:
    /// Without rows.
    explicit SliderPanel(QWidget *parent = nullptr);

    /// Makes the rows; the values become the fields' minima.
    void setFields(const QVector<ColorField> &fields);

    /// The values as they were set or edited, finer than the numbers show them.
    QVector<double> values() const;
    /// Shows \a values, as many as there are fields, without emitting edited().
    void setValues(const QVector<double> &values);

    /// What a slider's places give: the colour for the panel's values with one of them replaced. Called for each
    /// shown slider whenever something changes.
    void setPreview(const std::function<QColor(const QVector<double> &values)> &preview);

Q_SIGNALS:
    /// The user changed a value.
    void edited();

protected:
    void showEvent(QShowEvent *event) override;

private:
    struct Row
    {
        ColorField field;
        double value;
        QWidget *label;
        GradientSlider *slider;
        QDoubleSpinBox *number;
    };

    Row makeRow(const ColorField &field, int place);
    void clear();
    QWidget *widgetBefore() const;
    void showValue(const Row &row);
    void edit(int place, double value);
    void renewGradients();

    QGridLayout *m_layout;
    QVector<Row> m_rows;
    std::function<QColor(const QVector<double> &)> m_preview;
};
