// Draws the bitmaps of the shipped style library, the pieces from the chess
// signs of the font the program ships, so that every picture it ships is its
// own work.
//
//   make_style_library sheet <font file> <square pixels> <file.bmp>
//   make_style_library border <margin pixels> <board pixels> <file.bmp>
//   make_style_library icon <font file> <pixels> <file.png>
//
// A sheet has 13 cells in each of two rows: the bare square, then the pieces
// of "pPnNbBrRqQkK". Row 0 stands on light squares, row 1 on dark ones, and
// each cell carries its square, since a cell replaces the square it is
// copied onto. A border is a picture of 2 x margin + board pixels a side: a
// wooden frame round the place where the board is drawn.

#include "drawing/font_pieces.h"

#include <QColor>
#include <QFont>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>

#include <algorithm>
#include <cstdio>
#include <optional>

namespace {

using marlith::FontPieces;
using marlith::Style;

// The wooden look, in the style files' colours (red in the low byte).
constexpr int32_t kLightWood = 0xB5D9F0;
constexpr int32_t kDarkWood = 0x6388B5;

// The pieces of the shipped font, made known from its file.
std::optional<FontPieces> shippedPieces(const QString& fontFile) {
    const QString family = QString::fromLatin1(marlith::kPieceFontFamily);
    QFontDatabase::addApplicationFont(fontFile);
    return FontPieces::load(family, QString::fromLatin1(marlith::kDefaultPiecesList));
}

QImage drawSheet(const FontPieces& pieces, int square) {
    Style style;
    marlith::resetStyle(style);
    style.SqrWidth = style.SqrHeight = style.SqrHTab = style.SqrVTab =
        static_cast<int16_t>(square * marlith::kTwipsPerPixel);
    style.LightColor = kLightWood;
    style.DarkColor = kDarkWood;
    return marlith::fontSheet(pieces, style);
}

// Dark wood with a light bevel outside and a thin gilt line next to the board.
QImage drawBorder(int margin, int board) {
    const int side = 2 * margin + board;
    QImage picture(side, side, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient wood(0, 0, side, side);
    wood.setColorAt(0.0, QColor(122, 80, 44));
    wood.setColorAt(0.5, QColor(92, 58, 30));
    wood.setColorAt(1.0, QColor(70, 43, 22));
    painter.fillRect(picture.rect(), wood);

    const int bevel = std::max(2, margin / 8);
    const QRectF outer = QRectF(picture.rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    for (int i = 0; i < bevel; ++i) {
        const QRectF ring = outer.adjusted(i, i, -i, -i);
        painter.setPen(QColor(176, 128, 82, 200 - 40 * i / bevel));
        painter.drawLine(ring.topLeft(), ring.topRight());
        painter.drawLine(ring.topLeft(), ring.bottomLeft());
        painter.setPen(QColor(40, 24, 12, 200 - 40 * i / bevel));
        painter.drawLine(ring.bottomLeft(), ring.bottomRight());
        painter.drawLine(ring.topRight(), ring.bottomRight());
    }
    const double gap = std::max(2.0, margin / 6.0);
    painter.setPen(QPen(QColor(212, 175, 95), std::max(1.0, margin / 14.0)));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(margin - gap, margin - gap, board + 2 * gap, board + 2 * gap));
    painter.fillRect(QRect(margin, margin, board, board), QColor(40, 24, 12));
    painter.end();
    return picture;
}

// The program's icon: a knight on a square of wood, with round corners.
QImage drawIcon(int side) {
    QImage icon(side, side, QImage::Format_ARGB32);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(181, 136, 99));
    painter.drawRoundedRect(QRectF(icon.rect()), side / 8.0, side / 8.0);
    QFont knight(QString::fromLatin1(marlith::kPieceFontFamily));
    knight.setPixelSize(side * 4 / 5);
    painter.setFont(knight);
    painter.setPen(QColor(30, 20, 12));
    painter.drawText(icon.rect(), Qt::AlignCenter, QString(QChar(0x265E)));
    painter.end();
    return icon;
}

int usage() {
    std::fputs("usage: make_style_library sheet <font file> <square pixels> <file.bmp>\n"
               "       make_style_library border <margin pixels> <board pixels> <file.bmp>\n"
               "       make_style_library icon <font file> <pixels> <file.png>\n",
               stderr);
    return 2;
}

std::optional<int> pixels(const QString& text, int low, int high) {
    bool ok = false;
    const int n = text.toInt(&ok);
    if (!ok || n < low || n > high) return std::nullopt;
    return n;
}

int missingFont(const QString& file) {
    std::fprintf(stderr, "make_style_library: no chess signs in %s\n", qPrintable(file));
    return 1;
}

} // namespace

int main(int argc, char* argv[]) {
    // Runs in a build without any display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QStringList args = QGuiApplication::arguments().mid(1);
    if (args.size() != 4) return usage();
    if (args[0] == u"icon") {
        const std::optional<int> side = pixels(args[2], 16, 512);
        if (!side) return usage();
        if (!shippedPieces(args[1])) return missingFont(args[1]);
        return drawIcon(*side).save(args[3], "PNG") ? 0 : 1;
    }

    QImage picture;
    if (args[0] == u"sheet") {
        // A cell of 2184 pixels is the largest a style can name.
        const std::optional<int> square = pixels(args[2], 8, 2184);
        if (!square) return usage();
        const std::optional<FontPieces> pieces = shippedPieces(args[1]);
        if (!pieces) return missingFont(args[1]);
        picture = drawSheet(*pieces, *square);
    } else if (args[0] == u"border") {
        const std::optional<int> margin = pixels(args[1], 4, 1000);
        const std::optional<int> board = pixels(args[2], 8, 4000);
        if (!margin || !board) return usage();
        picture = drawBorder(*margin, *board);
    } else {
        return usage();
    }
    if (picture.isNull() || !picture.convertToFormat(QImage::Format_RGB888).save(args[3], "BMP")) {
        std::fprintf(stderr, "make_style_library: cannot write %s\n", qPrintable(args[3]));
        return 1;
    }
    return 0;
}
