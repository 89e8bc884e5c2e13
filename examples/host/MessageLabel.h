#pragma once

#include <QLabel>

/// A line or more of text under a control, in the colour of warnings where it is one.
class MessageLabel : public QLabel
{
    Q_OBJECT

public:
    explicit MessageLabel(QWidget *parent = nullptr);

    /// Shows \a text as a remark.
    void remark(const QString &text);
    /// Shows \a text as a warning, and has screen readers say it.
    void warn(const QString &text);

protected:
    void changeEvent(QEvent *event) override;

private:
    void colorText();

    bool m_isWarning = false;
    bool m_isColoring = false;
};
