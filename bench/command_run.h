// A command of the command line run in the benchmark's own process: its
// messages to stderr, no progress line, and the seconds it took.
#pragma once

#include "cli/commands.h"

#include <QElapsedTimer>
#include <cstdio>

namespace marlith {

struct TimedStatus {
    int status;
    double seconds;
};

template <typename Command> TimedStatus timedCommand(Command command) {
    const CommandOutput quiet{
        [](const QString&) {},
        [](const QString& text) { std::fprintf(stderr, "%s\n", qPrintable(text)); },
        {},
        {}};
    QElapsedTimer clock;
    clock.start();
    const int status = command(quiet);
    return {status, clock.nsecsElapsed() / 1e9};
}

} // namespace marlith
