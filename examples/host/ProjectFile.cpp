#include "ProjectFile.h"

#include <HueLockProfile.h>
#include <HuelockProfileFactory.h>
#include <KestraProjectHelper.h>
#include <TrelColorLibrary.h>

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSet>
#include <QXmlStreamReader>

namespace {

constexpr char ROOT[] = "TrelProject";
constexpr char PATCH[] = "Patch";
constexpr char FIXTURE[] = "Fixture";
constexpr char VERSION_ATTRIBUTE[] = "version";
constexpr char NAME_ATTRIBUTE[] = "name";
constexpr char COLOR_ATTRIBUTE[] = "color";
constexpr double VERSION = 1.0;
constexpr qint64 MAX_BYTES = 64 * 1024 * 1024;
constexpr int MAX_DEPTH = 64;
constexpr int FIXTURES_A_REPORT = 200; // of progress

ProjectFile::Fault faultAt(const QDomNode &node, const QString &reason)
{
    return {reason, node.lineNumber()};
}

/// What is wrong with the text before it becomes a tree, which a hostile one would make too deep or too large.
ProjectFile::Fault faultOfText(const QByteArray &bytes)
{
    QXmlStreamReader reader(bytes);
    int depth = 0;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        const int line = int(reader.lineNumber());
        if (token == QXmlStreamReader::DTD)
            return {ProjectFile::tr("Document type declarations are not allowed."), line};
        depth += int(token == QXmlStreamReader::StartElement) - int(token == QXmlStreamReader::EndElement);
        if (depth > MAX_DEPTH)
            return {ProjectFile::tr("The elements are nested too deeply."), line};
    }
    if (reader.hasError())
        return {reader.errorString(), int(reader.lineNumber())};
    return {};
}

bool setNumber(Fixture &fixture, const QDomElement &element, const FixtureNumber &field, ProjectFile::Fault &fault)
{
    const QString attribute = QString::fromLatin1(field.name);
    if (!element.hasAttribute(attribute))
        return true;
    bool isNumber = false;
    const int value = element.attribute(attribute).toInt(&isNumber);
    if (!isNumber || value < field.minimum || value > field.maximum) {
        fault =
            faultAt(element, ProjectFile::tr("The fixture's attribute “%1” is “%2”; it must be a number from %3 to %4.")
                                 .arg(attribute, element.attribute(attribute).left(40), QString::number(field.minimum),
                                      QString::number(field.maximum)));
        return false;
    }
    field.set(fixture, value);
    return true;
}

bool setColor(Fixture &fixture, const QDomElement &element, ProjectFile::Fault &fault)
{
    const QString text = element.attribute(QString::fromLatin1(COLOR_ATTRIBUTE));
    if (text.isEmpty())
        return true;
    fixture.uid = TrelColorLibrary::UidAndValueToUid(text);
    fixture.color = TrelColor(TrelColorLibrary::UidAndValueToValue(text));
    if (fixture.color.isValid())
        return true;
    fault = faultAt(element, ProjectFile::tr("“%1” is no colour.").arg(text.left(80)));
    return false;
}

std::optional<Fixture> fixtureOf(const QDomElement &element, ProjectFile::Fault &fault)
{
    Fixture fixture;
    fixture.name = element.attribute(QString::fromLatin1(NAME_ATTRIBUTE)).left(Fixture::MAX_NAME_LENGTH);
    for (const FixtureNumber &field : FixtureNumber::ALL) {
        if (!setNumber(fixture, element, field, fault))
            return std::nullopt;
    }
    if (!setColor(fixture, element, fault))
        return std::nullopt;
    const QString conflict = fixture.conflict();
    if (conflict.isEmpty())
        return fixture;
    fault = faultAt(element, conflict);
    return std::nullopt;
}

/// The library would leave out what it cannot read, and the next save lose it.
ProjectFile::Fault faultOfColor(const QDomElement &color, QSet<QString> &uids)
{
    const QString value = color.attribute(QString::fromLatin1(COLOR_VALUE_ATTRIBUTE));
    if (!TrelColor(value).isValid())
        return faultAt(color, ProjectFile::tr("“%1” is no colour.").arg(value.left(80)));
    const QString uid = color.attribute(QString::fromLatin1(COLOR_UID_ATTRIBUTE));
    if (uid.isEmpty() || TrelColorLibrary::UidAndValueToUid(uid) != uid)
        return faultAt(color, ProjectFile::tr("“%1” is no uid in braces.").arg(uid.left(80)));
    if (uids.contains(uid))
        return faultAt(color, ProjectFile::tr("Two colours have the uid “%1”.").arg(uid.left(80)));
    uids.insert(uid);
    return {};
}

ProjectFile::Fault faultOfColors(const QDomDocument &document)
{
    QSet<QString> uids;
    const QDomNodeList lists = document.elementsByTagName(QString::fromLatin1(COLOR_LIBRARY_ROOT));
    for (int i = 0; i < lists.count(); ++i) {
        QDomElement color = lists.at(i).firstChildElement(QString::fromLatin1(COLOR_ROOT_ELEMENT));
        if (color.isNull())
            return faultAt(lists.at(i), ProjectFile::tr("A list of colours is empty."));
        for (; !color.isNull(); color = color.nextSiblingElement(QString::fromLatin1(COLOR_ROOT_ELEMENT))) {
            const ProjectFile::Fault fault = faultOfColor(color, uids);
            if (!fault.reason.isEmpty())
                return fault;
        }
    }
    return {};
}

ProjectFile::Fault faultOfRoot(const QDomElement &root)
{
    if (root.tagName() != QLatin1String(ROOT))
        return faultAt(root, ProjectFile::tr("This is no project: it begins with “%1”.").arg(root.tagName().left(40)));
    if (root.attribute(QString::fromLatin1(VERSION_ATTRIBUTE), QStringLiteral("1")).toDouble() > VERSION)
        return faultAt(root, ProjectFile::tr("The project was made by a newer version of this program."));
    return {};
}

std::optional<QVector<Fixture>> fixturesOf(const QDomElement &root, ProjectFile::Fault &fault,
                                           const ProjectFile::Progress &progress)
{
    QVector<Fixture> fixtures;
    const QString tag = QString::fromLatin1(FIXTURE);
    const QDomElement patch = root.firstChildElement(QString::fromLatin1(PATCH));
    const int total = patch.childNodes().count();
    QDomElement element = patch.firstChildElement(tag);
    for (; !element.isNull(); element = element.nextSiblingElement(tag)) {
        const std::optional<Fixture> fixture = fixtureOf(element, fault);
        if (!fixture)
            return std::nullopt;
        fixtures.append(*fixture);
        if (progress && fixtures.size() % FIXTURES_A_REPORT == 0)
            progress(int(fixtures.size()), total);
    }
    return fixtures;
}

QDomElement elementOf(const Fixture &fixture, QDomDocument &document)
{
    QDomElement element = document.createElement(QString::fromLatin1(FIXTURE));
    element.setAttribute(QString::fromLatin1(NAME_ATTRIBUTE), fixture.name);
    for (const FixtureNumber &field : FixtureNumber::ALL)
        element.setAttribute(QString::fromLatin1(field.name), field.get(fixture));
    element.setAttribute(QString::fromLatin1(COLOR_ATTRIBUTE), QString(fixture.uid + fixture.color.aName()));
    return element;
}

} // namespace

std::optional<ProjectFile::Content> ProjectFile::read(const QString &path, Fault &fault, const Progress &progress)
{
    QFile file(path);
    if (QFileInfo::exists(path) && !QFileInfo(path).isFile()) {
        fault = {tr("It is no file."), 0};
        return std::nullopt;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        fault = {file.errorString(), 0};
        return std::nullopt;
    }
    if (file.size() > MAX_BYTES) {
        fault = {tr("The file is too large for a project."), 0};
        return std::nullopt;
    }
    return parse(file.readAll(), fault, progress);
}

std::optional<ProjectFile::Content> ProjectFile::parse(const QByteArray &bytes, Fault &fault, const Progress &progress)
{
    Content content;
    fault = faultOfText(bytes);
    if (fault.reason.isEmpty() && !content.document.setContent(bytes, &fault.reason, &fault.line))
        return std::nullopt;
    const QDomElement root = content.document.documentElement();
    if (fault.reason.isEmpty())
        fault = faultOfRoot(root);
    if (fault.reason.isEmpty())
        fault = faultOfColors(content.document);
    if (!fault.reason.isEmpty())
        return std::nullopt;
    const std::optional<QVector<Fixture>> fixtures = fixturesOf(root, fault, progress);
    if (!fixtures)
        return std::nullopt;
    content.fixtures = *fixtures;
    return content;
}

bool ProjectFile::adoptColors(Content &content, Fault &fault)
{
    QString error;
    TrelColorLibrary::Instance()->loadDocument(content.document, error, VERSION, KESTRA_APPLICATION_ID);
    fault = {error, 0};
    return error.isEmpty();
}

QByteArray ProjectFile::documentOf(const QVector<Fixture> &fixtures)
{
    QDomDocument document;
    document.appendChild(document.createProcessingInstruction(QStringLiteral("xml"),
                                                              QStringLiteral("version=\"1.0\" encoding=\"UTF-8\"")));
    QDomElement root = document.createElement(QString::fromLatin1(ROOT));
    root.setAttribute(QString::fromLatin1(VERSION_ATTRIBUTE), QString::number(VERSION, 'f', 1));
    document.appendChild(root);
    QDomElement patch = document.createElement(QString::fromLatin1(PATCH));
    root.appendChild(patch);
    for (const Fixture &fixture : fixtures)
        patch.appendChild(elementOf(fixture, document));
    bool isMade = false;
    const QDomElement colors = TrelColorLibrary::Instance()->createElement(document, isMade, KESTRA_APPLICATION_ID);
    if (isMade && colors.hasChildNodes()) // a reader takes an empty list for a fault
        root.appendChild(colors);
    return KestraProjectHelper::toByteArray(document);
}

bool ProjectFile::write(const QString &path, const QVector<Fixture> &fixtures, Fault &fault)
{
    QSaveFile file(path);
    const QByteArray bytes = documentOf(fixtures);
    // commit() alone does not see it when the last buffer cannot be written.
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush() && file.commit())
        return true;
    fault = {file.errorString(), 0};
    return false;
}
