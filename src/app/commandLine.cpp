#include "app/commandLine.h"

#include "app/qtPaths.h"

#include <QCommandLineParser>

namespace marvek {
namespace {

ParsedCommandLine ending(int status, const QString& text, bool toStandardError) {
    return {std::nullopt, {status, text, toStandardError}};
}

// The options Qt's application object takes for itself (-platform xcb,
// -style fusion, ...): left to it, so they pass here unseen.
QStringList withoutQtOptions(const QStringList& arguments) {
    static const QStringList withValue = {
        "platform", "platformpluginpath", "platformtheme", "plugin",      "qwindowgeometry",
        "geometry", "qwindowtitle",       "title",         "qwindowicon", "icon",
        "style",    "stylesheet",         "display",       "name",        "session"};
    static const QStringList switches = {"reverse", "widgetcount", "nograb", "dograb", "sync"};
    QStringList kept;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        if (argument == "--") {
            kept << arguments.mid(i);
            break;
        }
        // Qt spells its options with one dash, and accepts two.
        const QString name = argument.startsWith("--")  ? argument.mid(2)
                             : argument.startsWith('-') ? argument.mid(1)
                                                        : QString();
        if (i > 0 && withValue.contains(name) && i + 1 < arguments.size()) {
            ++i;
        } else if (i == 0 || !switches.contains(name)) {
            kept << argument;
        }
    }
    return kept;
}

ParsedCommandLine mistake(const QString& what) {
    return ending(exitBadArguments, "marvek: " + what + "\n" + commandLineUsage + "\n", true);
}

} // namespace

ParsedCommandLine parseCommandLine(const QStringList& arguments, const QString& version) {
    QCommandLineParser parser;
    parser.setApplicationDescription("Marvek, the level editor for the Amiga CD32 game Thornwick.");
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    const QCommandLineOption config("config",
                                    "The level configuration to open the levels with (default: the "
                                    "one in the options).",
                                    "NAME");
    const QCommandLineOption data("data",
                                  "The game's data folder for this run (default: LEVEL's folder, "
                                  "else the one in the options).",
                                  "DIR");
    const QCommandLineOption help({"h", "help"}, "Shows this help.");
    const QCommandLineOption showVersion("version", "Shows the version.");
    parser.addOptions({config, data, help, showVersion});
    parser.addPositionalArgument("LEVEL", "Level files to open at start-up, each in a tab.",
                                 "[LEVEL...]");

    if (!parser.parse(withoutQtOptions(arguments))) {
        return mistake(parser.errorText());
    }
    if (parser.isSet(help)) {
        // Without an application object Qt cannot name the program itself.
        const QString text = parser.helpText();
        return ending(0, commandLineUsage + text.mid(text.indexOf('\n')), false);
    }
    if (parser.isSet(showVersion)) {
        return ending(0, "marvek " + version + "\n", false);
    }
    const QStringList positional = parser.positionalArguments();
    for (const QCommandLineOption* option : {&config, &data}) {
        if (parser.values(*option).size() > 1) {
            return mistake("--" + option->names().constFirst() + " given twice");
        }
        if (parser.isSet(*option) && parser.value(*option).isEmpty()) {
            return mistake("--" + option->names().constFirst() + " needs a value");
        }
    }

    CommandLine run;
    if (!positional.isEmpty()) {
        if (positional.constFirst().isEmpty()) {
            return mistake("the level's name is empty");
        }
        run.level = toPath(positional.constFirst());
        for (const QString& more : positional.mid(1)) {
            if (more.isEmpty()) {
                return mistake("the level's name is empty");
            }
            run.moreLevels.push_back(toPath(more));
        }
    }
    if (parser.isSet(config)) {
        if (!run.level) {
            return mistake("--config goes with a LEVEL");
        }
        run.configuration = parser.value(config);
    }
    if (parser.isSet(data)) {
        run.dataFolder = toPath(parser.value(data));
    }
    return {run, {}};
}

} // namespace marvek
