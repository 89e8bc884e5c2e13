#pragma once

#include <QJsonValue>
#include <QString>

/// What the command says and how it ends.
namespace Console {

enum ExitCode : int {
    Success = 0,
    BadInput = 1,    ///< a colour or a file could not be read
    BadArguments = 2 ///< the command line makes no sense
};

/// Prints \a text as UTF-8 on standard output.
void print(const QString &text);

/// Prints \a json, an array or an object, indented, on standard output.
void print(const QJsonValue &json);

/// Whether everything printed so far has reached standard output.
bool isPrinted();

/// Prints one line, with the command's name before it, on standard error; control characters become U+FFFD.
void complain(const QString &text);

/// Keeps the library's debug lines and warnings off standard error: the command reports in its own words.
void silenceLibrary();

} // namespace Console
