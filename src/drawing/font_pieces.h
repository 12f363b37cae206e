// Pieces drawn from the chess signs of a scalable font, and the squares they
// stand on: the look of a style that names a font instead of a piece sheet.
// Shapes are kept as outlines, so that a picture of any size, a vector file
// or a page draws them sharp.
#pragma once

#include "styles/style.h"

#include <QImage>
#include <QList>
#include <QPainterPath>
#include <QString>
#include <optional>
#include <vector>

class QPainter;

namespace marlith {

// The font the program ships for its pieces, installed beside its styles.
inline constexpr const char* kPieceFontFile = "NotoSansSymbols2-Regular.ttf";
inline constexpr const char* kPieceFontFamily = "Noto Sans Symbols 2";

// Makes the shipped piece font known to the program, from the folder of its
// shipped files; true when the family can be used afterwards.
bool addPieceFont(const QString& shippedFolder);

// The chess sign that stands for a letter of the pieces list: the outlined
// signs for the white orthodox letters "PNBRQK", the filled ones for
// "pnbrqk"; nothing for any other letter.
std::optional<char32_t> orthodoxSign(QChar letter);

// The signs of the letters of a pieces list: those a style names, in order
// (hexadecimal code points, "-" or anything else for none), or with no
// names the orthodox ones.
std::vector<std::optional<char32_t>> piecesSigns(const QString& piecesList,
                                                 const QString& namedSigns);

class FontPieces {
  public:
    // The signs of the font for the letters of the list, in its order. No
    // result when the family is not there or lacks a sign the list needs;
    // a letter without a sign stays an empty square.
    static std::optional<FontPieces> load(const QString& family, const QString& piecesList,
                                          const QString& namedSigns = {});

    // Piece `content` (1 for the list's first letter) on a square, scaled to
    // it; `rimmed` keeps a hatched square's lines off the piece.
    void paintPiece(QPainter& painter, int content, const QRectF& square, bool rimmed) const;

    int count() const { return static_cast<int>(shapes_.size()); }

  private:
    struct Shape {
        QPainterPath body; // the piece's whole area, painted white under it
        QPainterPath sign; // the sign itself, painted black
    };
    // Shapes fill a square of side 1, all on one scale and baseline.
    std::vector<std::optional<Shape>> shapes_;
};

// Fills one square as a font style shows it: the light or the dark colour,
// and on a dark square of a hatched style thin lines from lower left to
// upper right, laid on the picture's grid so that they run on across the
// corners of neighbouring dark squares.
void paintFontSquare(QPainter& painter, const QRectF& square, int colour, const Style& style);

// The sheet of a font style at the style's size in pixels, in the layout of
// a bitmap sheet (the bare square and the list's pieces, light squares in
// row 0, dark in row 1), so that the screen copies cells as from any sheet.
QImage fontSheet(const FontPieces& pieces, const Style& style);

} // namespace marlith
