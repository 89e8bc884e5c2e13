#pragma once

/// A batch of edits of the library, for as long as it lives: the user's file is written once, at its end. Batches may
/// stand within one another.
class LibraryBatch
{
public:
    LibraryBatch();
    LibraryBatch(const LibraryBatch &) = delete;
    LibraryBatch &operator=(const LibraryBatch &) = delete;
    ~LibraryBatch();

private:
    static int s_open;
};
