#include "Table.h"

namespace {

QString quoted(const QString &cell)
{
    static const QString special = QStringLiteral(",\"\r\n");
    for (const QChar character : cell) {
        if (special.contains(character))
            return '"' + QString(cell).replace('"', QStringLiteral("\"\"")) + '"';
    }
    return cell;
}

QString withoutTrailingSpaces(QString line)
{
    while (line.endsWith(' '))
        line.chop(1);
    return line;
}

} // namespace

Table::Table(const QStringList &header)
    : m_rows{header}
{
}

void Table::addRow(const QStringList &cells)
{
    m_rows.append(cells);
}

QString Table::aligned() const
{
    QVector<int> widths(m_rows.first().size(), 0);
    for (const QStringList &row : m_rows) {
        for (int i = 0; i < int(row.size()); ++i)
            widths[i] = qMax(widths.at(i), int(row.at(i).size()));
    }

    QString text;
    for (const QStringList &row : m_rows) {
        QString line;
        for (int i = 0; i < int(row.size()); ++i)
            line += row.at(i).leftJustified(widths.at(i) + 2);
        text += withoutTrailingSpaces(line) + '\n';
        if (&row == &m_rows.first()) {
            QStringList rule;
            for (const int width : widths)
                rule.append(QString(width, '-'));
            text += rule.join(QStringLiteral("  ")) + '\n';
        }
    }
    return text;
}

QString Table::csv() const
{
    QString text;
    for (const QStringList &row : m_rows) {
        QStringList cells;
        for (const QString &cell : row)
            cells.append(quoted(cell));
        text += cells.join(',') + QStringLiteral("\r\n");
    }
    return text;
}
