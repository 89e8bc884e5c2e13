#pragma once

#include <QCollator>
#include <QSortFilterProxyModel>
#include <QStringList>

/// What of the library is shown, and in which order; the library itself stays as it is.
///
/// Lists keep their order. One whose ListStateRole is cleared (the colours that exist as a value only) is not shown.
class SwatchFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    /// Order of the colours of a list.
    enum Order : int {
        Arranged = 0, ///< as the list has them
        ByName = 1,   ///< by name, as the locale sorts, numbers by value
        ByHue = 2     ///< around the colour circle from red; greys last, the dark ones first
    };

    /// On SwatchRows of its own.
    explicit SwatchFilter(QObject *parent = nullptr);

    /// The order in force; at first #Arranged.
    Order order() const;
    /// Sorts the colours.
    void setOrder(Order order);
    /// Shows the colours whose name, vendor's identifier, "#rrggbb" or list's name hold every word of \a text, upper or
    /// lower case; all for an empty one.
    void setSearch(const QString &text);
    /// Whether a search is in force.
    bool isSearching() const;

    /// The library's index; its rootIndex() for the invalid one.
    QModelIndex toLibrary(const QModelIndex &index) const;
    /// Invalid where it is not shown.
    QModelIndex fromLibrary(const QModelIndex &libraryIndex) const;

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;
    bool lessThan(const QModelIndex &left, const QModelIndex &right) const override;

private:
    Order m_order = Arranged;
    QStringList m_words;
    QCollator m_collator;
};
