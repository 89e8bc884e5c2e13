#pragma once

#include "TrelExport.h"

#include <QString>
#include <QVector>
#include <QXmlDefaultHandler>

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED // Qt 5.15 would rather have no SAX classes any more

/// Reads a fixture profile database (docs/formats.md) and gives each profile's measurements to
/// TristimulusFactory when the profile's element ends.
///
/// Names are compared on the qualified name. Text, unknown elements and the nesting are ignored (ODD-47).
class TREL_EXPORT ProfileHandler : public QXmlDefaultHandler
{
public:
    ProfileHandler();
    ~ProfileHandler() override;

    /// "Profile" begins a profile, "Channel" adds an emitter to it; always true.
    /// Fatal: a channel index outside 0..channels so far ("QVector<T>::insert", "index out of range").
    bool startElement(const QString &namespaceURI, const QString &localName, const QString &qName,
                      const QXmlAttributes &attributes) override;

    /// The end of a "Profile" replaces the data of the profile with its index, whole; always true. An index
    /// outside −1..10 is skipped with "invalid profile definition" on the debug log.
    bool endElement(const QString &namespaceURI, const QString &localName, const QString &qName) override;

    /// Ignores the text; always true.
    bool characters(const QString &text) override;

    /// Records nothing; always true. The reader stops all the same.
    bool fatalError(const QXmlParseException &exception) override;

    /// Always empty.
    QString errorString() const override;

private:
    enum State : int { BeforeProfiles, InProfiles, InProfile, InChannel };

    void addChannel(const QXmlAttributes &attributes);
    void applyProfile() const;

    State m_state = BeforeProfiles; ///< recorded, never tested
    QString m_profileName;          ///< recorded, never used
    int m_profileIndex = 0;
    QVector<QVector<double>> m_channels; ///< X, Y, Z of each channel of the current profile
    QVector<QString> m_channelNames;     ///< parallel to m_channels
};

QT_WARNING_POP
