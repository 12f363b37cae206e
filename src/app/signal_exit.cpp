#include "app/signal_exit.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QWidget>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace marlith {

namespace {

// A signal handler may do next to nothing: it writes one byte into a socket,
// and the window's own thread reads it and closes the window. The pair of
// sockets is the one thing a handler can reach, hence file-wide.
int signalSockets[2] = {-1, -1};

void onSignal(int) {
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(signalSockets[0], &byte, 1);
}

} // namespace

void closeOnSignals(QWidget& mainWindow) {
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, signalSockets) != 0) return;
    auto* notifier = new QSocketNotifier(signalSockets[1], QSocketNotifier::Read, &mainWindow);
    QObject::connect(notifier, &QSocketNotifier::activated, &mainWindow, [&mainWindow, notifier] {
        char byte = 0;
        [[maybe_unused]] const auto got = ::read(signalSockets[1], &byte, 1);
        notifier->setEnabled(false);
        mainWindow.close();
        // A modal window's own loop, and any other, ends too.
        QCoreApplication::quit();
    });
    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(signal, &action, nullptr);
    // A file-size limit makes a write fail, which every writer reports,
    // instead of ending the program with the work of the session.
    ::signal(SIGXFSZ, SIG_IGN);
}

} // namespace marlith
