#include "core/app_state.h"
#include "gui/main_window.h"

#include <QApplication>

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Marlith"));
    QApplication::setApplicationVersion(QStringLiteral(MARLITH_VERSION));

    marlith::AppState state;
    marlith::MainWindow window(state);
    window.start(QApplication::arguments().mid(1));
    window.show();
    return app.exec();
}
