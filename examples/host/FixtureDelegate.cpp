#include "FixtureDelegate.h"

#include "FixtureTable.h"
#include "Patch.h"
#include "Theme.h"

#include <QApplication>
#include <QComboBox>
#include <QFontDatabase>
#include <QLineEdit>
#include <QPainter>
#include <QSpinBox>

namespace {

constexpr int MARGIN = 4;
constexpr int BAR_GAP = 2;
constexpr int EDGE = 2;
constexpr int EDGE_DARKNESS = 150; ///< percent
constexpr int SWATCH_WIDTH = 34;
constexpr int BARS_WIDTH = 96;
constexpr int ROW_PADDING = 10;

void drawBackground(QPainter *painter, const QStyleOptionViewItem &option)
{
    const QWidget *widget = option.widget;
    const QStyle *style = widget ? widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, widget);
}

void drawSwatch(QPainter *painter, const QRect &cell, const QColor &color, const QPalette &palette)
{
    const QRect frame = cell.adjusted(MARGIN, MARGIN, -MARGIN, -MARGIN);
    painter->setPen(palette.color(QPalette::Mid));
    painter->setBrush(color);
    painter->drawRoundedRect(QRectF(frame).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
}

/// Bars from the bottom up, one a channel, each in a trough so that a dark channel is seen as one.
void drawBars(QPainter *painter, const QRect &cell, const QVector<double> &levels, const QString &letters,
              const QPalette &palette)
{
    const QRectF area = QRectF(cell).adjusted(MARGIN, MARGIN, -MARGIN, -MARGIN);
    const qreal width = qMin(22.0, (area.width() + BAR_GAP) / qMax(1, int(levels.size())) - BAR_GAP);
    painter->setPen(Qt::NoPen);
    for (int i = 0; i < levels.size(); ++i) {
        const QRectF trough(area.left() + i * (width + BAR_GAP), area.top(), width, area.height());
        painter->setBrush(palette.color(QPalette::Midlight));
        painter->drawRect(trough);
        QRectF bar = trough;
        bar.setTop(trough.bottom() - trough.height() * levels.at(i));
        const QColor color = Theme::channelColor(i < letters.size() ? letters.at(i) : QChar('D'));
        painter->fillRect(bar, color);
        bar.setWidth(EDGE); // an edge, by which a white bar is seen in a light trough
        painter->fillRect(bar, color.darker(EDGE_DARKNESS));
    }
}

QComboBox *makeComboBox(QWidget *parent, const QVector<Patch::Choice> &choices)
{
    auto *box = new QComboBox(parent);
    for (const Patch::Choice &choice : choices)
        box->addItem(choice.text, choice.value);
    return box;
}

QSpinBox *makeSpinBox(QWidget *parent, int minimum, int maximum)
{
    auto *box = new QSpinBox(parent);
    box->setFrame(false);
    box->setRange(minimum, maximum);
    return box;
}

/// Room for the largest bytes, so that the column stays as it is while colours change.
int widthOfBytes(QStyleOptionViewItem option, const QModelIndex &index)
{
    const int count = int(index.data().toString().count(QLatin1Char(' '))) + 1;
    option.text = QStringLiteral("255 ").repeated(count).trimmed();
    const QWidget *widget = option.widget;
    const QStyle *style = widget ? widget->style() : QApplication::style();
    return style->sizeFromContents(QStyle::CT_ItemViewItem, &option, QSize(), widget).width();
}

bool isForOneRow(int column)
{
    return column == Patch::NameColumn || column == Patch::AddressColumn;
}

} // namespace

void FixtureDelegate::initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    if (index.column() == Patch::BytesColumn) {
        const QFont ordinary = option->font;
        option->font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        if (ordinary.pointSizeF() > 0) // none where a style counts in pixels
            option->font.setPointSizeF(ordinary.pointSizeF());
    }
    if (index.column() == Patch::AddressColumn && !index.data(Patch::FaultRole).toString().isEmpty()) {
        option->palette.setColor(QPalette::Text, Theme::warningColor());
        option->text += QStringLiteral(" ▲"); // seen in selected rows, too
    }
}

void FixtureDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    if (index.column() != Patch::ColorColumn && index.column() != Patch::OutputColumn) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    painter->save();
    drawBackground(painter, option);
    painter->setRenderHint(QPainter::Antialiasing);
    if (index.column() == Patch::ColorColumn)
        drawSwatch(painter, option.rect, index.data(Patch::ShownColorRole).value<QColor>(), option.palette);
    else
        drawBars(painter, option.rect, index.data(Patch::LevelsRole).value<QVector<double>>(),
                 index.data(Patch::LettersRole).toString(), option.palette);
    painter->restore();
}

QSize FixtureDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem shown = option;
    initStyleOption(&shown, index);
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(option.fontMetrics.height() + ROW_PADDING);
    if (index.column() == Patch::ColorColumn)
        size.setWidth(SWATCH_WIDTH);
    if (index.column() == Patch::OutputColumn)
        size.setWidth(BARS_WIDTH);
    if (index.column() == Patch::BytesColumn)
        size.setWidth(widthOfBytes(shown, index));
    return size;
}

QWidget *FixtureDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                       const QModelIndex &index) const
{
    if (index.column() == Patch::UniverseColumn)
        return makeSpinBox(parent, 0, Fixture::MAX_UNIVERSE);
    if (index.column() == Patch::AddressColumn)
        return makeSpinBox(parent, 1, Fixture::SLOTS);
    if (index.column() == Patch::NameColumn)
        return QStyledItemDelegate::createEditor(parent, option, index);
    const auto *patch = qobject_cast<const Patch *>(index.model());
    QComboBox *box = makeComboBox(parent, patch->choices(index));
    auto *self = const_cast<FixtureDelegate *>(this); // the signals that end an edit are not const
    connect(box, QOverload<int>::of(&QComboBox::activated), self, [self, box] {
        Q_EMIT self->commitData(box);
        Q_EMIT self->closeEditor(box);
    });
    return box;
}

void FixtureDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    if (auto *comboBox = qobject_cast<QComboBox *>(editor))
        comboBox->setCurrentIndex(comboBox->findData(index.data(Qt::EditRole)));
    else if (auto *spinBox = qobject_cast<QSpinBox *>(editor))
        spinBox->setValue(index.data(Qt::EditRole).toInt());
    else
        QStyledItemDelegate::setEditorData(editor, index);
}

void FixtureDelegate::setModelData(QWidget *editor, QAbstractItemModel *model, const QModelIndex &index) const
{
    QVariant value;
    if (auto *comboBox = qobject_cast<QComboBox *>(editor))
        value = comboBox->currentData();
    else if (auto *spinBox = qobject_cast<QSpinBox *>(editor))
        value = spinBox->value();
    else if (auto *line = qobject_cast<QLineEdit *>(editor))
        value = line->text();
    const auto *table = qobject_cast<const FixtureTable *>(parent());
    QVector<int> rows = {index.row()};
    if (table && !isForOneRow(index.column()) && table->selectedRows().contains(index.row()))
        rows = table->selectedRows();
    if (auto *patch = qobject_cast<Patch *>(model))
        patch->setValues(rows, Patch::Column(index.column()), value);
}
