#include "ColorDocument_p.h"

#include <QBuffer>
#include <QDomDocument>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QVector>
#include <QXmlStreamReader>

#include <algorithm>
#include <iterator>

namespace {

// In the order of the format: a list's attributes, then a colour's.
const char *const ATTRIBUTE_ORDER[] = {"name", "isUserLibrary", "uid", "value", "originatingPreset", "colorId"};

bool isWritable(QChar character)
{
    const ushort code = character.unicode();
    return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code < 0xFFFE);
}

int rankOf(const QString &attribute)
{
    const auto *place = std::find(std::begin(ATTRIBUTE_ORDER), std::end(ATTRIBUTE_ORDER), attribute);
    return int(place - std::begin(ATTRIBUTE_ORDER));
}

/// An attribute as it stands in the text, with its name.
struct Attribute
{
    QString name;
    QString text;
};

/// The attributes in \a text, the inside of a start tag behind its name.
QVector<Attribute> attributesIn(const QString &text)
{
    QVector<Attribute> attributes;
    int place = 0;
    for (;;) {
        const int equals = int(text.indexOf('=', place));
        if (equals < 0 || equals + 1 >= text.size())
            return attributes;
        const int end = int(text.indexOf(text.at(equals + 1), equals + 2));
        if (end < 0)
            return attributes;
        const QString attribute = text.mid(place, end + 1 - place).trimmed();
        attributes.append({attribute.left(attribute.indexOf('=')).trimmed(), attribute});
        place = end + 1;
    }
}

/// The start tag \a tag, from "<" to ">", with its attributes in order.
QString withOrderedAttributes(const QString &tag)
{
    const int nameEnd = int(std::find_if(tag.cbegin(), tag.cend(), [](QChar c) { return c.isSpace(); }) - tag.cbegin());
    if (nameEnd == tag.size())
        return tag;
    const QString closing = tag.endsWith(QLatin1String("/>")) ? QStringLiteral("/>") : QStringLiteral(">");
    QVector<Attribute> attributes = attributesIn(tag.mid(nameEnd, tag.size() - nameEnd - closing.size()));
    std::sort(attributes.begin(), attributes.end(), [](const Attribute &a, const Attribute &b) {
        const int rankA = rankOf(a.name);
        const int rankB = rankOf(b.name);
        return rankA != rankB ? rankA < rankB : a.name < b.name;
    });
    QString result = tag.left(nameEnd);
    for (const Attribute &attribute : qAsConst(attributes))
        result += ' ' + attribute.text;
    return result + closing;
}

/// Where the tag that begins at \a start ends: behind the ">" outside quotes.
int tagEnd(const QString &xml, int start)
{
    QChar quote;
    for (int i = start; i < xml.size(); ++i) {
        const QChar character = xml.at(i);
        if (!quote.isNull())
            quote = character == quote ? QChar() : quote;
        else if (character == '"' || character == '\'')
            quote = character;
        else if (character == '>')
            return i + 1;
    }
    return int(xml.size());
}

/// Where the markup that begins with "<" at \a start ends.
int markupEnd(const QString &xml, int start)
{
    static const struct
    {
        const char *open;
        const char *close;
    } OPAQUE[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
    for (const auto &markup : OPAQUE) {
        if (QStringView(xml).mid(start).startsWith(QLatin1String(markup.open))) {
            const int end = int(xml.indexOf(QLatin1String(markup.close), start + int(qstrlen(markup.open))));
            return end < 0 ? int(xml.size()) : end + int(qstrlen(markup.close));
        }
    }
    return tagEnd(xml, start);
}

QString withOrderedAttributesEverywhere(const QString &xml)
{
    QString result;
    result.reserve(xml.size());
    int place = 0;
    while (place < xml.size()) {
        const int start = int(xml.indexOf('<', place));
        if (start < 0)
            break;
        result += xml.mid(place, start - place);
        place = markupEnd(xml, start);
        const QString markup = xml.mid(start, place - start);
        const bool isStartTag = markup.size() > 1 && markup.at(1) != '!' && markup.at(1) != '?' && markup.at(1) != '/';
        result += isStartTag ? withOrderedAttributes(markup) : markup;
    }
    return result + xml.mid(place);
}

/// The encoding in an XML declaration.
const QRegularExpression &encoding()
{
    static const QRegularExpression expression(QStringLiteral("(encoding\\s*=\\s*)(['\"])([^'\"]*)\\2"));
    return expression;
}

/// The XML declaration of \a document; null for none.
QDomProcessingInstruction declarationOf(const QDomDocument &document)
{
    const QDomProcessingInstruction first = document.firstChild().toProcessingInstruction();
    return first.target() == QLatin1String("xml") ? first : QDomProcessingInstruction();
}

/// \a document, or a copy of it whose XML declaration names UTF-8: one that came from a file in another encoding
/// would lie, and stop Qt 6 from writing it.
QDomDocument declaredAsUtf8(const QDomDocument &document)
{
    if (ColorDocument::isDeclaredAsUtf8(document))
        return document;
    const QDomDocument copy = document.cloneNode(true).toDocument();
    QDomProcessingInstruction declaration = declarationOf(copy);
    declaration.setData(declaration.data().replace(encoding(), QStringLiteral("\\1\\2UTF-8\\2")));
    return copy;
}

QString tooLong()
{
    return QStringLiteral("it is longer than %1 bytes").arg(ColorDocument::MAX_BYTES);
}

/// Why \a bytes must not reach the DOM, whose parser would expand entities and overflow its stack.
QString hazardIn(const QByteArray &bytes)
{
    // By way of a device, so that it decodes no more than it needs.
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QXmlStreamReader reader(&buffer);
    int depth = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::DTD:
            if (reader.text().toString().contains(QLatin1String("<!ENTITY")))
                return QStringLiteral("entity declarations are not read");
            break;
        case QXmlStreamReader::StartElement:
            if (++depth > ColorDocument::MAX_DEPTH)
                return QStringLiteral("elements are nested too deep");
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    return reader.hasError()
               ? QStringLiteral("line %1: %2").arg(QString::number(reader.lineNumber()), reader.errorString())
               : QString();
}

} // namespace

QString ColorDocument::writable(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        const bool isPair = character.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPair) {
            result += character;
            result += text.at(++i);
        } else if (isWritable(character) && !character.isSurrogate()) {
            result += character;
        }
    }
    return result;
}

QByteArray ColorDocument::toBytes(const QDomDocument &document)
{
    return withOrderedAttributesEverywhere(writable(declaredAsUtf8(document).toString(1))).toUtf8();
}

bool ColorDocument::isDeclaredAsUtf8(const QDomDocument &document)
{
    const QRegularExpressionMatch declared = encoding().match(declarationOf(document).data());
    return !declared.hasMatch() || declared.captured(3).compare(QLatin1String("utf-8"), Qt::CaseInsensitive) == 0;
}

QString ColorDocument::parse(const QByteArray &bytes, QDomDocument &document)
{
    if (bytes.size() > MAX_BYTES)
        return tooLong();
    const QString hazard = hazardIn(bytes);
    if (!hazard.isEmpty())
        return hazard;
    QDomDocument parsed;
    QString reason;
    int line = 0;
    if (!parsed.setContent(bytes, true, &reason, &line))
        return QStringLiteral("line %1: %2").arg(QString::number(line), reason);
    document = parsed;
    return QString();
}

QString ColorDocument::read(const QString &path, QDomDocument &document, QByteArray &bytes)
{
    QFile file(path);
    if (!QFileInfo(path).isFile()) // opening a pipe would wait for its writer
        return QStringLiteral("it is no file");
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    if (file.size() > MAX_BYTES)
        return tooLong();
    bytes = file.readAll();
    return parse(bytes, document);
}
