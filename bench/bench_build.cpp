// How much a keystroke costs against a full redraw, on the largest board: 20
// by 20 squares of 60 pixels, painted from a sheet loaded from a file.
#include "core/main_window.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPainter>
#include <QTemporaryDir>
#include <cstdio>

using namespace marlith;

namespace {

// A sheet of 13 cells of 60 pixels in two rows, each cell its own pattern.
QString WriteSheet(const QString& folder) {
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

Style BigStyle(const QString& sheet) {
    Style style;
    ResetStyle(style);
    style.BorderHeight = 20;
    style.BorderWidth = 20;
    style.SqrWidth = 900;
    style.SqrHeight = 900;
    style.PiecesFile = sheet;
    return style;
}

// A crowded 400-square position, and the same with its last square changed.
QString Crowded(QChar last) {
    const QString pieces = QStringLiteral("pPnNbBrRqQkK");
    QString text;
    for (int i = 0; i < 399; ++i)
        text += i % 3 == 2 ? QChar(QLatin1Char('1')) : pieces.at(i % 12);
    return text + last;
}

template <typename Action> double MeanMicros(int runs, Action&& action) {
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < runs; ++i)
        action(i);
    return static_cast<double>(timer.nsecsElapsed()) / 1000.0 / runs;
}

void Row(const char* what, double micros, double baseline) {
    std::printf("%-52s %12.2f %10.1f\n", what, micros, micros / baseline);
}

} // namespace

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir dir;
    qputenv("MARLITH_HOME", dir.path().toUtf8());
    QApplication app(argc, argv);
    const QString folder = dir.path() + QLatin1Char('/');
    const QString sheet = WriteSheet(folder);
    const QString a = Crowded(QLatin1Char('K'));
    const QString b = Crowded(QLatin1Char('k'));

    // The drawing alone: Build with PutPeca on the diagram image.
    Style style = BigStyle(sheet);
    Diagram diagram;
    VetArray vet{};
    const Board board{20, 20};
    auto paint = [&](int cell, int casa) { diagram.PutPeca(cell, casa, style, 0); };
    auto fullRedraw = [&](int) {
        style.WndWidth = 0;
        style.WndHeight = 0;
        diagram.DrawBoard(style, 0, folder);
        ResetVet(vet, board);
        Build(a, vet, board, style.PiecesList, paint, nullptr);
    };
    fullRedraw(0);
    const long long copiesBefore = diagram.copies();
    const double keystroke = MeanMicros(
        20000, [&](int i) { Build(i % 2 ? a : b, vet, board, style.PiecesList, paint, nullptr); });
    const double copiesPerKeystroke = static_cast<double>(diagram.copies() - copiesBefore) / 20000;
    const double full = MeanMicros(200, fullRedraw);

    // The same through the main window: the text box, its change event, Build.
    AppState state;
    Form1 form1(state);
    form1.startInstance = [](const QStringList&) {};
    form1.Form_Load({});
    state.style = BigStyle(sheet);
    auto* text1 = form1.findChild<QLineEdit*>(QStringLiteral("Text1"));
    auto windowFull = [&](int) {
        state.style.WndWidth = 0;
        state.style.WndHeight = 0;
        form1.DrawBoard();
        ResetVet(state.vet, state.board());
        form1.Build();
    };
    text1->setText(a);
    windowFull(0);
    const double windowKeystroke = MeanMicros(5000, [&](int i) { text1->setText(i % 2 ? a : b); });
    const double windowFullTime = MeanMicros(100, windowFull);

    std::printf("20 x 20 board, 60-pixel squares, sheet loaded from %s\n", "a BMP file");
    std::printf("%-52s %12s %10s\n", "operation", "micros", "ratio");
    Row("keystroke: Build, one square changes", keystroke, keystroke);
    Row("full: DrawBoard + ResetVet + Build", full, keystroke);
    Row("keystroke through Text1 of the main window", windowKeystroke, windowKeystroke);
    Row("full through the main window", windowFullTime, windowKeystroke);
    std::printf("squares copied per keystroke: %.2f\n", copiesPerKeystroke);
    std::printf("full redraw / keystroke: %.1f (drawing), %.1f (window)\n", full / keystroke,
                windowFullTime / windowKeystroke);
    return 0;
}
