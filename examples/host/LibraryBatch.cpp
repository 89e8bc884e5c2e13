#include "LibraryBatch.h"

#include <TrelColorLibrary.h>

int LibraryBatch::s_open = 0;

LibraryBatch::LibraryBatch()
{
    if (s_open++ == 0)
        TrelColorLibrary::Instance()->setEditingMultipleColors(true);
}

LibraryBatch::~LibraryBatch()
{
    if (--s_open == 0)
        TrelColorLibrary::Instance()->setEditingMultipleColors(false);
}
