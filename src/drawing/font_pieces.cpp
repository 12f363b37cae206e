#include "drawing/font_pieces.h"

#include "drawing/diagram.h"

#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QPainter>
#include <QRawFont>
#include <algorithm>
#include <cmath>

namespace marlith {

namespace {

// Outlines are taken at a size where flattening a curve into the body's
// polygon leaves no visible facet even on a poster.
constexpr int kOutlinePixels = 1000;

QFont exactFont(const QString& family) {
    QFont font(family);
    font.setPixelSize(kOutlinePixels);
    font.setStyleStrategy(QFont::StyleStrategy(QFont::NoFontMerging | QFont::PreferAntialias));
    return font;
}

// Font files and the font database spell some families with a space more
// or less ("Symbols2", "Symbols 2"); case and spaces don't tell fonts apart.
bool isFamily(const QFont& font, const QString& family) {
    QString found = QFontInfo(font).family();
    QString wanted = family;
    found.remove(u' ');
    wanted.remove(u' ');
    return !wanted.isEmpty() && found.compare(wanted, Qt::CaseInsensitive) == 0;
}

// The contours of a path, each a path of its own with its curves kept.
std::vector<QPainterPath> contoursOf(const QPainterPath& path) {
    std::vector<QPainterPath> contours;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        if (e.isMoveTo() || contours.empty()) {
            contours.emplace_back();
            contours.back().moveTo(e);
        } else if (e.isLineTo()) {
            contours.back().lineTo(e);
        } else if (e.isCurveTo() && i + 2 < path.elementCount()) {
            contours.back().cubicTo(e, path.elementAt(i + 1), path.elementAt(i + 2));
            i += 2;
        }
    }
    return contours;
}

// The whole area of the piece, its inner details included, so the square
// never shows through a piece: every contour that lies inside no other,
// filled, its curves kept so that a large picture shows no facets.
QPainterPath bodyOf(const QPainterPath& sign) {
    const std::vector<QPainterPath> contours = contoursOf(sign);
    std::vector<QPolygonF> outlines;
    for (const QPainterPath& contour : contours)
        outlines.push_back(contour.toFillPolygon());
    QPainterPath body;
    body.setFillRule(Qt::WindingFill);
    for (size_t i = 0; i < contours.size(); ++i) {
        const QPointF start = contours[i].elementAt(0); // each begins with its move
        bool inner = false;
        for (size_t j = 0; j < contours.size() && !inner; ++j)
            inner = j != i && outlines[j].containsPoint(start, Qt::OddEvenFill) &&
                    outlines[i].boundingRect().width() < outlines[j].boundingRect().width();
        // A font runs all its outer contours the same way round, so that
        // filled by winding they make the union.
        if (!inner) body.addPath(contours[i]);
    }
    return body;
}

} // namespace

bool addPieceFont(const QString& shippedFolder) {
    const QString family = QString::fromLatin1(kPieceFontFamily);
    if (isFamily(exactFont(family), family)) return true;
    if (!shippedFolder.isEmpty())
        QFontDatabase::addApplicationFont(shippedFolder + QLatin1String(kPieceFontFile));
    return isFamily(exactFont(family), family);
}

std::optional<char32_t> orthodoxSign(QChar letter) {
    // U+2654.. are the outlined king, queen, rook, bishop, knight and pawn;
    // U+265A.. the filled ones.
    static constexpr char16_t kOrder[] = u"KQRBNP";
    const qsizetype place = QStringView(kOrder).indexOf(letter.toUpper());
    if (place < 0 || !letter.isLetter()) return std::nullopt;
    const char32_t first = letter.isUpper() ? 0x2654 : 0x265A;
    return first + static_cast<char32_t>(place);
}

std::vector<std::optional<char32_t>> piecesSigns(const QString& piecesList,
                                                 const QString& namedSigns) {
    std::vector<std::optional<char32_t>> signs;
    if (namedSigns.trimmed().isEmpty()) {
        for (const QChar letter : piecesList)
            signs.push_back(orthodoxSign(letter));
        return signs;
    }
    const QStringList named = namedSigns.split(u' ', Qt::SkipEmptyParts);
    for (qsizetype i = 0; i < piecesList.size(); ++i) {
        bool ok = false;
        const uint code = i < named.size() ? named[i].toUInt(&ok, 16) : 0;
        // Only a character a font can hold: no surrogates, nothing past U+10FFFF.
        const bool valid =
            ok && code > 0x20 && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
        signs.push_back(valid ? std::optional<char32_t>(code) : std::nullopt);
    }
    return signs;
}

std::optional<FontPieces> FontPieces::load(const QString& family, const QString& piecesList,
                                           const QString& namedSigns) {
    const QFont font = exactFont(family);
    if (!isFamily(font, family)) return std::nullopt;
    const QRawFont raw = QRawFont::fromFont(font);
    if (!raw.isValid()) return std::nullopt;

    FontPieces pieces;
    QRectF all;
    for (const std::optional<char32_t> sign : piecesSigns(piecesList, namedSigns)) {
        if (!sign) {
            pieces.shapes_.emplace_back();
            continue;
        }
        // A sign the font lacks leaves that piece's square empty.
        if (!raw.supportsCharacter(*sign)) {
            pieces.shapes_.emplace_back();
            continue;
        }
        Shape shape;
        shape.sign.addText(QPointF(), font, QString::fromUcs4(&*sign, 1));
        shape.body = bodyOf(shape.sign);
        all |= shape.sign.boundingRect();
        pieces.shapes_.emplace_back(std::move(shape));
    }
    // A font without any of the signs is no font for pieces.
    if (all.isEmpty() && !piecesList.isEmpty()) return std::nullopt;

    const double margin = 0.07;
    const double scale = (1 - 2 * margin) / std::max(all.width(), all.height());
    const double top = (1 - all.height() * scale) / 2 - all.top() * scale;
    for (std::optional<Shape>& shape : pieces.shapes_) {
        if (!shape) continue;
        const QRectF box = shape->sign.boundingRect();
        QTransform place;
        place.translate((1 - box.width() * scale) / 2 - box.left() * scale, top);
        place.scale(scale, scale);
        shape->sign = place.map(shape->sign);
        shape->body = place.map(shape->body);
    }
    return pieces;
}

void FontPieces::paintPiece(QPainter& painter, int content, const QRectF& square,
                            bool rimmed) const {
    if (content < 1 || content > count() || !shapes_[content - 1] || square.isEmpty()) return;
    const Shape& shape = *shapes_[content - 1];
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(square.topLeft());
    painter.scale(square.width(), square.height());
    if (rimmed) {
        // As wide as two and a half lines of the hatching.
        const double rim = 2.5 * std::max(1.0 / square.width(), 1.0 / 40);
        painter.setPen(QPen(Qt::white, rim, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    } else {
        painter.setPen(Qt::NoPen);
    }
    painter.setBrush(Qt::white);
    painter.drawPath(shape.body);
    painter.fillPath(shape.sign, Qt::black);
    painter.restore();
}

void paintFontSquare(QPainter& painter, const QRectF& square, int colour, const Style& style) {
    const bool dark = colour != 0;
    painter.fillRect(square, QColor(styleColor(dark ? style.DarkColor : style.LightColor)));
    if (!dark || style.DarkHatch != 1) return;
    painter.save();
    // Crisp one-pixel lines at the picture's own pixels; smooth ones at any
    // other scale, where unsmoothed lines come out one pixel wide here and
    // two there.
    painter.setRenderHint(QPainter::Antialiasing, !atOwnPixels(painter));
    painter.setClipRect(square, Qt::IntersectClip);
    painter.setPen(QPen(Qt::black, 1.0, Qt::SolidLine, Qt::FlatCap));
    const double spacing = std::max(3, (twipsToWholePixels(style.SqrWidth) + 5) / 10);
    // Each line is cut to the square by hand as well: an SVG drops the clip.
    const double width = square.width();
    const double height = square.height();
    for (double k = spacing; k < width + height; k += spacing) {
        const double from = std::max(0.0, k - height);
        const double to = std::min(width, k);
        painter.drawLine(square.topLeft() + QPointF(from, k - from),
                         square.topLeft() + QPointF(to, k - to));
    }
    painter.restore();
}

QImage fontSheet(const FontPieces& pieces, const Style& style) {
    const int cells = static_cast<int>(style.PiecesList.size()) + 1;
    const int across = twipsToWholePixels(style.SqrHTab);
    const int down = twipsToWholePixels(style.SqrVTab);
    const int width = twipsToWholePixels(style.SqrWidth);
    const int height = twipsToWholePixels(style.SqrHeight);
    const long long sheetWidth = static_cast<long long>(cells - 1) * across + width;
    const long long sheetHeight = static_cast<long long>(down) + height;
    // A sheet larger than any picture can show is not worth its memory.
    if (width <= 0 || height <= 0 || across < 0 || down < 0 || sheetWidth > 32767 ||
        sheetHeight > 32767)
        return QImage();
    QImage sheet(static_cast<int>(sheetWidth), static_cast<int>(sheetHeight), QImage::Format_RGB32);
    if (sheet.isNull()) return sheet;
    sheet.fill(Qt::white);
    QPainter painter(&sheet);
    for (int colour = 0; colour < 2; ++colour)
        for (int cell = 0; cell < cells; ++cell) {
            const QRectF square(cell * across, colour * down, width, height);
            paintFontSquare(painter, square, colour, style);
            pieces.paintPiece(painter, cell, square, colour != 0 && style.DarkHatch == 1);
        }
    return sheet;
}

} // namespace marlith
