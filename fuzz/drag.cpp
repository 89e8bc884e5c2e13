// What comes out of a drag: mime data, uid-and-value strings, an item's stream form.

#include "Fuzz.h"

#include <TrelColorLibrary.h>

#include <QMimeData>

#include <memory>

namespace {

void readUidAndValue(const QString &text)
{
    const QString uid = TrelColorLibrary::UidAndValueToUid(text);
    const QString value = TrelColorLibrary::UidAndValueToValue(text);
    FUZZ_REQUIRE(text.startsWith(uid));
    FUZZ_REQUIRE(text.startsWith('}') ? value == text : uid + value == text);
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    const int lists = library->rowCount(library->rootIndex());
    const TrelColor color = library->get(text);
    FUZZ_REQUIRE(library->get(text).aName() == color.aName());
    FUZZ_REQUIRE(library->rowCount(library->rootIndex()) == lists);
    library->getQColor(text);
    library->set(text, color);
    library->pathOfUid(text);
}

void dragAgain(const QString &text)
{
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    library->createColorWithName(TrelColor(Qt::red), text, text, QStringLiteral("Mine"), text);
    const QModelIndex color = library->index(0, 0, library->getIndexOfListId(QStringLiteral("Mine")));
    const std::unique_ptr<QMimeData> drag(library->mimeData({color, QModelIndex(), color}));
    FUZZ_REQUIRE(drag->hasFormat(TRELCOLOR_MIME_TYPE));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Fuzz::Input input(data, size);
    const bool isHosts = input.draw(2) == 1;
    const QByteArray bytes = input.rest();
    QMimeData drag;
    drag.setData(QStringLiteral("data/x-trelcolor-originatingPreset"), bytes);
    if (isHosts)
        drag.setData(QStringLiteral("x-kestra/color"), bytes);
    const QString preset = TrelColorLibrary::getOriginatingPresetFromMimeData(&drag);
    FUZZ_REQUIRE(isHosts || preset.isEmpty());
    FUZZ_REQUIRE(!preset.contains(',') && preset.size() <= bytes.size());

    const QString text = QString::fromUtf8(bytes);
    readUidAndValue(text);
    readUidAndValue(text.section(',', 0, 0));
    dragAgain(text);
    TrelColorLibrary::cleanup();
    Fuzz::deleteLater();
    return 0;
}
