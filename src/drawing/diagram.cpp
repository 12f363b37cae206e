#include "drawing/diagram.h"

#include "drawing/font_pieces.h"
#include "drawing/piece_sheet.h"
#include "drawing/pixel_copy.h"

#include <QFontMetrics>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <optional>

namespace marlith {

namespace {

// The old geometry is 16-bit: an overflow anywhere in a length fails the
// statement that computes it, which then keeps its old value.
bool in16(long long v) {
    return v >= -32768 && v <= 32767;
}

std::optional<int> sum16(std::initializer_list<long long> intermediates, long long result) {
    for (const long long v : intermediates)
        if (!in16(v)) return std::nullopt;
    if (!in16(result)) return std::nullopt;
    return static_cast<int>(result);
}

// 2 x base + (count - 1) x pitch + size + 60: the four pixels round the last square.
std::optional<int> derivedLength(int base, int count, int tab, int spacing, int size) {
    const long long pitch = static_cast<long long>(tab) + spacing;
    const long long twice = 2LL * base;
    const long long steps = count - 1LL;
    const long long span = steps * pitch;
    return sum16({pitch, twice, steps, span, twice + span, twice + span + size},
                 twice + span + size + 60);
}

// Pictures are at most this many pixels a side: the 16-bit lengths stop at
// 2184, and a 32-bit size from a style must not allocate without bound.
constexpr int kMaxPicturePixels = 4096;

int picturePixels(int32_t twips) {
    return std::clamp(twipsToWholePixels(twips), 0, kMaxPicturePixels);
}

// Loads a picture and flattens it onto white, so that every sheet is plain
// 32-bit pixels and a copy from it is a copy of bytes.
std::optional<QImage> loadPicture(const QString& path) {
    QImage loaded;
    if (path.isEmpty() || !loaded.load(path) || loaded.isNull()) return std::nullopt;
    QImage flat(loaded.size(), QImage::Format_RGB32);
    if (flat.isNull()) return std::nullopt;
    flat.fill(Qt::white);
    QPainter painter(&flat);
    painter.drawImage(0, 0, loaded);
    return flat;
}

} // namespace

QString programPath(const QString& programFolder, const QString& path) {
    if (path.contains(QLatin1Char('/'))) return path;
    return programFolder + path;
}

QRgb styleColor(int32_t color) {
    const auto bits = static_cast<uint32_t>(color);
    return qRgb(bits & 0xFF, (bits >> 8) & 0xFF, (bits >> 16) & 0xFF);
}

int screenSquare(int index, int squares, int reversedBoard) {
    if (reversedBoard == 0) return index;
    // The turn is that of the board as it is now, even when the style has
    // changed its size since Reverse was switched on.
    return squares - 1 - index;
}

int squareAt(double x, double y, const Style& style) {
    const double hp = static_cast<double>(style.SqrHTab) + style.SqrHSpc;
    const double vp = static_cast<double>(style.SqrVTab) + style.SqrVSpc;
    if (hp <= 0 || vp <= 0) return -1;
    const double c = std::floor((x - style.XBase + style.SqrHSpc / 2.0) / hp);
    const double r = std::floor((y - style.YBase + style.SqrVSpc / 2.0) / vp);
    if (c < 0 || r < 0 || c >= style.BorderWidth || r >= style.BorderHeight) return -1;
    return static_cast<int>(r) * style.BorderWidth + static_cast<int>(c);
}

bool atOwnPixels(const QPainter& painter) {
    return std::abs(painter.deviceTransform().m11() - 1.0) < 1e-6;
}

QSize mainWindowSize(const Style& style, bool bookPanelVisible) {
    const long long height = static_cast<long long>(style.WndHeight) + 1350;
    const long long width = static_cast<long long>(style.WndWidth) + 3300;
    const long long h = bookPanelVisible && height < 5580 ? 5580 : height;
    const long long w = width <= 6645 ? 6645 : width;
    return QSize(static_cast<int>(std::min<long long>(w, INT32_MAX)),
                 static_cast<int>(std::min<long long>(h, INT32_MAX)));
}

namespace {

void paintFrame(QPainter& painter, QSize picture, const Style& style) {
    // The frame closes the picture: four bands flush with its edges that meet
    // at the corners, so nothing of a line runs past another and no strip
    // lies outside the frame. The strip inside it is what the style leaves
    // between the edge and the board: XBase and YBase on the left and top,
    // WndWidth and WndHeight less the board on the right and bottom.
    const int band = style.FrameWidth;
    const QColor colour(styleColor(style.FrameColor));
    const int width = picture.width();
    const int height = picture.height();
    painter.fillRect(0, 0, width, band, colour);
    painter.fillRect(0, height - band, width, band, colour);
    painter.fillRect(0, 0, band, height, colour);
    painter.fillRect(width - band, 0, band, height, colour);
}

// The style's font for the coordinates, on the one used before.
void takeCoordinatesFont(QFont& font, const Style& style) {
    font.setBold(style.FontStyle.contains(QLatin1String("BOLD")));
    font.setItalic(style.FontStyle.contains(QLatin1String("ITALIC")));
    font.setUnderline(style.FontStyle.contains(QLatin1String("UNDERLINE")));
    font.setStrikeOut(style.FontStyle.contains(QLatin1String("STRIKEOUT")));
    if (style.FontSize > 0) // points on a 96 dots-per-inch screen
        font.setPixelSize(std::max(1, static_cast<int>(std::lround(style.FontSize * 96.0 / 72.0))));
    if (!style.FontName.isEmpty()) font.setFamily(style.FontName);
}

void paintCoordinates(QPainter& painter, QSize picture, const Style& style, int reversedBoard,
                      const QFont& font) {
    int ha = 0;
    if (style.FontPos.contains(QLatin1String("CENTER"))) ha = 1;
    if (style.FontPos.contains(QLatin1String("RIGHT"))) ha = 2;
    int va = 0;
    if (style.FontPos.contains(QLatin1String("MIDDLE"))) va = 1;
    if (style.FontPos.contains(QLatin1String("DOWN"))) va = 2;
    const int letterOffset = style.FontStyle.contains(QLatin1String("CAPS")) ? 32 : 0;
    painter.save();
    painter.setFont(font);
    painter.setPen(QColor(styleColor(style.FontColor)));
    const QFontMetrics metrics(font);
    const double textHeight = static_cast<double>(metrics.height()) * kTwipsPerPixel;
    const double hp = static_cast<double>(style.SqrHTab) + style.SqrHSpc;
    const double vp = static_cast<double>(style.SqrVTab) + style.SqrVSpc;
    const int rows = style.BorderHeight;
    const int columns = style.BorderWidth;
    const int flip = reversedBoard != 0 ? rows - 1 : 0;
    const int flipc = reversedBoard != 0 ? columns - 1 : 0;
    // A coordinate never lies under the frame: one placed on it, as the grid
    // offsets 0 place it, moves inward to the frame's inner edge.
    const int band = std::max<int>(style.FrameWidth, 0);
    auto print = [&](double x, double y, const QString& text) {
        int left = twipsToWholePixels(x);
        int top = twipsToWholePixels(y);
        if (band > 0) {
            const int right = picture.width() - band - metrics.horizontalAdvance(text);
            const int bottom = picture.height() - band - metrics.height();
            left = std::clamp(left, band, std::max(band, right));
            top = std::clamp(top, band, std::max(band, bottom));
        }
        painter.drawText(left, top + metrics.ascent(), text);
    };

    for (int i = 0; i < rows; ++i) {
        const QString text = QString::number(rows - i);
        const int j = std::abs(i - flip);
        double y = j * vp + style.YBase;
        if (va == 1)
            y += (style.SqrVTab - textHeight) / 2;
        else if (va == 2)
            y = (j + 1) * vp + style.YBase - textHeight - style.SqrVSpc;
        print(style.FontXBase, y, text);
    }
    for (int i = 0; i < columns; ++i) {
        const QString text(QChar(static_cast<char16_t>(97 + i - letterOffset)));
        const double textWidth =
            static_cast<double>(metrics.horizontalAdvance(text)) * kTwipsPerPixel;
        const int j = std::abs(i - flipc);
        double x = j * hp + style.XBase;
        if (ha == 1)
            x += (style.SqrHTab - textWidth) / 2;
        else if (ha == 2)
            x = (j + 1) * hp + style.XBase - textWidth - style.SqrHSpc;
        print(x, style.FontYBase, text);
    }
    painter.restore();
}

} // namespace

Diagram::Diagram() : pieceSheet_(builtInSheet()), font_(QStringLiteral("MS Sans Serif")) {
    font_.setPixelSize(11);
    font_.setStyleStrategy(QFont::NoAntialias);
}

void Diagram::loadPieces(const Style& style, const QString& programFolder) {
    if (style.PiecesFont.isEmpty()) {
        fontPieces_.reset();
        fontPiecesOf_.clear();
        if (style.PiecesFile.isEmpty()) return;
        if (auto sheet = loadPicture(programPath(programFolder, style.PiecesFile)))
            pieceSheet_ = std::move(*sheet);
        return;
    }
    // Outlines are worth keeping while the font and the list stay.
    const QString wanted = style.PiecesFont + QLatin1Char('\n') + style.PiecesList +
                           QLatin1Char('\n') + style.PiecesSigns;
    if (wanted != fontPiecesOf_) {
        fontPieces_ = FontPieces::load(style.PiecesFont, style.PiecesList, style.PiecesSigns);
        fontPiecesOf_ = wanted;
    }
    // Without its font the style shows the built-in pieces.
    QImage sheet = fontPieces_ ? fontSheet(*fontPieces_, style) : QImage();
    pieceSheet_ = sheet.isNull() ? builtInSheet() : std::move(sheet);
}

Diagram::Outcome Diagram::drawBoard(Style& style, int reversedBoard, const QString& programFolder) {
    Outcome outcome;
    border_ = QImage();
    if (!style.BorderFile.isEmpty()) {
        if (auto border = loadPicture(programPath(programFolder, style.BorderFile)))
            border_ = std::move(*border);
    }
    if (style.SqrVTab == 0) style.SqrVTab = style.SqrHeight;
    if (style.SqrHTab == 0) style.SqrHTab = style.SqrWidth;
    loadPieces(style, programFolder);

    outcome.squareBoard = style.BorderHeight == style.BorderWidth;
    // Negative counts are no board either; they fall back like a too large one.
    if (style.BorderHeight < 0 || style.BorderWidth < 0 ||
        static_cast<int>(style.BorderHeight) * style.BorderWidth > 400) {
        style.BorderHeight = 8;
        style.BorderWidth = 8;
    }
    if (style.WndHeight == 0) {
        if (auto h = derivedLength(style.YBase, style.BorderHeight, style.SqrVTab, style.SqrVSpc,
                                   style.SqrHeight))
            style.WndHeight = *h;
    }
    if (style.WndWidth == 0) {
        if (auto w = derivedLength(style.XBase, style.BorderWidth, style.SqrHTab, style.SqrHSpc,
                                   style.SqrWidth))
            style.WndWidth = *w;
    }

    strokes_.clear();
    image_ =
        QImage(picturePixels(style.WndWidth), picturePixels(style.WndHeight), QImage::Format_RGB32);
    dirty_ = image_.rect();
    if (image_.isNull()) return outcome;
    image_.fill(styleColor(style.BackColor));
    if (style.ShowGrid == 1) takeCoordinatesFont(font_, style);
    QPainter painter(&image_);
    paintBoardParts(painter, style, reversedBoard, font_);
    return outcome;
}

void Diagram::paintBoardParts(QPainter& painter, const Style& style, int reversedBoard,
                              const QFont& font) const {
    if (!border_.isNull()) painter.drawImage(0, 0, border_);
    if (style.FrameWidth > 0) paintFrame(painter, image_.size(), style);
    if (style.ShowGrid == 1) paintCoordinates(painter, image_.size(), style, reversedBoard, font);
}

namespace {

// Where square oneBasedSquare lies on the picture, and where cell `cell`
// lies in the sheet, in pixels; nothing when a step leaves 16 bits.
struct CellPlace {
    QPoint square;
    QPoint cell;
};

std::optional<CellPlace> cellPlace(int cell, int oneBasedSquare, const Style& style,
                                   int reversedBoard) {
    const int columns = style.BorderWidth;
    const int squares = boardSquares(style.BorderHeight, columns);
    const int cellsPerRow = static_cast<int>(style.PiecesList.size()) + 1;
    if (columns <= 0 || cell < 0 || oneBasedSquare < 1 || oneBasedSquare > squares)
        return std::nullopt;
    const int s = screenSquare(oneBasedSquare - 1, squares, reversedBoard);
    // Square s sits `index` pitches from the base; every step is 16-bit.
    auto place = [](long long index, int tab, int spacing, int base) {
        const long long pitch = static_cast<long long>(tab) + spacing;
        return sum16({pitch, index * pitch}, index * pitch + base);
    };
    const auto y = place(s / columns, style.SqrVTab, style.SqrVSpc, style.YBase);
    const auto x = place(s % columns, style.SqrHTab, style.SqrHSpc, style.XBase);
    const auto x2 = sum16({}, static_cast<long long>(cell % cellsPerRow) * style.SqrHTab);
    const auto y2 = sum16({}, static_cast<long long>(cell / cellsPerRow) * style.SqrVTab);
    if (!x || !y || !x2 || !y2) return std::nullopt;
    return CellPlace{QPoint(twipsToWholePixels(*x), twipsToWholePixels(*y)),
                     QPoint(twipsToWholePixels(*x2), twipsToWholePixels(*y2))};
}

QSize squarePixels(const Style& style) {
    return QSize(twipsToWholePixels(style.SqrWidth), twipsToWholePixels(style.SqrHeight));
}

} // namespace

void Diagram::copyCellToSquare(int cell, int oneBasedSquare, const Style& style,
                               int reversedBoard) {
    const std::optional<CellPlace> place = cellPlace(cell, oneBasedSquare, style, reversedBoard);
    if (!place) return;
    // A plain copy of the cell, background and all.
    const QRect written =
        copyPixels(pieceSheet_, place->cell, image_, place->square, squarePixels(style));
    if (written.isEmpty()) return;
    ++copies_;
    dirty_ |= written;
}

void Diagram::paintCell(QPainter& painter, int cell, int oneBasedSquare, const Style& style,
                        int reversedBoard) const {
    const std::optional<CellPlace> place = cellPlace(cell, oneBasedSquare, style, reversedBoard);
    if (!place) return;
    const QSize size = squarePixels(style);
    if (fontPieces_) { // loaded only for a style that names a font
        const int pieces = static_cast<int>(style.PiecesList.size());
        const int colour = cell > pieces ? 1 : 0;
        const QRectF square(place->square, size);
        paintFontSquare(painter, square, colour, style);
        fontPieces_->paintPiece(painter, cellContent(cell, pieces), square,
                                colour != 0 && style.DarkHatch == 1);
        return;
    }
    // What a copy would take: the part of the cell inside the sheet.
    const QRect source = QRect(place->cell, size) & pieceSheet_.rect();
    if (source.isEmpty()) return;
    // The cell cut out first: an SVG document ignores a source rectangle and
    // would squeeze the whole sheet into the square.
    painter.drawImage(QRect(place->square + (source.topLeft() - place->cell), source.size()),
                      pieceSheet_.copy(source));
}

void Diagram::addStroke(const Stroke& stroke) {
    strokes_.push_back(stroke);
    QPainter painter(&image_);
    paintStroke(painter, stroke);
    dirty_ = image_.rect();
}

void Diagram::paint(QPainter& painter, const DiagramContent& content, bool transparent) const {
    const Style& style = content.style;
    const QRect picture(QPoint(), image_.size());
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setClipRect(picture, Qt::IntersectClip);
    if (!transparent) painter.fillRect(picture, QColor(styleColor(style.BackColor)));
    QFont smooth = font_;
    smooth.setStyleStrategy(QFont::PreferAntialias);
    paintBoardParts(painter, style, content.reversedBoard, smooth);
    // What a square shows is its piece on the square's colour, whichever
    // form the painted value holds.
    const int squares = content.board.squares();
    const int pieces = static_cast<int>(style.PiecesList.size());
    for (int i = 0; i < squares; ++i) {
        const int shown = foldedContent(content.squares[i].painted, pieces);
        paintCell(painter, sheetCell(shown, squareColor(i, content.board.columns), pieces), i + 1,
                  style, content.reversedBoard);
    }
    for (const Stroke& stroke : strokes_)
        paintStroke(painter, stroke);
    painter.restore();
}

void Diagram::useBuiltInSheet() {
    pieceSheet_ = builtInSheet();
}

void Diagram::resizeImage(QSize pixels, QRgb fill) {
    const QSize size(std::clamp(pixels.width(), 1, kMaxPicturePixels),
                     std::clamp(pixels.height(), 1, kMaxPicturePixels));
    QImage resized(size, QImage::Format_RGB32);
    if (resized.isNull()) return;
    resized.fill(fill);
    if (!image_.isNull()) {
        QPainter painter(&resized);
        painter.drawImage(0, 0, image_);
    }
    image_ = std::move(resized);
    dirty_ = image_.rect();
}

QRect Diagram::takeDirty() {
    const QRect dirty = dirty_;
    dirty_ = QRect();
    return dirty;
}

} // namespace marlith
