#include "CommandLine.h"

CommandLine CommandLine::parse(const QList<QByteArray> &arguments, const QByteArray &workingDirectory) {
    CommandLine result;
    bool options = true;
    for (const QByteArray &argument : arguments) {
        if (options && argument == "--") {
            options = false;
        } else if (options && (argument == "--help" || argument == "-h")) {
            return {Action::ShowHelp, std::nullopt, {}};
        } else if (options && (argument == "--version" || argument == "-v")) {
            return {Action::ShowVersion, std::nullopt, {}};
        } else if (options && argument.size() > 1 && argument.startsWith('-')) {
            return {Action::Refuse, std::nullopt, argument};
        } else if (!result.folder) {
            result.folder = FileURL::fromArgument(argument, workingDirectory);
        }
    }
    return result;
}

const char *CommandLine::helpText() {
    return "Usage: mosa [FOLDER]\n"
           "Browse the videos and photos of a folder.\n"
           "\n"
           "FOLDER is a path or a file:// address. While Mosa runs, its window opens the folder.\n"
           "\n"
           "  -h, --help     show this help\n"
           "  -v, --version  show the version\n";
}
