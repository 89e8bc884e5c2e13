// The colour section of a host's project document.

#include "Fuzz.h"

#include <KestraProjectHelper.h>
#include <TrelColorLibrary.h>

#include <QDomDocument>

namespace {

constexpr char SWATCHES[] = "Project Swatches";

QByteArray written(const TrelColorLibrary &library)
{
    QDomDocument document;
    bool ok = false;
    document.appendChild(library.createElement(document, ok, QLatin1String(KESTRA_APPLICATION_ID)));
    FUZZ_REQUIRE(ok);
    return KestraProjectHelper::toByteArray(document);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Fuzz::Input input(data, size);
    const double version = input.real();
    const QByteArray bytes = input.rest();
    // The host parses its document itself; Qt's parser expands entities without end.
    QDomDocument document;
    if (bytes.contains("<!") || !document.setContent(bytes, true))
        return 0;
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    QString error;
    FUZZ_REQUIRE(library->loadDocument(document, error, version, QLatin1String(KESTRA_APPLICATION_ID)));
    const QStringList uids = library->getColorUids(SWATCHES);
    if (uids.isEmpty())
        return 0;
    for (const QString &uid : uids) {
        if (!uid.isEmpty())
            library->getExposableUidFromUid(uid);
    }
    const QByteArray saved = written(*library);
    QDomDocument again;
    FUZZ_REQUIRE(again.setContent(saved, true));
    FUZZ_REQUIRE(library->loadDocument(again, error, version, QLatin1String(KESTRA_APPLICATION_ID)));
    KestraProjectHelper::toByteArray(document);
    TrelColorLibrary::cleanup();
    Fuzz::deleteLater();
    return 0;
}
