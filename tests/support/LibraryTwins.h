#pragma once

#include <QString>

#include <functional>
#include <memory>

/// The colour library and a plain one beside it, to which the same operations are done.
///
/// The plain one is written to be read next to the library's description and not to be fast: every look-up is a walk,
/// and every name is tried against the list of all others. Names, uids and values come from small sets, so that they
/// meet.
class LibraryTwins
{
public:
    /// \param random draws any number
    explicit LibraryTwins(std::function<unsigned int()> random);
    LibraryTwins(const LibraryTwins &) = delete;
    LibraryTwins &operator=(const LibraryTwins &) = delete;
    ~LibraryTwins();

    /// Does one operation to both, and compares what they give.
    void step();
    /// Asks both for something that the small sets can name.
    void lookUp();
    /// What the first difference was; empty while the libraries are alike.
    QString difference();

private:
    class Impl;

    std::unique_ptr<Impl> m_impl;
};
