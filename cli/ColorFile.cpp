#include "ColorFile.h"

#include <KestraProjectHelper.h>
#include <TrelColor.h>

#include <QHash>
#include <QSet>
#include <QUuid>
#include <QXmlStreamReader>

#include <algorithm>
#include <iterator>

namespace {

constexpr int MAX_DEPTH = 64;

constexpr const char *LEVELS[] = {"ColorLibraryList", COLOR_LIBRARY_ROOT, COLOR_ROOT_ELEMENT};
constexpr int LEVEL_COUNT = int(std::size(LEVELS));

enum Severity { Loss, Blemish };

class Parser
{
public:
    Parser(const QByteArray &bytes, const std::function<void(qint64)> &progress)
        : m_reader(bytes)
        , m_progress(progress)
    {
    }

    ColorFile run()
    {
        while (!m_isStopped && !m_reader.atEnd()) {
            m_line = m_reader.lineNumber(); // where the token begins
            read(m_reader.readNext());
        }
        if (m_reader.hasError()) {
            m_line = m_reader.lineNumber();
            add(Loss, m_reader.errorString());
        }
        std::stable_sort(m_file.faults.begin(), m_file.faults.end(),
                         [](const ColorFile::Fault &a, const ColorFile::Fault &b) { return a.line < b.line; });
        return m_file;
    }

private:
    void read(QXmlStreamReader::TokenType token)
    {
        switch (token) {
        case QXmlStreamReader::StartDocument:
            checkEncoding();
            break;
        case QXmlStreamReader::DTD:
            checkDocumentType();
            break;
        case QXmlStreamReader::StartElement:
            m_progress(m_reader.characterOffset());
            start();
            break;
        case QXmlStreamReader::EndElement:
            end();
            break;
        case QXmlStreamReader::Characters:
            if (m_unknownDepth == 0 && !m_reader.isWhitespace())
                add(Loss, QStringLiteral("text has no place here"));
            break;
        default:
            break;
        }
    }

    void add(Severity severity, const QString &reason)
    {
        m_file.faults.append({m_line, reason, severity == Loss});
    }

    /// The innermost open element that belongs where it is.
    QString element() const
    {
        return QLatin1String(LEVELS[m_level - 1]);
    }

    void checkEncoding()
    {
        const QString encoding = m_reader.documentEncoding().toString();
        if (!encoding.isEmpty() && encoding.compare(QLatin1String("UTF-8"), Qt::CaseInsensitive) != 0)
            add(Blemish, QStringLiteral("the encoding is %1, not UTF-8").arg(encoding));
    }

    void checkDocumentType()
    {
        m_isStopped = m_reader.text().toString().contains(QLatin1String("<!ENTITY"));
        add(Loss, m_isStopped ? QStringLiteral("entity declarations are not read")
                              : QStringLiteral("a document type declaration has no place here"));
    }

    void start()
    {
        const QString name = m_reader.qualifiedName().toString();
        if (m_level == 0 && m_unknownDepth == 0)
            m_line = m_reader.lineNumber(); // blank lines before the document element are no token
        if (m_level + m_unknownDepth == MAX_DEPTH) {
            add(Loss, QStringLiteral("elements are nested deeper than %1").arg(MAX_DEPTH));
            m_isStopped = true;
        } else if (m_unknownDepth > 0) {
            ++m_unknownDepth;
        } else if (m_level == LEVEL_COUNT || name != QLatin1String(LEVELS[m_level])) {
            add(Loss, m_level == 0
                          ? QStringLiteral("the document element is <%1>, not <%2>").arg(name, QLatin1String(LEVELS[0]))
                          : QStringLiteral("<%1> has no place in <%2>").arg(name, element()));
            m_unknownDepth = 1;
        } else {
            ++m_level;
            startKnown();
        }
    }

    void startKnown()
    {
        if (!m_reader.namespaceDeclarations().isEmpty())
            add(Loss, QStringLiteral("namespaces have no place here"));
        if (m_level == 1)
            checkAttributes({});
        else if (m_level == 2)
            startList();
        else
            readColor();
    }

    void startList()
    {
        static const QSet<QString> known{COLOR_NAME_ATTRIBUTE, COLOR_LIBRARY_IS_USER_LIBRARY_ATTRIBUTE};
        checkAttributes(known);
        m_names.clear();
        m_listLine = m_line;
        ColorFile::List list;
        list.name = required(COLOR_NAME_ATTRIBUTE);
        checkUnique(m_listNames, list.name, Blemish, QStringLiteral("another list has the name '%1', in line %2"));
        const QString isUserList = required(COLOR_LIBRARY_IS_USER_LIBRARY_ATTRIBUTE);
        list.isUserList = isUserList.toInt() != 0;
        if (!isUserList.isEmpty() && isUserList != QLatin1String("0") && isUserList != QLatin1String("1"))
            add(Blemish, QStringLiteral("\"isUserLibrary\" is neither 0 nor 1: '%1'").arg(isUserList));
        m_file.lists.append(list);
    }

    void readColor()
    {
        static const QSet<QString> known{COLOR_NAME_ATTRIBUTE, COLOR_UID_ATTRIBUTE, COLOR_VALUE_ATTRIBUTE,
                                         COLOR_ORIGINATING_PRESET_ATTRIBUTE, COLOR_VENDOR_ID_ATTRIBUTE};
        checkAttributes(known);
        ColorFile::Color color;
        color.name = required(COLOR_NAME_ATTRIBUTE);
        checkUnique(m_names, color.name, Blemish,
                    QStringLiteral("another colour of the list has the name '%1', in line %2"));
        color.uid = required(COLOR_UID_ATTRIBUTE);
        if (!color.uid.isEmpty() && !ColorFile::isUid(color.uid))
            add(Blemish, QStringLiteral("\"uid\" is no UUID in braces: '%1'").arg(color.uid));
        // The library names colours by their uid, so that the first one would get the second one's name.
        checkUnique(m_uids, color.uid, Loss, QStringLiteral("another colour has the uid %1, in line %2"));
        color.value = required(COLOR_VALUE_ATTRIBUTE, Loss);
        if (!color.value.isEmpty() && !TrelColor(color.value).isValid())
            add(Loss, QStringLiteral("\"value\" is no colour: '%1'").arg(color.value));
        color.vendorId = m_reader.attributes().value(QLatin1String(COLOR_VENDOR_ID_ATTRIBUTE)).toString();
        m_file.lists.last().colors.append(color);
    }

    void end()
    {
        if (m_unknownDepth > 0) {
            --m_unknownDepth;
            return;
        }
        if (m_level == 2 && m_file.lists.last().colors.isEmpty()) {
            m_line = m_listLine;
            add(Blemish, QStringLiteral("the list holds no colours"));
        }
        --m_level;
    }

    void checkAttributes(const QSet<QString> &known)
    {
        const QXmlStreamAttributes attributes = m_reader.attributes();
        for (const QXmlStreamAttribute &attribute : attributes) {
            const QString name = attribute.qualifiedName().toString();
            if (!known.contains(name))
                add(Loss, QStringLiteral("<%1> has an unknown attribute \"%2\"").arg(element(), name));
        }
    }

    QString required(const char *name, Severity severity = Blemish)
    {
        const QString text = m_reader.attributes().value(QLatin1String(name)).toString();
        if (text.isEmpty())
            add(severity, QStringLiteral("<%1> has no \"%2\"").arg(element(), QLatin1String(name)));
        return text;
    }

    /// Enters \a text in \a lines with the line it stands in. \param reason what to say when it is there already
    void checkUnique(QHash<QString, qint64> &lines, const QString &text, Severity severity, const QString &reason)
    {
        if (text.isEmpty())
            return;
        const auto first = lines.constFind(text);
        if (first != lines.constEnd())
            add(severity, reason.arg(text, QString::number(*first)));
        else
            lines.insert(text, m_line);
    }

    QXmlStreamReader m_reader;
    const std::function<void(qint64)> &m_progress;
    ColorFile m_file;
    QHash<QString, qint64> m_listNames;
    QHash<QString, qint64> m_names; ///< of the colours of the list
    QHash<QString, qint64> m_uids;
    qint64 m_line = 1;
    qint64 m_listLine = 1;
    int m_level = 0;        ///< open elements that belong where they are
    int m_unknownDepth = 0; ///< open elements in and with one that does not
    bool m_isStopped = false;
};

} // namespace

bool ColorFile::Color::operator==(const Color &other) const
{
    return name == other.name && uid == other.uid && value == other.value && vendorId == other.vendorId;
}

bool ColorFile::List::operator==(const List &other) const
{
    return name == other.name && isUserList == other.isUserList && colors == other.colors;
}

ColorFile ColorFile::parse(const QByteArray &bytes, const std::function<void(qint64)> &progress)
{
    if (bytes.size() <= MAX_BYTES)
        return Parser(bytes, progress).run();
    ColorFile file;
    file.faults.append({1, QStringLiteral("it is longer than %1 bytes").arg(MAX_BYTES), true});
    return file;
}

bool ColorFile::isUid(const QString &uid)
{
    const QUuid uuid(uid);
    return !uuid.isNull() && uuid.toString() == uid.toLower();
}
