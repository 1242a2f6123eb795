#pragma once

#include "FileURL.h"

#include <optional>

/// What the program was started with. Reads the bytes of argv, so that every name can be given.
struct CommandLine {
    enum class Action { Run, ShowHelp, ShowVersion, Refuse };

    Action action = Action::Run;
    /// The first folder or file named; more are ignored.
    std::optional<FileURL> folder;
    /// The option that is not known, with Refuse.
    QByteArray unknownOption;

    /// The arguments without the program's name.
    static CommandLine parse(const QList<QByteArray> &arguments, const QByteArray &workingDirectory);
    static const char *helpText();
};
