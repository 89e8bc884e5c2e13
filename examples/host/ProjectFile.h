#pragma once

#include "Fixture.h"

#include <QCoreApplication>
#include <QDomDocument>
#include <QString>
#include <QVector>

#include <functional>
#include <optional>

/// Projects on disk: an XML document with the patch and the "Project Swatches". docs/host.md has the grammar.
class ProjectFile
{
    Q_DECLARE_TR_FUNCTIONS(ProjectFile)

public:
    /// Ends the names of project files.
    static constexpr char SUFFIX[] = ".trelproject";

    /// Why a file could not be read or written.
    struct Fault
    {
        QString reason; ///< a sentence for the user; empty for no fault
        int line = 0;   ///< of the file, from 1; 0 where no line is to blame
    };

    /// What a file holds.
    struct Content
    {
        QVector<Fixture> fixtures;
        QDomDocument document; ///< with the colour section, for adoptColors()
    };

    /// Told now and then how many of a project's fixtures are read.
    using Progress = std::function<void(int done, int total)>;

    /// Reads the file at \a path, all of it or nothing: then \a fault says why. The library stays as it is.
    static std::optional<Content> read(const QString &path, Fault &fault, const Progress &progress = Progress());

    /// Reads a project out of \a bytes, as read() does.
    static std::optional<Content> parse(const QByteArray &bytes, Fault &fault, const Progress &progress = Progress());

    /// Replaces the library's "Project Swatches" by the colours of \a content.
    static bool adoptColors(Content &content, Fault &fault);

    /// The document of \a fixtures and the library's "Project Swatches"; always the same bytes for one project.
    static QByteArray documentOf(const QVector<Fixture> &fixtures);

    /// Writes documentOf() to \a path: the file is the old one or the new one, whole. False when it stays the old one.
    static bool write(const QString &path, const QVector<Fixture> &fixtures, Fault &fault);
};
