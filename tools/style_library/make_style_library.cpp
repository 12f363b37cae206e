// Draws the bitmaps of the shipped style library from the chess signs of
// DejaVu Sans, so that every picture the program ships is its own work.
//
//   make_style_library sheet <wood|green|print> <square pixels> <file.bmp>
//   make_style_library border <margin pixels> <board pixels> <file.bmp>
//
// A sheet has 13 cells in each of two rows: the bare square, then the pieces
// of "pPnNbBrRqQkK". Row 0 stands on light squares, row 1 on dark ones, and
// each cell carries its square, since a cell replaces the square it is
// copied onto. A border is a picture of 2 x margin + board pixels a side: a
// wooden frame round the place where the board is drawn.

#include <QColor>
#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>
#include <QRawFont>

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>

namespace {

const QString kFamily = QStringLiteral("DejaVu Sans");
constexpr int kPieceCount = 12;

enum class Look { Wood, Green, Print };

struct SquareColours {
    QColor light;
    QColor dark;
};

SquareColours coloursOf(Look look) {
    switch (look) {
    case Look::Wood:
        return {QColor(240, 217, 181), QColor(181, 136, 99)};
    case Look::Green:
        return {QColor(238, 238, 210), QColor(118, 150, 86)};
    case Look::Print:
        break;
    }
    return {Qt::white, Qt::white};
}

std::optional<Look> lookNamed(const QString& name) {
    if (name == u"wood") return Look::Wood;
    if (name == u"green") return Look::Green;
    if (name == u"print") return Look::Print;
    return std::nullopt;
}

// The king of each colour first in Unicode: outlines from U+2654, filled
// signs from U+265A, in the order king, queen, rook, bishop, knight, pawn.
// Letter order of the sheet: p n b r q k.
constexpr std::array<int, 6> kSignOffset = {5, 4, 3, 2, 1, 0};
constexpr char32_t kOutlineKing = 0x2654;
constexpr char32_t kFilledKing = 0x265A;

QFont fontOfFamily(int pixelSize) {
    QFont font(kFamily);
    font.setWeight(QFont::Normal);
    font.setStretch(QFont::Unstretched);
    font.setStyle(QFont::StyleNormal);
    font.setStyleStrategy(QFont::StyleStrategy(QFont::NoFontMerging | QFont::PreferAntialias));
    font.setPixelSize(pixelSize);
    return font;
}

// Exactly the family asked for, the book weight, no condensed cut, and no
// other font standing in for a missing sign.
std::optional<QFont> chessFont(int pixelSize) {
    if (QFontInfo(fontOfFamily(pixelSize)).family() != kFamily) {
        // A platform without a font folder of its own still has the file.
        const char* files[] = {"/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf",
                               "/usr/share/fonts/dejavu/DejaVuSans.ttf",
                               "/usr/share/fonts/TTF/DejaVuSans.ttf"};
        for (const char* file : files)
            if (QFontDatabase::addApplicationFont(QString::fromLatin1(file)) >= 0) break;
    }
    const QFont font = fontOfFamily(pixelSize);
    if (QFontInfo(font).family() != kFamily) return std::nullopt;
    const QRawFont raw = QRawFont::fromFont(font);
    for (char32_t c = kOutlineKing; c < kFilledKing + 6; ++c)
        if (!raw.isValid() || !raw.supportsCharacter(c)) return std::nullopt;
    return font;
}

QPainterPath signPath(const QFont& font, char32_t sign) {
    QPainterPath path;
    path.addText(0, 0, font, QString::fromUcs4(&sign, 1));
    return path;
}

// Every contour filled on its own: the whole body of a piece, holes and all,
// which keeps the square from showing through a white piece.
QPainterPath silhouetteOf(const QPainterPath& sign) {
    QPainterPath body;
    body.setFillRule(Qt::WindingFill);
    for (const QPolygonF& contour : sign.toSubpathPolygons()) {
        QPainterPath part;
        part.addPolygon(contour);
        part.closeSubpath();
        body = body.united(part);
    }
    return body;
}

struct PieceShapes {
    QPainterPath body;    // painted white under every piece
    QPainterPath outline; // the white piece's lines
    QPainterPath filled;  // the black piece
};

// The six pieces at the size of the square, each centred across on its own
// and all on one baseline, with the set centred from top to bottom.
std::array<PieceShapes, 6> piecesFor(const QFont& font, int square) {
    std::array<PieceShapes, 6> shapes;
    QRectF all;
    for (size_t i = 0; i < shapes.size(); ++i) {
        shapes[i].outline = signPath(font, kOutlineKing + kSignOffset[i]);
        shapes[i].filled = signPath(font, kFilledKing + kSignOffset[i]);
        shapes[i].body = silhouetteOf(shapes[i].filled).united(silhouetteOf(shapes[i].outline));
        all |= shapes[i].filled.boundingRect() | shapes[i].outline.boundingRect();
    }
    const double margin = std::max(1.0, square * 0.07);
    const double room = square - 2 * margin;
    const double scale = room / std::max(all.width(), all.height());
    const double top = (square - all.height() * scale) / 2 - all.top() * scale;
    for (PieceShapes& piece : shapes) {
        const QRectF box = piece.filled.boundingRect() | piece.outline.boundingRect();
        const double left = (square - box.width() * scale) / 2 - box.left() * scale;
        QTransform place;
        place.translate(left, top);
        place.scale(scale, scale);
        piece.body = place.map(piece.body);
        piece.outline = place.map(piece.outline);
        piece.filled = place.map(piece.filled);
    }
    return shapes;
}

// Thin lines from lower left to upper right, as printed diagrams shade their
// dark squares. They run on x + y, so they meet across the corner between two
// dark squares.
void hatch(QImage& sheet, const QRect& cell) {
    const int spacing = std::max(3, (cell.width() + 5) / 10);
    for (int y = cell.top(); y <= cell.bottom(); ++y)
        for (int x = cell.left(); x <= cell.right(); ++x)
            if ((x - cell.left() + y - cell.top()) % spacing == spacing - 1)
                sheet.setPixel(x, y, qRgb(0, 0, 0));
}

QImage drawSheet(const QFont& font, Look look, int square) {
    const SquareColours colours = coloursOf(look);
    QImage sheet(13 * square, 2 * square, QImage::Format_RGB32);
    const std::array<PieceShapes, 6> pieces = piecesFor(font, square);
    const double line = std::max(1.0, square / 40.0);
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 13; ++column) {
            const QRect cell(column * square, row * square, square, square);
            QPainter painter(&sheet);
            painter.fillRect(cell, row == 0 ? colours.light : colours.dark);
            if (look == Look::Print && row == 1) {
                painter.end();
                hatch(sheet, cell);
                painter.begin(&sheet);
            }
            if (column == 0) continue;
            const PieceShapes& piece = pieces[static_cast<size_t>((column - 1) / 2)];
            const bool white = (column - 1) % 2 == 1;
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setClipRect(cell);
            painter.translate(cell.topLeft());
            // On a hatched square a white rim keeps the lines off the piece.
            painter.setPen(look == Look::Print ? QPen(Qt::white, 2.5 * line, Qt::SolidLine,
                                                      Qt::RoundCap, Qt::RoundJoin)
                                               : QPen(Qt::NoPen));
            painter.setBrush(Qt::white);
            painter.drawPath(piece.body);
            painter.setPen(Qt::NoPen);
            painter.setBrush(Qt::black);
            painter.drawPath(white ? piece.outline : piece.filled);
        }
    }
    return sheet;
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
QImage drawIcon(const QFont& font, int side) {
    QImage icon(side, side, QImage::Format_ARGB32);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(181, 136, 99));
    painter.drawRoundedRect(QRectF(icon.rect()), side / 8.0, side / 8.0);
    QFont knight = font;
    knight.setPixelSize(side * 4 / 5);
    painter.setFont(knight);
    painter.setPen(QColor(30, 20, 12));
    painter.drawText(icon.rect(), Qt::AlignCenter, QString(QChar(0x265E)));
    painter.end();
    return icon;
}

int usage() {
    std::fputs("usage: make_style_library sheet <wood|green|print> <square pixels> <file.bmp>\n"
               "       make_style_library border <margin pixels> <board pixels> <file.bmp>\n"
               "       make_style_library icon <pixels> <file.png>\n",
               stderr);
    return 2;
}

std::optional<int> pixels(const QString& text, int low, int high) {
    bool ok = false;
    const int n = text.toInt(&ok);
    if (!ok || n < low || n > high) return std::nullopt;
    return n;
}

} // namespace

int main(int argc, char* argv[]) {
    // Runs in a build without any display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QStringList args = QGuiApplication::arguments().mid(1);
    if (args.size() == 3 && args[0] == u"icon") {
        const std::optional<int> side = pixels(args[1], 16, 512);
        const std::optional<QFont> font = side ? chessFont(100) : std::nullopt;
        if (!side || !font) return usage();
        return drawIcon(*font, *side).save(args[2], "PNG") ? 0 : 1;
    }
    if (args.size() != 4) return usage();

    QImage picture;
    if (args[0] == u"sheet") {
        const std::optional<Look> look = lookNamed(args[1]);
        // A cell of 2184 pixels is the largest a style can name.
        const std::optional<int> square = pixels(args[2], 8, 2184);
        if (!look || !square) return usage();
        // Outlines at about the drawn size keep their curves smooth.
        const std::optional<QFont> font = chessFont(std::max(100, *square));
        if (!font) {
            std::fprintf(stderr, "make_style_library: the chess signs of %s are missing\n",
                         qPrintable(kFamily));
            return 1;
        }
        picture = drawSheet(*font, *look, *square);
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
