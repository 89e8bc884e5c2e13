#include "ColorUtils.h"
#include "CurveFactory.h"
#include "HuelockProfileFactory.h"
#include "IOMode.h"
#include "IOModeFactory.h"
#include "KestraProjectHelper.h"
#include "TestSupport.h"
#include "TrelColorLibrary.h"

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QGuiApplication>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>
#include <QXmlStreamReader>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

using Texts = QMap<QString, QString>;

struct Language
{
    const char *locale; ///< of a country without a catalogue of its own
    QString swatches;
    Texts names; ///< one of each kind of name
};

// A few words as they must be, so that two catalogues cannot change places; the rest is what the catalogue says.
const QMap<QString, Language> LANGUAGES{
    {"de",
     {"de_AT",
      "Farbfelder",
      {{"Linear (Default)", "Linear (Standard)"},
       {"RGB In / RGBAW Out", "RGB-Eingang / RGBAW-Ausgang"},
       {"Generic RGBW", "Generisches RGBW"},
       {"White", "Weiß"}}}},
    {"es",
     {"es_MX",
      "Muestras",
      {{"Linear (Default)", "Lineal (predeterminada)"},
       {"RGB In / RGBAW Out", "Entrada RGB / salida RGBAW"},
       {"Generic RGBW", "RGBW genérico"},
       {"White", "Blanco"}}}},
    {"fr",
     {"fr_CA",
      "Nuancier",
      {{"Linear (Default)", "Linéaire (par défaut)"},
       {"RGB In / RGBAW Out", "Entrée RGB / sortie RGBAW"},
       {"Generic RGBW", "RGBW générique"},
       {"White", "Blanc"}}}},
    {"ja",
     {"ja_JP",
      "スウォッチ",
      {{"Linear (Default)", "リニア（デフォルト）"},
       {"RGB In / RGBAW Out", "RGB入力 / RGBAW出力"},
       {"Generic RGBW", "汎用RGBW"},
       {"White", "ホワイト"}}}},
};

const QStringList PRODUCTS{"Strand/Beam KVX",   "Tessel CoveLine",   "WashLine PZ6 RGBA", "WashLine PZ6 RGBW",
                           "FloodBar KQ2 RGBA", "FloodBar KQ2 RGBW", "PixelNode RGB"};

// What a language says as English does, beside products.
const QMap<QString, QStringList> SAME_AS_ENGLISH{{"de", {"Amber", "Mint"}}};

// By curve type, by I/O mode, by profile, and again by profile.
const QStringList CURVES{"Linear (Default)", "Normal (Trel Gamma)", "Tungsten/Incandescent"};
const QStringList MODES{"RGB In/Out",         "RGBA In/Out",          "RGBW In/Out",       "RGBAW In/Out",
                        "RGBWW In/Out",       "RGB In / RGBA Out",    "RGB In / RGBW Out", "RGB In / RGBAW Out",
                        "RGB In / RGBWW Out", "Single Channel In/Out"};
const QStringList PROFILES{"Generic RGB",       "Strand/Beam KVX",   "Tessel CoveLine",   "Generic RGBW",
                           "Single Channel",    "WashLine PZ6 RGBA", "WashLine PZ6 RGBW", "PixelNode RGB",
                           "FloodBar KQ2 RGBA", "FloodBar KQ2 RGBW"};
const QStringList RGB{"Red", "Green", "Blue"};
const QList<QStringList> CHANNELS{RGB,
                                  RGB + QStringList{"Amber", "White"},
                                  RGB + QStringList{"Mint", "White"},
                                  RGB + QStringList{"White"},
                                  RGB,
                                  RGB + QStringList{"Amber"},
                                  RGB + QStringList{"White"},
                                  RGB,
                                  RGB + QStringList{"Amber"},
                                  RGB + QStringList{"White"}};

constexpr char NULL_NODE[] = "Found NULL TrelColorLibrary node";
constexpr char NULL_ELEMENT[] = "Found NULL TrelColorLibrary element";
constexpr char OTHER_ELEMENT[] = "Expected TrelColorLibrary element";

/// An entry of a catalogue as it is written.
struct Message
{
    QString context;
    QString english;
    QString translation;
    QString state; ///< "unfinished", "vanished"…; empty for one that is done
};

QList<Message> messagesOf(const QString &language)
{
    QFile file(QString(TREL_CATALOGUES "/trelcolor_%1.ts").arg(language));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no catalogue for %s", qPrintable(language));
    QXmlStreamReader xml(&file);
    QList<Message> messages;
    Message message;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name")) {
            message.context = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            message.english = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            message.state = xml.attributes().value("type").toString();
            message.translation = xml.readElementText();
            messages.append(message);
        }
    }
    if (xml.hasError())
        qFatal("%s: %s", qPrintable(language), qPrintable(xml.errorString()));
    return messages;
}

QStringList occurrences(const QString &pattern, const QString &text)
{
    QStringList found;
    QRegularExpressionMatchIterator matches = QRegularExpression(pattern).globalMatch(text);
    while (matches.hasNext())
        found.append(matches.next().captured());
    return found;
}

QStringList placeholders(const QString &text)
{
    QStringList found = occurrences("%(L?[0-9]+|n)", text);
    found.sort(); // languages order their words differently
    return found;
}

/// What a user or a format reads the same in every language; an input stands before its output.
QStringList abbreviations(const QString &text)
{
    return occurrences("RGB[AW]*|NULL|ID", text);
}

QStringList faultsOf(const QString &language, const Message &message)
{
    const bool mayBeEnglish = SAME_AS_ENGLISH.value(language).contains(message.english);
    const bool isProduct = PRODUCTS.contains(message.english);
    const bool isEnglish = message.translation == message.english;
    QStringList faults;
    if (message.translation.trimmed().isEmpty())
        faults.append("empty");
    if (!message.state.isEmpty())
        faults.append(message.state);
    if (placeholders(message.translation) != placeholders(message.english))
        faults.append("placeholders");
    if (abbreviations(message.translation) != abbreviations(message.english))
        faults.append("abbreviations");
    if (isEnglish && !isProduct && !mayBeEnglish)
        faults.append("English");
    if (!isEnglish && isProduct)
        faults.append("product");
    return faults;
}

QStringList faultsOf(const QString &language, const QList<Message> &messages)
{
    QStringList faults;
    QSet<QString> shown;
    for (const Message &message : messages) {
        QStringList own = faultsOf(language, message);
        // A host looks curves up by name, and a user tells the rest apart by it.
        const QString text = message.context + '\n' + message.translation;
        if (shown.contains(text))
            own.append("twice");
        shown.insert(text);
        for (const QString &fault : qAsConst(own))
            faults.append(message.english + ": " + fault);
    }
    return faults;
}

class ChildApplication
{
private:
    int m_count = 1;
    char m_name[5] = "test";
    char *m_arguments[2] = {m_name, nullptr};
    QGuiApplication m_application{m_count, m_arguments};
};

class CatalogueTranslator : public QTranslator
{
public:
    /// Installs what the host of a user with \a locale would.
    explicit CatalogueTranslator(const QString &locale)
    {
        if (!load("trelcolor_" + locale, TREL_COMPILED_CATALOGUES))
            qFatal("no compiled catalogue for %s", qPrintable(locale));
        QCoreApplication::installTranslator(this);
    }
};

void requireSame(const QString &shown, const QString &wanted)
{
    if (shown == wanted)
        return;
    std::fprintf(stderr, "\"%s\" instead of \"%s\"\n", qPrintable(shown), qPrintable(wanted));
    std::exit(1);
}

void requireSame(int given, int wanted)
{
    requireSame(QString::number(given), QString::number(wanted));
}

/// Compares what the library shows with the catalogue, and keeps count of the entries.
class Reader
{
public:
    explicit Reader(const QString &language)
    {
        for (const Message &message : messagesOf(language))
            m_texts.insert(message.context + '\n' + message.english, message.translation);
    }

    void see(const QString &shown, const QString &english, const QString &context = "QObject")
    {
        const QString key = context + '\n' + english;
        requireSame(shown, m_texts.value(key, "nothing for " + english));
        m_seen.insert(key);
    }

    /// Every entry is the translation of something that a user can come to see.
    void requireAllSeen() const
    {
        for (const QString &key : m_texts.keys())
            requireSame(m_seen.contains(key) ? key : QString("nothing"), key);
    }

private:
    Texts m_texts;
    QSet<QString> m_seen;
};

QString curveName(int type)
{
    return CurveFactory::Instance()->nameForCurveType(type);
}

QString modeName(int id)
{
    return IOModeFactory::instance()->nameForIOModeID(ColorUtils::IOModeID(id));
}

HueLockProfile *profile(int id)
{
    return HuelockProfileFactory::instance()->getProfile(ColorUtils::HuelockProfileID(id));
}

QString header(int section)
{
    return TrelColorLibrary::Instance()->headerData(section, Qt::Horizontal, Qt::DisplayRole).toString();
}

QString errorOfListWithoutColors()
{
    QDomDocument document;
    document.setContent(QString("<Project><ColorLibrary name='L'/></Project>"));
    KestraProjectHelper helper;
    QString error;
    QStringList oldUids;
    requireSame(int(helper.loadDocument(document, error, 1, oldUids)), 0);
    return error;
}

void seeCurves(Reader &reader)
{
    for (int type = 0; type < CURVES.size(); ++type) {
        reader.see(curveName(type), CURVES.at(type));
        requireSame(CurveFactory::Instance()->curveTypeFromName(curveName(type)), type);
        requireSame(CurveFactory::Instance()->curveTypeFromName(CURVES.at(type)), -1);
    }
}

void seeModes(Reader &reader)
{
    for (int id = 0; id < MODES.size(); ++id) {
        reader.see(modeName(id), MODES.at(id));
        reader.see(IOModeFactory::instance()->ioMode(ColorUtils::IOModeID(id))->name(), MODES.at(id));
    }
}

void seeProfiles(Reader &reader)
{
    const QMap<int, QString> map = ColorUtils::huelockProfileIDNameMap();
    const QStringList list = ColorUtils::huelockProfileIDNameList(true);
    requireSame(int(map.size()), int(PROFILES.size()));
    requireSame(int(list.size()), int(PROFILES.size()));
    for (int id = 0; id < PROFILES.size(); ++id) {
        reader.see(profile(id)->name(), PROFILES.at(id));
        reader.see(ColorUtils::huelockProfileIDName(ColorUtils::HuelockProfileID(id)), PROFILES.at(id));
        reader.see(list.at(id), PROFILES.at(id));
        reader.see(map.value(id), PROFILES.at(id));
        const QStringList channels = profile(id)->getChannelNames();
        requireSame(int(channels.size()), int(CHANNELS.at(id).size()));
        for (int i = 0; i < channels.size(); ++i)
            reader.see(channels.at(i), CHANNELS.at(id).at(i));
    }
}

void seeLibrary(Reader &reader)
{
    reader.see(header(0), "Swatches", "TrelColorLibrary");
    reader.see(header(1), "Color ID", "TrelColorLibrary");
    reader.see(errorOfListWithoutColors(), NULL_ELEMENT, "KestraProjectHelper");
    // No document leads to these.
    for (const char *error : {NULL_NODE, OTHER_ELEMENT})
        reader.see(KestraProjectHelper::tr(error), error, "KestraProjectHelper");
}

void seeWords(const Language &language)
{
    requireSame(curveName(0), language.names.value(CURVES.at(0)));
    requireSame(modeName(7), language.names.value(MODES.at(7)));
    requireSame(profile(3)->name(), language.names.value(PROFILES.at(3)));
    requireSame(profile(3)->getChannelNames().last(), language.names.value("White"));
    requireSame(header(0), language.swatches);
}

void speaks(const QString &name)
{
    const ChildApplication application;
    const CatalogueTranslator translator(LANGUAGES.value(name).locale);
    Reader reader(name);
    seeCurves(reader);
    seeModes(reader);
    seeProfiles(reader);
    seeLibrary(reader);
    reader.requireAllSeen();
    seeWords(LANGUAGES.value(name));
}

/// What the registries have built stays in \a kept; what is asked for anew is in \a current.
void requireNames(const Texts &kept, const Texts &current, const QString &swatches)
{
    requireSame(modeName(7), kept.value(MODES.at(7), MODES.at(7)));
    requireSame(profile(3)->name(), kept.value(PROFILES.at(3), PROFILES.at(3)));
    requireSame(ColorUtils::huelockProfileIDNameMap().value(3), kept.value(PROFILES.at(3), PROFILES.at(3)));
    requireSame(profile(3)->getChannelNames().last(), kept.value("White", "White"));
    requireSame(curveName(0), current.value(CURVES.at(0), CURVES.at(0)));
    requireSame(header(0), swatches);
}

void changesLanguage()
{
    const ChildApplication application;
    const Language &german = *LANGUAGES.find("de");
    const Language &japanese = *LANGUAGES.find("ja");
    {
        const CatalogueTranslator first("de");
        requireNames(german.names, german.names, german.swatches);
        const CatalogueTranslator second("ja");
        requireNames(german.names, japanese.names, japanese.swatches);
    }
    requireNames(german.names, {}, "Swatches");
}

void loadsTooLate()
{
    const ChildApplication application;
    requireNames({}, {}, "Swatches");
    const Language &german = *LANGUAGES.find("de");
    const CatalogueTranslator late("de");
    requireNames({}, german.names, german.swatches);
}

const ChildCases childCases{
    {"speaks de", [] { speaks("de"); }}, {"speaks es", [] { speaks("es"); }},   {"speaks fr", [] { speaks("fr"); }},
    {"speaks ja", [] { speaks("ja"); }}, {"changes language", changesLanguage}, {"loads too late", loadsTooLate},
};

void addLanguageRows()
{
    QTest::addColumn<QString>("language");
    for (const QString &language : LANGUAGES.keys())
        QTest::newRow(qPrintable(language)) << language;
}

} // namespace

class tst_Translations : public TrelTest
{
    Q_OBJECT

private Q_SLOTS:
    void languages();
    void catalogues_data();
    void catalogues();
    void faultsAreFound_data();
    void faultsAreFound();
    void sameTranslationTwice();
    void translatedNames_data();
    void translatedNames();
    void registriesKeepTheirLanguage_data();
    void registriesKeepTheirLanguage();
};

void tst_Translations::languages()
{
    QStringList files;
    for (const QString &language : LANGUAGES.keys())
        files.append(QString("trelcolor_%1.ts").arg(language));
    QCOMPARE(QDir(TREL_CATALOGUES).entryList({"*.ts"}, QDir::Files, QDir::Name), files);
}

void tst_Translations::catalogues_data()
{
    addLanguageRows();
}

void tst_Translations::catalogues()
{
    QFETCH(QString, language);
    QCOMPARE(faultsOf(language, messagesOf(language)), QStringList());
}

void tst_Translations::faultsAreFound_data()
{
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("translation");
    QTest::addColumn<QString>("state");
    QTest::addColumn<QStringList>("faults");
    QTest::newRow("none") << "Red"
                          << "Rot" << QString() << QStringList{};
    QTest::newRow("a word that is German as well") << "Mint"
                                                   << "Mint" << QString() << QStringList{};
    QTest::newRow("a product") << "PixelNode RGB"
                               << "PixelNode RGB" << QString() << QStringList{};
    QTest::newRow("blank") << "Red"
                           << " " << QString() << QStringList{"empty"};
    QTest::newRow("unfinished") << "Red"
                                << "Rot"
                                << "unfinished" << QStringList{"unfinished"};
    QTest::newRow("lost placeholder") << "%1 of %2"
                                      << "%1" << QString() << QStringList{"placeholders"};
    QTest::newRow("other placeholder") << "Red %1"
                                       << "Rot %2" << QString() << QStringList{"placeholders"};
    QTest::newRow("placeholders in another order") << "%1 of %2"
                                                   << "%2: %1" << QString() << QStringList{};
    QTest::newRow("lost number") << "%n colour(s)"
                                 << "Farben" << QString() << QStringList{"placeholders"};
    QTest::newRow("other channels") << "RGBA In/Out"
                                    << "RGBW-Eingang/-Ausgang" << QString() << QStringList{"abbreviations"};
    QTest::newRow("output first") << "RGB In / RGBA Out"
                                  << "RGBA-Eingang / RGB-Ausgang" << QString() << QStringList{"abbreviations"};
    QTest::newRow("English") << "Red"
                             << "Red" << QString() << QStringList{"English"};
    QTest::newRow("translated product") << "Tessel CoveLine"
                                        << "Tessel Voutenlinie" << QString() << QStringList{"product"};
}

void tst_Translations::faultsAreFound()
{
    QFETCH(QString, english);
    QFETCH(QString, translation);
    QFETCH(QString, state);
    QFETCH(QStringList, faults);
    QCOMPARE(faultsOf("de", Message{"QObject", english, translation, state}), faults);
}

void tst_Translations::sameTranslationTwice()
{
    const QList<Message> messages{{"QObject", "Red", "Rot", ""}, {"QObject", "Amber", "Rot", ""}};
    QCOMPARE(faultsOf("de", messages), QStringList{"Amber: twice"});
}

void tst_Translations::translatedNames_data()
{
    addLanguageRows();
}

void tst_Translations::translatedNames()
{
    QFETCH(QString, language);
    const ChildResult result = runChild("speaks " + language);
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
}

void tst_Translations::registriesKeepTheirLanguage_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("another translator") << "changes language";
    QTest::newRow("a translator that comes late") << "loads too late";
}

void tst_Translations::registriesKeepTheirLanguage()
{
    QFETCH(QString, name);
    const ChildResult result = runChild(name);
    QVERIFY2(!result.crashed && result.code == 0, result.err.constData());
}

TREL_TEST_MAIN(tst_Translations, childCases)
#include "tst_Translations.moc"
