// What a diagram costs on its way out as a file: the Print style (pieces from
// the font, hatched dark squares, a frame) written as BMP at the style's own
// size, the baseline, then as PNG 800 pixels wide, SVG and PDF; and the same
// for the Framed style, which paints from a bitmap sheet and a border bitmap.
// Each file is written again and again into a temporary folder, and its size
// is given in bytes.
//
//   bench_export                     the table
//   bench_export --samples FOLDER    diagram.png (800 pixels) and diagram.svg
//                                    of the same position in the Print style
#include "core/settings.h"
#include "drawing/diagram.h"
#include "drawing/font_pieces.h"
#include "output/image_output.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <memory>

using namespace marlith;

namespace {

const QString kShipped = QStringLiteral(MARLITH_SHIPPED_DIR "/");

// The final position of the Immortal Game (London 1851): 23 pieces spread
// over the whole board.
const QString kPosition = QStringLiteral("r1bk3r/p2pBpNp/n4n2/1p1NP2P/6P1/3P4/P1P1K3/q5b1");

// One shipped style, drawn once with the position.
struct Scene {
    Style style;
    Diagram diagram;
    SquareVector squares{};

    Board board() const { return {style.BorderHeight, style.BorderWidth}; }
    DiagramPicture picture() const {
        return {diagram.image(), [this](QPainter& painter, bool transparent) {
                    diagram.paint(painter, {style, squares, board(), 0}, transparent);
                }};
    }
};

std::unique_ptr<Scene> shippedScene(const QString& name) {
    auto scene = std::make_unique<Scene>();
    resetStyle(scene->style);
    scene->style.StyleName = name;
    RecentList recent;
    QString engine;
    readSettings(kShipped + QStringLiteral("Marlith.ini"), kShipped, scene->style, recent, engine);
    scene->diagram.drawBoard(scene->style, 0, kShipped);
    invalidatePainted(scene->squares, scene->board());
    buildBoard(
        kPosition, scene->squares, scene->board(), scene->style.PiecesList,
        [&](int cell, int oneBasedSquare) {
            scene->diagram.copyCellToSquare(cell, oneBasedSquare, scene->style, 0);
        },
        nullptr);
    return scene;
}

struct Measure {
    double millis = 0; // per diagram
    qint64 bytes = 0;
    bool ok = true;
};

// Milliseconds per run: the work is run in rounds of at least 0.2 seconds
// for at least a second, and the fastest round counts, since other programs
// on the machine only ever slow a round down.
template <typename Work> double millisEach(Work&& work) {
    double best = 1e300;
    QElapsedTimer total;
    total.start();
    for (int round = 0; round < 3 || total.elapsed() < 1000; ++round) {
        QElapsedTimer clock;
        clock.start();
        int runs = 0;
        while (runs < 2 || clock.elapsed() < 200) {
            work();
            ++runs;
        }
        best = std::min(best, static_cast<double>(clock.nsecsElapsed()) / 1e6 / runs);
    }
    return best;
}

Measure writeRepeatedly(const DiagramPicture& picture, const QString& path, int width) {
    Measure measure;
    measure.millis =
        millisEach([&] { measure.ok = writeImageFile(picture, path, {width}) && measure.ok; });
    measure.bytes = QFileInfo(path).size();
    return measure;
}

int writeSamples(const QString& folder) {
    const std::unique_ptr<Scene> print = shippedScene(QStringLiteral("Print"));
    bool ok = true;
    for (const char* name : {"diagram.png", "diagram.svg"}) {
        const QString path = folder + QLatin1Char('/') + QLatin1String(name);
        const bool written = writeImageFile(print->picture(), path, {800});
        std::printf("%s %s\n", written ? "wrote" : "could not write", qPrintable(path));
        ok = ok && written;
    }
    return ok ? 0 : 1;
}

} // namespace

int main(int argc, char* argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (!addPieceFont(kShipped)) {
        std::printf("the piece font is not in %s: build marlith_style_library\n",
                    qPrintable(kShipped));
        return 1;
    }
    if (argc == 3 && QByteArray(argv[1]) == "--samples")
        return writeSamples(QString::fromLocal8Bit(argv[2]));

    QTemporaryDir folder;
    struct Format {
        const char* label;
        const char* file;
        int width; // 0: the style's own size
    };
    const Format formats[] = {{"BMP, own size", "d.bmp", 0},
                              {"PNG, 800 px", "d.png", 800},
                              {"SVG", "d.svg", 0},
                              {"PDF", "d.pdf", 0}};
    std::printf("%s, written to files in a temporary folder\n", qPrintable(kPosition));
    std::printf("%-44s %10s %12s %8s %10s\n", "style and format", "ms each", "diagrams/s", "ratio",
                "bytes");
    double baseline = 0;
    double pngOf[2] = {};
    bool ok = true;
    int styleIndex = 0;
    for (const char* styleName : {"Print", "Framed"}) {
        const std::unique_ptr<Scene> scene = shippedScene(QString::fromLatin1(styleName));
        const DiagramPicture picture = scene->picture();
        const QString sheet = scene->style.PiecesFont.isEmpty() ? QStringLiteral("bitmap sheet")
                                                                : QStringLiteral("font");
        for (const Format& format : formats) {
            const Measure m =
                writeRepeatedly(picture, folder.filePath(QLatin1String(format.file)), format.width);
            ok = ok && m.ok;
            if (baseline == 0) baseline = m.millis;
            if (format.width == 800) pngOf[styleIndex] = m.millis;
            const QString label = QStringLiteral("%1 (%2 px, %3), %4")
                                      .arg(QLatin1String(styleName))
                                      .arg(picture.screen.width())
                                      .arg(sheet, QLatin1String(format.label));
            std::printf("%-44s %10.2f %12.1f %8.2f %10lld\n", qPrintable(label), m.millis,
                        1000.0 / m.millis, m.millis / baseline, static_cast<long long>(m.bytes));
        }
        ++styleIndex;
    }
    // Where the PNG's time goes: drawing the larger picture, or coding it.
    const std::unique_ptr<Scene> print = shippedScene(QStringLiteral("Print"));
    const DiagramPicture picture = print->picture();
    const QImage large = diagramImage(picture, 800, false);
    const double drawing = millisEach([&] { diagramImage(picture, 800, false); });
    const double coding = millisEach([&] { pngBytes(large); });
    std::printf("%-44s %10.2f %12.1f %8.2f\n", "Print, drawing 800 px only", drawing,
                1000.0 / drawing, drawing / baseline);
    std::printf("%-44s %10.2f %12.1f %8.2f\n", "Print, PNG coding of 800 px only", coding,
                1000.0 / coding, coding / baseline);
    std::printf("ratio: time per diagram against the Print style's BMP\n");
    std::printf("PNG 800 px, bitmap sheet / font: %.2f\n", pngOf[1] / pngOf[0]);
    if (!ok) std::printf("some writes failed\n");
    return ok ? 0 : 1;
}
