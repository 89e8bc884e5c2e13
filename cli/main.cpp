#include "Commands.h"
#include "Console.h"
#include "Version.h"

#include <CLI/CLI.hpp>

#include <QCoreApplication>

#include <functional>
#include <string>
#include <vector>

namespace {

constexpr int MOST_CHANNELS = 512; // of a DMX universe

/// The command line as typed.
struct Arguments
{
    std::string profileDatabase;
    std::string profile = "0";
    std::string mode;
    std::string curve;
    std::string onboardCurve;
    std::string format = "table";
    int channels = 0;
    int resolution = 8;
    bool rgbPassThrough = false;
    std::vector<std::string> colors;
};

QString fromArgument(const std::string &text)
{
    return QString::fromLocal8Bit(text.c_str());
}

QStringList colorsOf(const Arguments &arguments)
{
    QStringList colors;
    for (const std::string &color : arguments.colors)
        colors.append(fromArgument(color));
    return colors;
}

Commands::ConvertArguments convertArguments(const Arguments &arguments)
{
    Commands::ConvertArguments result;
    result.profile = fromArgument(arguments.profile);
    result.mode = fromArgument(arguments.mode);
    result.curve = fromArgument(arguments.curve);
    result.onboardCurve = fromArgument(arguments.onboardCurve);
    result.format = fromArgument(arguments.format);
    result.channels = arguments.channels;
    result.resolution = arguments.resolution;
    result.rgbPassThrough = arguments.rgbPassThrough;
    result.colors = colorsOf(arguments);
    return result;
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
    convert->add_option("--profile", arguments.profile, "Fixture profile, by number or name")
        ->type_name("ID|NAME")
        ->capture_default_str();
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
        return Commands::inspect(colorsOf(arguments), format);
    if (app.got_subcommand("profiles"))
        return Commands::profiles(format);
    if (app.got_subcommand("modes"))
        return Commands::modes(format);
    return Commands::curves(format);
}

/// The first line of what the parser says.
QString firstLine(const CLI::ParseError &error)
{
    return QString::fromLocal8Bit(error.what()).section('\n', 0, 0);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
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
    addOthers(app, arguments);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError &error) {
        if (error.get_exit_code() == int(CLI::ExitCodes::Success))
            return app.exit(error);
        Console::complain(firstLine(error));
        return Console::BadArguments;
    }
    return run(app, arguments);
}
