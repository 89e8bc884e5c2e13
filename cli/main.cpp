#include "Commands.h"
#include "Console.h"
#include "Version.h"

#include <CLI/CLI.hpp>

#include <CCTUtils.h>

#include <QGuiApplication>

#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int MOST_CHANNELS = 512; // of a DMX universe

/// The command line as typed.
struct Arguments
{
    std::string profileDatabase;
    std::string profile;
    std::string mode;
    std::string curve;
    std::string onboardCurve;
    std::string format = "table";
    int channels = 0;
    int resolution = 8;
    bool rgbPassThrough = false;
    std::vector<std::string> colors;
    int cct = 0;
    int tint = 0;
    std::vector<double> xy;
    std::string out;
    std::string size = "900x980";
    std::string range = "-0.06,0.92,0.9,-0.98";
    std::vector<std::string> profiles;
    std::string list;
    std::string name;
    std::string color;
    std::string text;
    std::string file;
    std::vector<std::string> lists;
    std::vector<std::string> files;
};

/// Where several values may stand, the parser takes "[a,b]" apart, even if that is a name; behind this character not.
constexpr char GUARD[] = "\x01[";

/// The arguments for the parser, the last one first.
std::vector<std::string> guardedArguments(int argc, char **argv)
{
    std::vector<std::string> result;
    for (int i = argc - 1; i > 0; --i)
        result.emplace_back(argv[i][0] == '[' ? std::string(1, GUARD[0]) + argv[i] : argv[i]);
    return result;
}

QString fromArgument(const std::string &text)
{
    return QString::fromLocal8Bit(text.c_str()).replace(QLatin1String(GUARD), QStringLiteral("["));
}

QStringList fromArguments(const std::vector<std::string> &texts)
{
    QStringList result;
    for (const std::string &text : texts)
        result.append(fromArgument(text));
    return result;
}

Commands::ConvertArguments convertArguments(const Arguments &arguments)
{
    Commands::ConvertArguments result;
    if (!arguments.profile.empty())
        result.profile = fromArgument(arguments.profile);
    result.mode = fromArgument(arguments.mode);
    result.curve = fromArgument(arguments.curve);
    result.onboardCurve = fromArgument(arguments.onboardCurve);
    result.format = fromArgument(arguments.format);
    result.channels = arguments.channels;
    result.resolution = arguments.resolution;
    result.rgbPassThrough = arguments.rgbPassThrough;
    result.colors = fromArguments(arguments.colors);
    return result;
}

Commands::CctArguments cctArguments(const Arguments &arguments)
{
    Commands::CctArguments result;
    result.cct = arguments.cct;
    result.tint = arguments.tint;
    result.isInverse = !arguments.xy.empty();
    if (result.isInverse) {
        result.x = arguments.xy.at(0);
        result.y = arguments.xy.at(1);
    }
    result.profile = fromArgument(arguments.profile);
    result.format = fromArgument(arguments.format);
    return result;
}

Commands::ChartArguments chartArguments(const Arguments &arguments)
{
    return {fromArgument(arguments.out), fromArgument(arguments.size), fromArgument(arguments.range),
            fromArguments(arguments.profiles), fromArguments(arguments.colors)};
}

void addFormat(CLI::App *command, Arguments &arguments, const std::vector<std::string> &formats)
{
    command->add_option("--format", arguments.format, "How to print the result")
        ->check(CLI::IsMember(formats))
        ->capture_default_str();
}

void addColors(CLI::App *command, Arguments &arguments, const std::string &description)
{
    command->add_option("COLOUR", arguments.colors, description)->required()->expected(1, -1);
}

void addConvert(CLI::App &app, Arguments &arguments)
{
    CLI::App *convert = app.add_subcommand("convert", "Convert colours to the DMX bytes of a fixture");
    convert->add_option("--profile", arguments.profile, "Fixture profile, by number or name; generic RGB without it")
        ->type_name("ID|NAME");
    convert->add_option("--mode", arguments.mode, "I/O mode; the profile's own without it")->type_name("ID|NAME");
    convert->add_option("--channels", arguments.channels, "Channels of the fixture; those of the mode without it")
        ->type_name("N")
        ->check(CLI::Range(1, MOST_CHANNELS));
    convert->add_option("--resolution", arguments.resolution, "Bits a channel")
        ->type_name("8|16")
        ->check(CLI::IsMember(std::vector<int>{8, 16}))
        ->capture_default_str();
    convert->add_option("--curve", arguments.curve, "Curve for levels that are passed through; linear without it")
        ->type_name("ID|NAME");
    convert
        ->add_option("--onboard-curve", arguments.onboardCurve,
                     "Curve of the fixture itself; the profile's own without it")
        ->type_name("ID|NAME");
    convert->add_flag("--rgb-pass-through", arguments.rgbPassThrough,
                      "Hand RGB colours to a pass-through mode as they are");
    addFormat(convert, arguments, {"table", "json", "csv", "hex"});
    addColors(convert, arguments, "Hexadecimal colours, colour names or value strings; - reads one a line");
}

void addOthers(CLI::App &app, Arguments &arguments)
{
    CLI::App *inspect = app.add_subcommand("inspect", "Show colours in every form");
    addFormat(inspect, arguments, {"table", "json"});
    addColors(inspect, arguments, "Hexadecimal colours, colour names or value strings");
    const std::pair<const char *, const char *> listings[] = {{"profiles", "List the fixture profiles"},
                                                              {"modes", "List the I/O modes"},
                                                              {"curves", "List the dimming curves"}};
    for (const auto &[name, description] : listings)
        addFormat(app.add_subcommand(name, description), arguments, {"table", "json"});
}

void addCct(CLI::App &app, Arguments &arguments)
{
    CLI::App *cct = app.add_subcommand("cct", "Show the white light of a colour temperature");
    auto *kelvin = cct->add_option("KELVIN", arguments.cct, "Correlated colour temperature")
                       ->check(CLI::Range(CCTUtils::getMinCCT(), CCTUtils::getMaxCCT()));
    auto *tint = cct->add_option("--tint", arguments.tint, "Distance from the locus, greenish above 0, pinkish below")
                     ->check(CLI::Range(CCTUtils::getMinTint(), CCTUtils::getMaxTint()))
                     ->capture_default_str();
    auto *xy = cct->add_option("--from-xy", arguments.xy, "The other way round: the white point of a chromaticity")
                   ->type_name("X Y")
                   ->expected(2)
                   ->excludes(kelvin)
                   ->excludes(tint);
    cct->final_callback([kelvin, xy] {
        if (kelvin->count() == 0 && xy->count() == 0)
            throw CLI::RequiredError("KELVIN or --from-xy");
    });
    cct->add_option("--profile", arguments.profile, "Show levels and bytes for this fixture profile, too")
        ->type_name("ID|NAME");
    addFormat(cct, arguments, {"table", "json"});
}

void addChart(CLI::App &app, Arguments &arguments)
{
    CLI::App *chart = app.add_subcommand("chart", "Draw a CIE 1931 chromaticity chart");
    chart->add_option("--out", arguments.out, "Where to, a .png or .svg file")->type_name("FILE")->required();
    chart->add_option("--size", arguments.size, "Width and height in pixels")->type_name("WxH")->capture_default_str();
    chart->add_option("--range", arguments.range, "Top left corner and extent in x and y, the height downwards")
        ->type_name("x,y,w,h")
        ->capture_default_str();
    chart->add_option("--profile", arguments.profiles, "Draw the gamut of this fixture profile")
        ->type_name("ID|NAME")
        ->expected(1)
        ->take_all();
    chart->add_option("--colour,--color", arguments.colors, "Mark this colour")
        ->type_name("COLOUR")
        ->expected(1)
        ->take_all();
}

void addLibrary(CLI::App &app, Arguments &arguments)
{
    CLI::App *library = app.add_subcommand("library", "Look after lists of named colours");
    library->require_subcommand(1);
    addFormat(library, arguments, {"table", "json"});

    library->add_subcommand("list", "List the presets and the user's lists");

    CLI::App *show = library->add_subcommand("show", "Show the colours of a list");
    show->add_option("LIST", arguments.list, "Name of the list")->required();

    CLI::App *find = library->add_subcommand("find", "Find colours");
    find->add_option("TEXT", arguments.text, "Part of the name, uid, vendor's identifier or hexadecimal form")
        ->required();

    CLI::App *add = library->add_subcommand("add", "Add a colour to a list of the user's");
    add->add_option("LIST", arguments.list, "Name of the list, which is made if there is none")->required();
    add->add_option("NAME", arguments.name, "Name of the colour")->required();
    add->add_option("COLOUR", arguments.color, "Hexadecimal colour, colour name or value string")->required();

    CLI::App *rename = library->add_subcommand("rename", "Rename a colour of the user's");
    rename->add_option("ENTRY", arguments.color, "LIST/NAME or uid")->required();
    rename->add_option("NEWNAME", arguments.name, "Its new name")->required();

    CLI::App *remove = library->add_subcommand("remove", "Remove a colour of the user's");
    remove->add_option("ENTRY", arguments.color, "LIST/NAME or uid")->required();

    CLI::App *exporter = library->add_subcommand("export", "Write lists into a file");
    exporter->add_option("FILE", arguments.file, "Where to, a .trelcolors file")->required();
    exporter->add_option("LIST", arguments.lists, "Names of lists; all of the user's without any")->expected(0, -1);

    CLI::App *importer = library->add_subcommand("import", "Add the lists of a file to the user's");
    importer->add_option("FILE", arguments.file, "A .trelcolors file")->required();

    CLI::App *check = library->add_subcommand("check", "Report every fault of colour files");
    check->add_option("FILE", arguments.files, "Colour files")->required()->expected(1, -1);
}

/// Text and pictures need a GUI application, but no screen.
std::unique_ptr<QCoreApplication> createApplication(bool withPictures, int &argc, char **argv)
{
    if (!withPictures)
        return std::make_unique<QCoreApplication>(argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return std::make_unique<QGuiApplication>(argc, argv);
}

int runLibrary(const CLI::App &library, const Arguments &arguments)
{
    const QString format = fromArgument(arguments.format);
    const QString list = fromArgument(arguments.list);
    const QString name = fromArgument(arguments.name);
    const QString color = fromArgument(arguments.color);
    const QString file = fromArgument(arguments.file);
    if (library.got_subcommand("list"))
        return Commands::Library::list(format);
    if (library.got_subcommand("show"))
        return Commands::Library::show(list, format);
    if (library.got_subcommand("find"))
        return Commands::Library::find(fromArgument(arguments.text), format);
    if (library.got_subcommand("add"))
        return Commands::Library::add(list, name, color, format);
    if (library.got_subcommand("rename"))
        return Commands::Library::rename(color, name, format);
    if (library.got_subcommand("remove"))
        return Commands::Library::remove(color, format);
    if (library.got_subcommand("export"))
        return Commands::Library::exportLists(file, fromArguments(arguments.lists), format);
    if (library.got_subcommand("import"))
        return Commands::Library::importFile(file, format);
    return Commands::Library::check(fromArguments(arguments.files), format);
}

int run(const CLI::App &app, const Arguments &arguments)
{
    if (!arguments.profileDatabase.empty()) {
        if (const int code = Commands::readProfileDatabase(fromArgument(arguments.profileDatabase)))
            return code;
    }
    const QString format = fromArgument(arguments.format);
    if (app.got_subcommand("convert"))
        return Commands::convert(convertArguments(arguments));
    if (app.got_subcommand("inspect"))
        return Commands::inspect(fromArguments(arguments.colors), format);
    if (app.got_subcommand("cct"))
        return Commands::cct(cctArguments(arguments));
    if (app.got_subcommand("chart"))
        return Commands::chart(chartArguments(arguments));
    if (app.got_subcommand("library"))
        return runLibrary(*app.get_subcommand("library"), arguments);
    if (app.got_subcommand("profiles"))
        return Commands::profiles(format);
    if (app.got_subcommand("modes"))
        return Commands::modes(format);
    return Commands::curves(format);
}

/// The first line of what the parser says.
QString firstLine(const CLI::ParseError &error)
{
    return fromArgument(error.what()).section('\n', 0, 0);
}

} // namespace

int main(int argc, char **argv)
{
    Console::silenceLibrary();

    Arguments arguments;
    CLI::App app("Turns colours into the DMX bytes of multi-channel LED fixtures.", "trelcolor");
    app.set_version_flag("--version", "trelcolor " TREL_VERSION, "Print the version and exit");
    app.set_help_all_flag("--help-all", "Print the help of all commands and exit");
    app.add_option("--profile-database", arguments.profileDatabase,
                   "Emitter measurements that replace the built-in ones for this run")
        ->type_name("FILE");
    app.require_subcommand(1);
    app.fallthrough();
    addConvert(app, arguments);
    addCct(app, arguments);
    addChart(app, arguments);
    addLibrary(app, arguments);
    addOthers(app, arguments);
    try {
        app.parse(guardedArguments(argc, argv));
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == int(CLI::ExitCodes::Success))
            return app.exit(error);
        Console::complain(firstLine(error));
        return Console::BadArguments;
    }
    const CLI::App *command = app.get_subcommands().front();
    const bool withPictures = command->get_name() == "chart" || command->get_name() == "library";
    const auto application = createApplication(withPictures, argc, argv);
    const int code = run(app, arguments);
    if (!Console::isPrinted()) {
        Console::complain("cannot write to standard output");
        return Console::BadInput;
    }
    return code;
}
