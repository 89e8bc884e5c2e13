#pragma once

#include <QString>
#include <QStringList>

/// What the subcommands do. Each prints its result and returns the exit code (Console::ExitCode).
namespace Commands {

/// Arguments of `convert` as typed; an empty text or a channel count of 0 stands for the profile's own.
struct ConvertArguments
{
    QString profile = QStringLiteral("0");
    QString mode;
    QString curve;
    QString onboardCurve;
    QString format = QStringLiteral("table"); ///< table, json, csv or hex
    int channels = 0;
    int resolution = 8; ///< bits
    bool rgbPassThrough = false;
    QStringList colors; ///< "-" stands for the lines of standard input
};

int convert(const ConvertArguments &arguments);

/// Colours in every form; \a format is table or json.
int inspect(const QStringList &colors, const QString &format);

/// Listings; \a format is table or json.
int profiles(const QString &format);
int modes(const QString &format);
int curves(const QString &format);

/// Replaces emitter data by those of the database in \a path, for this run.
int readProfileDatabase(const QString &path);

} // namespace Commands
