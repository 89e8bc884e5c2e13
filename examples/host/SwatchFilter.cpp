#include "SwatchFilter.h"

#include "SwatchRows.h"

#include <TrelColorLibrary.h>

#include <QRegularExpression>

#include <algorithm>
#include <tuple>

namespace {

constexpr double GREY_SATURATION = 0.02; ///< below it a hue says nothing

const TrelColor *colorAt(const QModelIndex &index)
{
    return static_cast<const TrelColor *>(index.data(TrelColorLibraryItem::ColorRole).value<void *>());
}

/// What a colour is sorted by: greys behind the others, then hue, then from dark to bright.
std::tuple<bool, double, double> hueKey(const QModelIndex &index)
{
    const TrelColor *color = colorAt(index);
    if (!color || !color->isValid())
        return {true, 2.0, 0.0};
    const TrelColor hsv = color->toRgb16(true).toHsv16();
    const bool isGrey = hsv.hueF() < 0.0 || hsv.saturationF() < GREY_SATURATION;
    return {isGrey, isGrey ? hsv.valueF() : hsv.hueF(), isGrey ? 0.0 : hsv.valueF()};
}

/// Everything that a search looks at.
QString searchedText(const QModelIndex &color)
{
    const QStringList texts{
        color.data(Qt::EditRole).toString(), color.data(TrelColorLibraryItem::VendorIdRole).toString(),
        colorAt(color) ? colorAt(color)->name8() : QString(), color.parent().data(Qt::EditRole).toString()};
    return texts.join(QLatin1Char('\n'));
}

bool isShownList(const QModelIndex &list)
{
    return list.data(TrelColorLibraryItem::ListStateRole).toBool();
}

} // namespace

SwatchFilter::SwatchFilter(QObject *parent)
    : QSortFilterProxyModel(parent)
{
    if (m_collator.locale().language() == QLocale::C)
        m_collator.setLocale(QLocale(QLocale::English)); // C knows neither numbers nor upper case
    m_collator.setNumericMode(true);
    m_collator.setCaseSensitivity(Qt::CaseInsensitive);
    setRecursiveFilteringEnabled(true);
    auto *rows = new SwatchRows(this);
    setSourceModel(rows);
    // The names of lists count for their colours, which are not asked again on their own.
    connect(rows, &QAbstractItemModel::dataChanged, this, [this](const QModelIndex &first) {
        if (isSearching() && !first.parent().isValid())
            invalidateFilter();
    });
}

SwatchFilter::Order SwatchFilter::order() const
{
    return m_order;
}

void SwatchFilter::setOrder(Order order)
{
    m_order = order;
    sort(order == Arranged ? -1 : 0);
    if (order != Arranged)
        invalidate(); // it was column 0 before, too
}

void SwatchFilter::setSearch(const QString &text)
{
    static const QRegularExpression spaces(QStringLiteral("\\s+"));
    m_words = text.trimmed().split(spaces, Qt::SkipEmptyParts);
    invalidateFilter();
}

bool SwatchFilter::isSearching() const
{
    return !m_words.isEmpty();
}

QModelIndex SwatchFilter::toLibrary(const QModelIndex &index) const
{
    return static_cast<const SwatchRows *>(sourceModel())->mapToSource(mapToSource(index));
}

QModelIndex SwatchFilter::fromLibrary(const QModelIndex &libraryIndex) const
{
    return mapFromSource(static_cast<const SwatchRows *>(sourceModel())->mapFromSource(libraryIndex));
}

/// A list is shown for itself without a search only; with one, for the colours that it holds.
bool SwatchFilter::filterAcceptsRow(int row, const QModelIndex &parent) const
{
    const QModelIndex index = sourceModel()->index(row, 0, parent);
    if (!parent.isValid())
        return !isSearching() && isShownList(index);
    if (!isShownList(parent))
        return false;
    if (!isSearching())
        return true;
    const QString text = searchedText(index);
    return std::all_of(m_words.cbegin(), m_words.cend(),
                       [&](const QString &word) { return text.contains(word, Qt::CaseInsensitive); });
}

bool SwatchFilter::lessThan(const QModelIndex &left, const QModelIndex &right) const
{
    if (!left.parent().isValid())
        return left.row() < right.row();
    if (m_order == ByHue) {
        const auto leftKey = hueKey(left);
        const auto rightKey = hueKey(right);
        if (leftKey != rightKey)
            return leftKey < rightKey;
    }
    const int names = m_collator.compare(left.data(Qt::EditRole).toString(), right.data(Qt::EditRole).toString());
    return names != 0 ? names < 0 : left.row() < right.row();
}
