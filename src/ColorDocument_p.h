#pragma once

#include <QByteArray>
#include <QString>

class QDomDocument;

/// Colour documents (library files and project documents) on their way to and from bytes.
namespace ColorDocument {

/// What a document may be, so that no file can take the host's time, stack or memory.
constexpr qint64 MAX_BYTES = qint64(64) * 1024 * 1024;
constexpr int MAX_DEPTH = 64;

/// \a text without what XML 1.0 cannot carry: control characters, lone surrogates, U+FFFE and U+FFFF.
QString writable(const QString &text);

/// \a document as UTF-8, writable(), indented by 1, with the attributes of each element in a fixed order: those of colour
/// elements as the format lists them, others behind them by name. The order that QDomDocument has follows the
/// process's hash seed.
QByteArray toBytes(const QDomDocument &document);

/// Whether \a document came without an XML declaration, or with one that names no other encoding than UTF-8. A text
/// that names another may not be written in it, and its names come in spoilt then.
bool isDeclaredAsUtf8(const QDomDocument &document);

/// Parses \a bytes with namespace processing.
/// \return an empty text, or why they were refused: too long, entity declarations, nested too deep, or not
///         well-formed; \a document is then untouched.
QString parse(const QByteArray &bytes, QDomDocument &document);

/// Reads and parses the file at \a path, unless it is no regular file. \a bytes receives what was read.
/// One that is too long is refused unread. \return as parse().
QString read(const QString &path, QDomDocument &document, QByteArray &bytes);

} // namespace ColorDocument
