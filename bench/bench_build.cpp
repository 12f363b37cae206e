// How much a keystroke costs against a full redraw, on the largest board: 20
// by 20 squares of 60 pixels, painted from a sheet loaded from a file.
#include "gui/main_window.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPainter>
#include <QTemporaryDir>
#include <cstdio>

using namespace marlith;

namespace {

// A sheet of 13 cells of 60 pixels in two rows, each cell its own pattern.
QString writeSheet(const QString& folder) {
    QImage sheet(13 * 60, 120, QImage::Format_RGB32);
    QPainter painter(&sheet);
    for (int row = 0; row < 2; ++row)
        for (int cell = 0; cell < 13; ++cell) {
            painter.fillRect(cell * 60, row * 60, 60, 60, row ? QColor(192, 192, 192) : Qt::white);
            if (cell > 0)
                painter.fillRect(cell * 60 + 10, row * 60 + 10, 40, 40,
                                 QColor::fromHsv(cell * 27, 200, cell % 2 ? 250 : 60));
        }
    painter.end();
    const QString path = folder + QStringLiteral("bench-sheet.bmp");
    sheet.save(path, "BMP");
    return path;
}

Style bigStyle(const QString& sheet) {
    Style style;
    resetStyle(style);
    style.BorderHeight = 20;
    style.BorderWidth = 20;
    style.SqrWidth = 900;
    style.SqrHeight = 900;
    style.PiecesFile = sheet;
    return style;
}

// A crowded 400-square position, and the same with its last square changed.
QString crowded(QChar last) {
    const QString pieces = QStringLiteral("pPnNbBrRqQkK");
    QString text;
    for (int i = 0; i < 399; ++i)
        text += i % 3 == 2 ? QChar(QLatin1Char('1')) : pieces.at(i % 12);
    return text + last;
}

template <typename Action> double meanMicros(int runs, Action&& action) {
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < runs; ++i)
        action(i);
    return static_cast<double>(timer.nsecsElapsed()) / 1000.0 / runs;
}

void row(const char* what, double micros, double baseline) {
    std::printf("%-52s %12.2f %10.1f\n", what, micros, micros / baseline);
}

} // namespace

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir dir;
    qputenv("MARLITH_HOME", dir.path().toUtf8());
    QApplication app(argc, argv);
    const QString folder = dir.path() + QLatin1Char('/');
    const QString sheet = writeSheet(folder);
    const QString a = crowded(QLatin1Char('K'));
    const QString b = crowded(QLatin1Char('k'));

    // The drawing alone: buildBoard with copyCellToSquare on the diagram image.
    Style style = bigStyle(sheet);
    Diagram diagram;
    SquareVector squareVector{};
    const Board board{20, 20};
    auto paint = [&](int cell, int oneBasedSquare) {
        diagram.copyCellToSquare(cell, oneBasedSquare, style, 0);
    };
    auto fullRedraw = [&](int) {
        style.WndWidth = 0;
        style.WndHeight = 0;
        diagram.drawBoard(style, 0, folder);
        invalidatePainted(squareVector, board);
        buildBoard(a, squareVector, board, style.PiecesList, paint, nullptr);
    };
    fullRedraw(0);
    const long long copiesBefore = diagram.copies();
    const double keystroke = meanMicros(20000, [&](int i) {
        buildBoard(i % 2 ? a : b, squareVector, board, style.PiecesList, paint, nullptr);
    });
    const double copiesPerKeystroke = static_cast<double>(diagram.copies() - copiesBefore) / 20000;
    const double full = meanMicros(200, fullRedraw);

    // The same through the main window: the text box, its change event, buildBoard.
    AppState state;
    MainWindow window(state);
    window.startInstance = [](const QStringList&) {};
    window.start({});
    state.style = bigStyle(sheet);
    auto* positionEdit = window.findChild<QLineEdit*>(QStringLiteral("positionEdit"));
    auto windowFull = [&](int) {
        state.style.WndWidth = 0;
        state.style.WndHeight = 0;
        window.drawBoard();
        invalidatePainted(state.squares, state.board());
        window.buildBoard();
    };
    positionEdit->setText(a);
    windowFull(0);
    const double windowKeystroke =
        meanMicros(5000, [&](int i) { positionEdit->setText(i % 2 ? a : b); });
    const double windowFullTime = meanMicros(100, windowFull);

    std::printf("20 x 20 board, 60-pixel squares, sheet loaded from %s\n", "a BMP file");
    std::printf("%-52s %12s %10s\n", "operation", "micros", "ratio");
    row("keystroke: buildBoard, one square changes", keystroke, keystroke);
    row("full: drawBoard + invalidatePainted + buildBoard", full, keystroke);
    row("keystroke through the position box of the main window", windowKeystroke, windowKeystroke);
    row("full through the main window", windowFullTime, windowKeystroke);
    std::printf("squares copied per keystroke: %.2f\n", copiesPerKeystroke);
    std::printf("full redraw / keystroke: %.1f (drawing), %.1f (window)\n", full / keystroke,
                windowFullTime / windowKeystroke);
    return 0;
}
