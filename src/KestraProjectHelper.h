#pragma once

#include "TrelExport.h"

#include <QObject>
#include <QString>
#include <QStringList>

class QDomDocument;
class QDomElement;

/// The application whose documents carry a colour section.
inline constexpr char KESTRA_APPLICATION_ID[] = "Kestra";

/// \name Names in the XML of colour lists (docs/formats.md)
/// @{
inline constexpr char COLOR_LIBRARY_ROOT[] = "ColorLibrary";                       ///< a list
inline constexpr char COLOR_LIBRARY_IS_USER_LIBRARY_ATTRIBUTE[] = "isUserLibrary"; ///< 1 for a user list
inline constexpr char COLOR_ROOT_ELEMENT[] = "Color";                              ///< a colour
inline constexpr char COLOR_UID_ATTRIBUTE[] = "uid";                               ///< its identifier
inline constexpr char COLOR_NAME_ATTRIBUTE[] = "name";                             ///< its name, or the list's
inline constexpr char COLOR_VALUE_ATTRIBUTE[] = "value";                           ///< its value string
inline constexpr char COLOR_ORIGINATING_PRESET_ATTRIBUTE[] = "originatingPreset";  ///< where it was copied from
inline constexpr char COLOR_VENDOR_ID_ATTRIBUTE[] = "colorId";                     ///< its vendor's identifier
/// @}

/// Reads and writes the colour section of a document: a project, a preset file or the user's file.
///
/// It holds nothing itself. What it reads goes out through its signals, synchronously and in document order.
class TREL_EXPORT KestraProjectHelper : public QObject
{
    Q_OBJECT

public:
    /// A "ColorLibrary" element of \a doc with one "Color" element for each of \a uids; the caller inserts it.
    /// Text that XML 1.0 cannot carry is left out, so that what was written always loads.
    /// \param ok set to true.
    /// Fatal: a list shorter than \a uids ("index out of range").
    QDomElement createElement(QDomDocument &doc, bool &ok, const QStringList &uids, const QStringList &names,
                              const QStringList &values, const QStringList &originatingPresets,
                              const QStringList &colorIds);

    /// Reads every "ColorLibrary" element of \a doc and emits what it holds. List names are made unique against the
    /// library's (TrelColorLibrary::getNewColorListName()).
    /// \param error   why the reading stopped; lists and colours emitted before stay emitted.
    /// \param oldUids receives the uids of the first twelve colours of a list without a name, for a \a version below
    ///                0.96.
    /// \return false at a list without colours ("Found NULL TrelColorLibrary element").
    bool loadDocument(QDomDocument &doc, QString &error, double version, QStringList &oldUids);

    /// \a doc as UTF-8 text, indented by 1, without what XML 1.0 cannot carry (writableText()), the same bytes every
    /// time: attributes stand in the order of the format.
    /// A host that saves its project document with it gets files that compare.
    static QByteArray toByteArray(const QDomDocument &doc);

    /// \a text without what XML 1.0 cannot carry: control characters, lone surrogates, U+FFFE and U+FFFF.
    static QString writableText(const QString &text);

Q_SIGNALS:
    /// A list begins; its colours follow.
    void insertList(const QString &name, bool isUserLibrary);
    /// A colour of list \a listName. A missing name or value is "empty attribute" (ODD-56).
    void insertColor(QString uid, QString name, QString value, QString originatingPreset, const QString &listName,
                     const QString &colorId);
    /// Never emitted by loadDocument().
    void foundOldPreset(const QString &name);

private:
    friend class TrelColorLibrary; // which reads on behind a list that cannot be read

    bool loadList(const QDomElement &list, QString &error, double version, QStringList &oldUids);
};
