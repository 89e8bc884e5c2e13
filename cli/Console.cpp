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

bool Console::isPrinted()
{
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

void Console::complain(const QString &text)
{
    QString line = text;
    for (QChar &character : line) {
        if (character.category() == QChar::Other_Control)
            character = QChar::ReplacementCharacter;
    }
    write(stderr, "trelcolor: " + line.toUtf8() + '\n');
}

void Console::silenceLibrary()
{
    qInstallMessageHandler(onlyFatal);
}
