#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// Rows of text for a person or a spreadsheet. Every row has as many cells as the header.
class Table
{
public:
    explicit Table(const QStringList &header);

    void addRow(const QStringList &cells);

    /// Columns of equal width, two spaces apart, a rule below the header.
    QString aligned() const;

    /// Comma-separated values with CRLF line ends (RFC 4180).
    QString csv() const;

private:
    QVector<QStringList> m_rows;
};
