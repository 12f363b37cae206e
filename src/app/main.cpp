#include "core/app_state.h"
#include "core/startup.h"
#include "gui/main_window.h"

#include <QApplication>

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Marlith"));
    QApplication::setApplicationVersion(QStringLiteral(MARLITH_VERSION));

    // The first start gets the shipped styles before the window reads them.
    const QString executableFolder = QCoreApplication::applicationDirPath();
    const QString shipped = marlith::shippedDataFolder(executableFolder);
    marlith::installShippedSettings(
        marlith::programFolderFrom(qEnvironmentVariable("MARLITH_HOME"), executableFolder),
        shipped);

    marlith::AppState state;
    state.shippedFolder = shipped;
    marlith::MainWindow window(state);
    window.start(QApplication::arguments().mid(1));
    window.show();
    return app.exec();
}
