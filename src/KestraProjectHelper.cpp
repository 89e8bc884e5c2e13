#include "KestraProjectHelper.h"

#include "ColorDocument_p.h"
#include "TrelColorLibrary.h"

#include <QDomDocument>

namespace {

void setAttribute(QDomElement &element, const char *name, const QStringList &texts, int i)
{
    Q_ASSERT_X(i < int(texts.size()), "KestraProjectHelper::createElement", "index out of range");
    element.setAttribute(QLatin1String(name), ColorDocument::writable(texts.at(i)));
}

} // namespace

QDomElement KestraProjectHelper::createElement(QDomDocument &doc, bool &ok, const QStringList &uids,
                                               const QStringList &names, const QStringList &values,
                                               const QStringList &originatingPresets, const QStringList &colorIds)
{
    ok = true;
    QDomElement list = doc.createElement(QLatin1String(COLOR_LIBRARY_ROOT));
    for (int i = 0; i < int(uids.size()); ++i) {
        QDomElement color = doc.createElement(QLatin1String(COLOR_ROOT_ELEMENT));
        setAttribute(color, COLOR_NAME_ATTRIBUTE, names, i);
        setAttribute(color, COLOR_UID_ATTRIBUTE, uids, i);
        setAttribute(color, COLOR_VALUE_ATTRIBUTE, values, i);
        setAttribute(color, COLOR_ORIGINATING_PRESET_ATTRIBUTE, originatingPresets, i);
        setAttribute(color, COLOR_VENDOR_ID_ATTRIBUTE, colorIds, i);
        list.appendChild(color);
    }
    return list;
}

bool KestraProjectHelper::loadDocument(QDomDocument &doc, QString &error, double version, QStringList &oldUids)
{
    const QDomNodeList lists = doc.elementsByTagName(QLatin1String(COLOR_LIBRARY_ROOT));
    for (int i = 0; i < lists.count(); ++i) {
        const QDomNode node = lists.at(i);
        if (node.isNull()) {
            error = tr("Found NULL TrelColorLibrary node");
            return false;
        }
        const QDomElement list = node.toElement();
        if (list.isNull()) {
            error = tr("Found NULL TrelColorLibrary element");
            return false;
        }
        if (!loadList(list, error, version, oldUids))
            return false;
    }
    return true;
}

QByteArray KestraProjectHelper::toByteArray(const QDomDocument &doc)
{
    return ColorDocument::toBytes(doc);
}

QString KestraProjectHelper::writableText(const QString &text)
{
    return ColorDocument::writable(text);
}

bool KestraProjectHelper::loadList(const QDomElement &list, QString &error, double version, QStringList &oldUids)
{
    constexpr int OLD_UIDS_OF_A_LIST = 12;
    constexpr double FIRST_VERSION_WITHOUT_OLD_UIDS = 0.96;
    const QString missing = QStringLiteral("empty attribute"); // ODD-56: hosts see it as the colour's name

    const bool isUserLibrary = list.attribute(QLatin1String(COLOR_LIBRARY_IS_USER_LIBRARY_ATTRIBUTE)).toInt() != 0;
    const QString listName =
        TrelColorLibrary::Instance()->getNewColorListName(list.attribute(QLatin1String(COLOR_NAME_ATTRIBUTE)));
    Q_EMIT insertList(listName, isUserLibrary);

    const QString tag = QLatin1String(COLOR_ROOT_ELEMENT);
    QDomElement color = list.firstChildElement(tag);
    if (color.isNull()) {
        error = tr("Found NULL TrelColorLibrary element");
        return false;
    }
    if (color.tagName() != tag) {
        error = tr("Expected TrelColorLibrary element");
        return false;
    }
    // Made once, since a list may hold very many colours.
    const QString uidAttribute = QLatin1String(COLOR_UID_ATTRIBUTE);
    const QString nameAttribute = QLatin1String(COLOR_NAME_ATTRIBUTE);
    const QString valueAttribute = QLatin1String(COLOR_VALUE_ATTRIBUTE);
    const QString presetAttribute = QLatin1String(COLOR_ORIGINATING_PRESET_ATTRIBUTE);
    const QString vendorAttribute = QLatin1String(COLOR_VENDOR_ID_ATTRIBUTE);
    for (int count = 0; !color.isNull(); color = color.nextSiblingElement(tag), ++count) {
        const QString uid = color.attribute(uidAttribute);
        Q_EMIT insertColor(uid, color.attribute(nameAttribute, missing), color.attribute(valueAttribute, missing),
                           color.attribute(presetAttribute), listName, color.attribute(vendorAttribute));
        if (listName.isEmpty() && count < OLD_UIDS_OF_A_LIST && version < FIRST_VERSION_WITHOUT_OLD_UIDS)
            oldUids.append(uid);
    }
    return true;
}
