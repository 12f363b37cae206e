#include "core/app_state.h"
#include "gui/main_window.h"

#include <QApplication>

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Marlith"));
    QApplication::setApplicationVersion(QStringLiteral(MARLITH_VERSION));

    marlith::AppState state;
    marlith::MainWindow form1(state);
    form1.start(QApplication::arguments().mid(1));
    form1.show();
    return app.exec();
}
