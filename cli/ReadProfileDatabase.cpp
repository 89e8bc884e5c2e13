#include "Commands.h"

#include "Console.h"
#include "ProfileDatabaseCheck.h"

#include <TristimulusFactory.h>

#include <QBuffer>
#include <QFile>

int Commands::readProfileDatabase(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        Console::complain(QStringLiteral("cannot open '%1': %2").arg(path, file.errorString()));
        return Console::BadArguments;
    }
    QByteArray document = file.read(MAX_DATABASE_BYTES + 1);
    if (const auto fault = findFault(document)) {
        Console::complain(QStringLiteral("%1:%2: %3").arg(path, QString::number(fault->line), fault->reason));
        return Console::BadInput;
    }
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    if (!TristimulusFactory::getInstance()->parseXML(&buffer)) {
        Console::complain(QStringLiteral("%1: the document could not be read to its end").arg(path));
        return Console::BadInput;
    }
    return Console::Success;
}
