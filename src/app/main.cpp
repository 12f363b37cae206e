#include "app/signal_exit.h"
#include "cli/commands.h"
#include "core/app_state.h"
#include "core/startup.h"
#include "drawing/font_pieces.h"
#include "gui/main_window.h"

#include <QApplication>
#include <QDir>
#include <unistd.h>

namespace {

// A command runs without a display and without a window, beside any
// running editor: it reads the settings and never writes them.
int runCommand(int argc, char* argv[], const QStringList& arguments) {
    // The toolkit's own notes (a missing runtime folder, ...) would break the
    // one line a command writes on failure; only its fatal errors stay.
    static const QtMessageHandler toolkitHandler = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext& context, const QString& text) {
            if (type == QtCriticalMsg || type == QtFatalMsg) toolkitHandler(type, context, text);
        });
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("Marlith"));
    QGuiApplication::setApplicationVersion(QStringLiteral(MARLITH_VERSION));
    const QString shipped = marlith::shippedDataFolder(QCoreApplication::applicationDirPath());
    marlith::addPieceFont(shipped);
    return marlith::runCommandLine(arguments, {marlith::programFolder(), shipped}, stdout, stderr,
                                   isatty(STDERR_FILENO));
}

} // namespace

int main(int argc, char* argv[]) {
    // Taken before the application object, which keeps some options for itself.
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    if (marlith::isCommand(arguments)) return runCommand(argc, argv, arguments);

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Marlith"));
    QApplication::setApplicationVersion(QStringLiteral(MARLITH_VERSION));

    // The first start gets the shipped styles before the window reads them.
    const QString executableFolder = QCoreApplication::applicationDirPath();
    const QString shipped = marlith::shippedDataFolder(executableFolder);
    marlith::installShippedSettings(marlith::programFolder(), shipped);
    // The shipped styles draw their pieces from the font that comes with them.
    marlith::addPieceFont(shipped);

    marlith::AppState state;
    state.shippedFolder = shipped;
    marlith::MainWindow window(state);
    // Closing the window runs the stop sequence; so do the signals that end a
    // program, from the first moment on: a signal during the start is taken
    // once the window's loop runs.
    marlith::closeOnSignals(window);
    // Paths typed in a shell are meant from the folder it is in.
    window.start(marlith::absoluteArguments(QApplication::arguments().mid(1), QDir::currentPath()));
    window.show();
    // The end of the session writes the settings beforehand.
    QObject::connect(&app, &QGuiApplication::commitDataRequest, &window,
                     [&window] { window.writeSettings(); });
    QObject::connect(&app, &QCoreApplication::aboutToQuit, &window, [&window] {
        window.closeChildWindows();
        window.shutDown();
    });
    return app.exec();
}
