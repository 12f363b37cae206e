#include "app/signal_exit.h"
#include "core/app_state.h"
#include "core/startup.h"
#include "drawing/font_pieces.h"
#include "gui/main_window.h"

#include <QApplication>
#include <QDir>

int main(int argc, char* argv[]) {
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
