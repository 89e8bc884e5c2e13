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

/// Arguments of `cct` as typed.
struct CctArguments
{
    int cct = 0; ///< kelvin, 1950..11000
    int tint = 0;
    bool isInverse = false; ///< x and y are given instead
    double x = 0;
    double y = 0;
    QString profile;                          ///< empty for none
    QString format = QStringLiteral("table"); ///< table or json
};

/// White light: chromaticity and preview of a CCT and tint, or the other way round.
int cct(const CctArguments &arguments);

/// Arguments of `chart` as typed.
struct ChartArguments
{
    QString out;
    QString size;
    QString range;
    QStringList profiles;
    QStringList colors;
};

/// Draws a chromaticity chart into a file. \pre a QGuiApplication exists.
int chart(const ChartArguments &arguments);

/// The colour library; \a format is table or json. \pre a QGuiApplication exists.
namespace Library {

/// Presets and the user's lists.
int list(const QString &format);

/// The colours of a list.
int show(const QString &list, const QString &format);

/// The colours with \a text in their name, uid, vendor's identifier or hexadecimal form.
int find(const QString &text, const QString &format);

/// Adds a colour to a list of the user's, which is made if there is none.
int add(const QString &list, const QString &name, const QString &color, const QString &format);

/// Renames a colour of the user's. \param color its uid, or list and name joined by "/"
int rename(const QString &color, const QString &newName, const QString &format);

/// Removes a colour of the user's. \param color as for rename()
int remove(const QString &color, const QString &format);

/// Writes lists, all of the user's if none is named, into a file.
int exportLists(const QString &path, const QStringList &lists, const QString &format);

/// Adds the lists of a file to the user's.
int importFile(const QString &path, const QString &format);

/// Reports every fault of colour files.
int check(const QStringList &paths, const QString &format);

} // namespace Library

/// Listings; \a format is table or json.
int profiles(const QString &format);
int modes(const QString &format);
int curves(const QString &format);

/// Replaces emitter data by those of the database in \a path, for this run.
int readProfileDatabase(const QString &path);

} // namespace Commands
