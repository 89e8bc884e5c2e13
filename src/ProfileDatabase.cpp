#include "ProfileDatabase_p.h"

#include "ProfileHandler.h"

#include <QXmlInputSource>
#include <QXmlSimpleReader>

QT_WARNING_DISABLE_DEPRECATED // the SAX classes, as in the header

namespace {

/// Profiles > Profile > Channel are three levels.
constexpr int MAX_DEPTH = 64;

/// Far more than all ten profiles need. It bounds the memory of a single token and the time that
/// inserting channels at the front of their list takes.
constexpr int MAX_CHARACTERS = 256 * 1024;

/// Stops the parse at deep nesting, and at entity declarations, which could grow without bound when they are
/// expanded. ProfileHandler itself accepts every element.
class GuardedProfileHandler : public ProfileHandler
{
public:
    bool startElement(const QString &namespaceURI, const QString &localName, const QString &qName,
                      const QXmlAttributes &attributes) override
    {
        return ++m_depth <= MAX_DEPTH && ProfileHandler::startElement(namespaceURI, localName, qName, attributes);
    }

    bool endElement(const QString &namespaceURI, const QString &localName, const QString &qName) override
    {
        --m_depth;
        return ProfileHandler::endElement(namespaceURI, localName, qName);
    }

    bool internalEntityDecl(const QString &, const QString &) override
    {
        return false;
    }

    bool externalEntityDecl(const QString &, const QString &, const QString &) override
    {
        return false;
    }

    bool unparsedEntityDecl(const QString &, const QString &, const QString &, const QString &) override
    {
        return false;
    }

private:
    int m_depth = 0;
};

/// A document that ends after MAX_CHARACTERS, whatever the device still has.
class BoundedInputSource : public QXmlInputSource
{
public:
    using QXmlInputSource::QXmlInputSource;

    QChar next() override
    {
        if (m_characters >= MAX_CHARACTERS)
            return QChar(EndOfDocument);
        // The base class comes back here when it fetches its next block; that character counts once.
        const int before = m_characters;
        const QChar character = QXmlInputSource::next();
        const bool isText = character != QChar(EndOfData) && character != QChar(EndOfDocument);
        m_characters = before + (isText ? 1 : 0);
        return character;
    }

private:
    int m_characters = 0;
};

} // namespace

bool readProfileDatabase(QIODevice *device)
{
    GuardedProfileHandler handler;
    BoundedInputSource source(device);
    QXmlSimpleReader reader;
    reader.setContentHandler(&handler);
    reader.setErrorHandler(&handler);
    reader.setDeclHandler(&handler);
    reader.setDTDHandler(&handler);
    return reader.parse(&source);
}
