#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// No database that the library reads is longer, whatever its characters.
constexpr qint64 MAX_DATABASE_BYTES = qint64(4) * 256 * 1024;

/// What is wrong with a fixture profile database, and where.
struct DatabaseFault
{
    qint64 line = 0;
    QString reason;
};

/// The first fault of the database in \a document; nothing when the library may read it.
///
/// The library is lenient and silent: it skips what it does not understand, reads a missing number as 0 and
/// stops the program at a channel out of order. A person who writes a database wants to hear of all that.
std::optional<DatabaseFault> findFault(const QByteArray &document);
