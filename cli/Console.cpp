#include "Console.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace {

void write(std::FILE *file, const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), file);
}

void onlyFatal(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type == QtFatalMsg)
        Console::complain(text);
}

} // namespace

void Console::print(const QString &text)
{
    write(stdout, text.toUtf8());
}

void Console::print(const QJsonValue &json)
{
    write(stdout, (json.isArray() ? QJsonDocument(json.toArray()) : QJsonDocument(json.toObject())).toJson());
}

void Console::complain(const QString &text)
{
    write(stderr, "trelcolor: " + text.toUtf8() + '\n');
}

void Console::silenceLibrary()
{
    qInstallMessageHandler(onlyFatal);
}
