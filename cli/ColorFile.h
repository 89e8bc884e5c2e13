#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <functional>

/// A file of colour lists as it stands, and all that is wrong with it.
///
/// The library is lenient and silent when it reads such a file. A person who writes or receives one wants to hear what
/// would get lost or changed on the way.
struct ColorFile
{
    struct Color
    {
        QString name;
        QString uid;
        QString value;
        QString vendorId;

        bool operator==(const Color &other) const;
    };

    struct List
    {
        QString name;
        bool isUserList = false;
        QVector<Color> colors;

        bool operator==(const List &other) const;
    };

    struct Fault
    {
        qint64 line;
        QString reason;
        bool isLoss; ///< a program that reads the file and writes it again drops or spoils something
    };

    /// The library reads no longer file.
    static constexpr qint64 MAX_BYTES = qint64(64) * 1024 * 1024;

    QVector<List> lists;   ///< what could be read
    QVector<Fault> faults; ///< by line

    /// Reads \a bytes; \a progress hears now and then how many of them are done.
    static ColorFile parse(const QByteArray &bytes, const std::function<void(qint64)> &progress);

    /// Whether \a uid is a braced UUID as the library makes them.
    static bool isUid(const QString &uid);
};
