#include "DmxOutput.h"
#include "MainWindow.h"
#include "SwatchBrowser.h"
#include "Theme.h"

#include <TrelColorLibrary.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QLoggingCategory>
#include <QSettings>
#include <QStandardPaths>
#include <QTranslator>

#include <csignal>

namespace {

struct Arguments
{
    QString project;
    quint16 port = DmxSink::DEFAULT_PORT;
    bool sendsAtOnce = false;
};

void beforeApplication()
{
    std::signal(SIGPIPE, SIG_IGN); // a daemon that goes while it is written to must not take the program with it
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
#endif
    // The library writes a debug line for each blend of two colours in Yxy.
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
}

void nameApplication()
{
    QApplication::setOrganizationName(QStringLiteral("TrelColor"));
    QApplication::setApplicationName(QStringLiteral("trelcolor-host"));
    QApplication::setApplicationDisplayName(QStringLiteral("TrelColor Host"));
    QApplication::setApplicationVersion(QStringLiteral(TREL_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral(TREL_DESKTOP_ID));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/app.svg")));
}

/// Where Qt's own texts are.
QString qtTranslationsFolder()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#else
    return QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#endif
}

/// Where the texts of the library and of this program are: beside it in the build folder, otherwise installed.
QString translationsFolder()
{
    const QString own = QApplication::applicationDirPath() + QStringLiteral("/translations");
    return QDir(own).exists()
               ? own
               : QStandardPaths::locate(QStandardPaths::GenericDataLocation, QStringLiteral("TrelColor/translations"),
                                        QStandardPaths::LocateDirectory);
}

/// Before the library is used, which fixes its names then.
void translateApplication()
{
    const QString folder = translationsFolder();
    const QPair<QString, QString> catalogues[] = {
        {QStringLiteral("qtbase"), qtTranslationsFolder()},
        {QStringLiteral("trelcolor"), folder},
        {QStringLiteral("trelcolor-host"), folder},
    };
    for (const auto &catalogue : catalogues) {
        auto *translator = new QTranslator(qApp);
        // By the locale's name: by its list of languages, English, which needs no catalogue, would be passed over.
        if (translator->load(catalogue.first + QLatin1Char('_') + QLocale().name(), catalogue.second))
            QApplication::installTranslator(translator);
    }
}

Arguments readArguments()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QApplication::translate("main", "Colours for LED fixtures"));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption port(QStringLiteral("ola-port"),
                                  QApplication::translate("main", "Port of the OLA daemon on this machine"),
                                  QStringLiteral("port"), QString::number(DmxSink::DEFAULT_PORT));
    const QCommandLineOption send(QStringLiteral("send"), QApplication::translate("main", "Send DMX at once"));
    parser.addOptions({port, send});
    parser.addPositionalArgument(QStringLiteral("project"), QApplication::translate("main", "Project to open"),
                                 QStringLiteral("[project]"));
    parser.process(*qApp);
    Arguments arguments;
    arguments.project = parser.positionalArguments().value(0);
    arguments.sendsAtOnce = parser.isSet(send);
    bool isPort = false;
    arguments.port = parser.value(port).toUShort(&isPort);
    if (!isPort || arguments.port == 0) {
        qCritical("%s", qPrintable(QApplication::translate("main", "The port must be a number from 1 to 65535.")));
        std::exit(EXIT_FAILURE);
    }
    return arguments;
}

void fillLibrary()
{
    TrelColorLibrary *library = TrelColorLibrary::Instance();
    library->setThumbnailGenerator(SwatchBrowser::thumbnail);
    library->loadPresetFiles();
    library->loadUserColors(QString());
}

} // namespace

int main(int argc, char **argv)
{
    beforeApplication();
    QApplication application(argc, argv);
    nameApplication();
    translateApplication();
    const Arguments arguments = readArguments();
    Theme::restore();
    fillLibrary();

    MainWindow window(DmxSink::create(arguments.port));
    window.show();
    if (!arguments.project.isEmpty())
        window.open(arguments.project);
    window.setSending(arguments.sendsAtOnce);
    return QApplication::exec();
}
