// A file of colour lists, as a preset or a user's file.

#include "Fuzz.h"

#include <KestraProjectHelper.h>
#include <TrelColorLibrary.h>

#include <QDomDocument>

namespace {

QByteArray written(const TrelColorLibrary &library)
{
    QDomDocument document;
    QDomNode root = document.appendChild(document.createElement(QStringLiteral("ColorLibraryList")));
    for (int row = 0; row < library.rowCount(library.rootIndex()); ++row) {
        const QModelIndex list = library.index(row, 0, library.rootIndex());
        bool ok = false;
        if (library.isUserListIndex(list))
            root.appendChild(static_cast<TrelColorLibraryItem *>(list.internalPointer())
                                 ->createElement(document, ok, QLatin1String(KESTRA_APPLICATION_ID), true));
    }
    return KestraProjectHelper::toByteArray(document);
}

QStringList userColors(const TrelColorLibrary &library)
{
    QStringList colors;
    for (int row = 0; row < library.rowCount(library.rootIndex()); ++row) {
        const QModelIndex list = library.index(row, 0, library.rootIndex());
        if (library.isUserListIndex(list))
            colors << list.data(Qt::EditRole).toString()
                          + library.getColorUids(list.data(Qt::EditRole).toString()).join(',');
    }
    return colors;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    const int fixedLists = library->rowCount(library->rootIndex());
    library->loadUserColors(Fuzz::fileWith(bytes));
    if (library->rowCount(library->rootIndex()) == fixedLists)
        return 0;
    // Whatever came in can be written, and what was written can be read.
    const QByteArray saved = written(*library);
    QDomDocument document;
    FUZZ_REQUIRE(document.setContent(saved, true));
    FUZZ_REQUIRE(written(*library) == saved);
    const QStringList before = userColors(*library);
    TrelColorLibrary::cleanup();
    TrelColorLibrary::Instance()->loadUserColors(Fuzz::fileWith(saved));
    FUZZ_REQUIRE(userColors(*TrelColorLibrary::Instance()).size() == before.size());
    TrelColorLibrary::cleanup();
    Fuzz::deleteLater();
    return 0;
}
