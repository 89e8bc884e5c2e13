#include "ProfileDatabaseCheck.h"

#include <ColorUtils.h>

#include <QXmlStreamReader>

#include <cmath>

namespace {

/// The library reads no more than this, and no deeper.
constexpr int MAX_CHARACTERS = 256 * 1024;
constexpr int MAX_DEPTH = 64;

class Checker
{
public:
    explicit Checker(const QByteArray &document)
        : m_reader(document)
    {
    }

    std::optional<DatabaseFault> run()
    {
        while (!m_reader.atEnd() && m_reason.isEmpty())
            check(m_reader.readNext());
        if (m_reason.isEmpty() && m_reader.hasError())
            m_reason = m_reader.errorString();
        if (m_reason.isEmpty() && m_profiles == 0)
            m_reason = QStringLiteral("no <Profile> in it");
        if (m_reason.isEmpty())
            return std::nullopt;
        return DatabaseFault{m_reader.lineNumber(), m_reason};
    }

private:
    void check(QXmlStreamReader::TokenType token)
    {
        // The library stops at entities and does not know of attributes' default values.
        if (token == QXmlStreamReader::DTD)
            m_reason = QStringLiteral("a document type declaration has no place here");
        else if (token == QXmlStreamReader::StartElement)
            checkStart();
        else if (token == QXmlStreamReader::EndElement)
            checkEnd();
    }

    void checkStart()
    {
        if (++m_depth > MAX_DEPTH)
            m_reason = QStringLiteral("elements are nested deeper than %1").arg(MAX_DEPTH);
        else if (m_depth == 1 && m_reader.qualifiedName() != QLatin1String("Profiles"))
            m_reason =
                QStringLiteral("the document element is <%1>, not <Profiles>").arg(m_reader.qualifiedName().toString());
        else if (m_reader.qualifiedName() == QLatin1String("Profile"))
            checkProfile();
        else if (m_reader.qualifiedName() == QLatin1String("Channel"))
            checkChannel();
    }

    void checkProfile()
    {
        if (m_inProfile) {
            m_reason = QStringLiteral("<Profile> inside a <Profile>");
            return;
        }
        m_inProfile = true;
        ++m_profiles;
        m_channels = 0;
        m_index = integer(QStringLiteral("index"));
        if (m_reason.isEmpty()
            && !ColorUtils::huelockProfileIDList(true).contains(ColorUtils::HuelockProfileID(m_index)))
            m_reason = QStringLiteral("there is no profile %1").arg(m_index);
    }

    void checkChannel()
    {
        if (!m_inProfile) {
            m_reason = QStringLiteral("<Channel> outside a <Profile>");
            return;
        }
        const int index = integer(QStringLiteral("index"));
        if (m_reason.isEmpty() && (index < 0 || index > m_channels))
            m_reason = QStringLiteral("channel index %1 leaves a gap: %2 channels so far").arg(index).arg(m_channels);
        ++m_channels;
        for (const QString &component : {QStringLiteral("X"), QStringLiteral("Y"), QStringLiteral("Z")})
            checkNumber(component);
    }

    void checkEnd()
    {
        --m_depth;
        if (m_reader.qualifiedName() != QLatin1String("Profile"))
            return;
        m_inProfile = false;
        const auto configuration =
            ColorUtils::nChannelConfigurationForHuelockProfileID(ColorUtils::HuelockProfileID(m_index));
        const int needed = ColorUtils::configChannelCount(configuration);
        if (m_channels < needed)
            m_reason = QStringLiteral("profile %1 has %2 channels, %3 needs %4")
                           .arg(m_index)
                           .arg(m_channels)
                           .arg(ColorUtils::nameForChannelConfiguration(configuration))
                           .arg(needed);
    }

    QString attribute(const QString &name)
    {
        const QXmlStreamAttributes attributes = m_reader.attributes();
        if (!attributes.hasAttribute(name) && m_reason.isEmpty())
            m_reason = QStringLiteral("<%1> has no \"%2\"").arg(m_reader.qualifiedName().toString(), name);
        return attributes.value(name).toString();
    }

    int integer(const QString &name)
    {
        bool isInteger = false;
        const QString text = attribute(name);
        const int value = text.toInt(&isInteger);
        if (!isInteger && m_reason.isEmpty())
            m_reason = QStringLiteral("\"%1\" is no whole number: '%2'").arg(name, text);
        return value;
    }

    void checkNumber(const QString &name)
    {
        bool isNumber = false;
        const QString text = attribute(name);
        const double value = text.toDouble(&isNumber);
        if (m_reason.isEmpty() && (!isNumber || !std::isfinite(value) || value < 0))
            m_reason = QStringLiteral("\"%1\" is no number from 0 up: '%2'").arg(name, text);
    }

    QXmlStreamReader m_reader;
    QString m_reason;
    int m_depth = 0;
    int m_profiles = 0;
    int m_index = 0;
    int m_channels = 0;
    bool m_inProfile = false;
};

} // namespace

std::optional<DatabaseFault> findFault(const QByteArray &document)
{
    if (document.size() > MAX_DATABASE_BYTES
        || QString::fromUtf8(document.constData(), document.size()).size() > MAX_CHARACTERS)
        return DatabaseFault{1, QStringLiteral("it is longer than %1 characters").arg(MAX_CHARACTERS)};
    return Checker(document).run();
}
