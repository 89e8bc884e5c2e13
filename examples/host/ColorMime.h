#pragma once

#include <TrelColor.h>

#include <QModelIndexList>
#include <QString>
#include <QVector>

class QMimeData;

/// A colour and what it is called; the name may be empty.
struct NamedColor
{
    TrelColor color;
    QString name;
};

/// Colours in drags and on the clipboard.
///
/// What is written: the library's own formats, from which the colours come back whole, and for other programs the
/// first colour as "application/x-color" and all of them as lines "#rrggbb".
namespace ColorMime {

/// New data, owned by the caller, with \a colors. Colours that fixtures would not take are left out.
QMimeData *fromColors(const QVector<NamedColor> &colors);

/// New data, owned by the caller, with the colours at \a indexes of TrelColorLibrary, lists left out. Unlike
/// fromColors() they keep their uids, which uidsOf() finds.
QMimeData *fromLibrary(const QModelIndexList &indexes);

/// The colours in \a data, in the best of its formats; names by uid where the library knows them. Colours that
/// fixtures would not take are left out. Empty for null.
QVector<NamedColor> colorsOf(const QMimeData *data);

/// Uids of the library's colours in \a data, in order; empty unless fromLibrary() of this process made it.
QStringList uidsOf(const QMimeData *data);

/// Whether colorsOf() might find any; a cheap look at the formats, for drags that hover.
bool canRead(const QMimeData *data);

} // namespace ColorMime
