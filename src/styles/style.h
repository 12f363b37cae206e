// The style record: the named look of a diagram, its defaults and units.
#pragma once

#include <QString>
#include <cstdint>

namespace marlith {

// Lengths are twips (15 to the pixel); colours are 32-bit with red in the low
// byte. BorderHeight/BorderWidth/FrameWidth/FontSize are plain numbers.
struct Style {
    QString BorderFile;
    QString StyleName;
    QString PiecesFile;
    int32_t BackColor = 0;
    int16_t BorderHeight = 8;
    int16_t BorderWidth = 8;
    int16_t CopyCounter = 0;
    QString PiecesList;
    QString EnglishNotation;
    int32_t FontColor = 0;
    int16_t FontXBase = 0;
    int16_t FontYBase = 0;
    QString FontName;
    QString FontPos;
    int16_t FontSize = 8;
    QString FontStyle;
    int32_t FrameColor = 0;
    int16_t FrameWidth = 0;
    int16_t ShowGrid = 0;
    int16_t SqrHeight = 225;
    int16_t SqrWidth = 225;
    int16_t SqrHTab = 0;
    int16_t SqrVTab = 0;
    int16_t SqrHSpc = 0;
    int16_t SqrVSpc = 0;
    QString StartPos;
    QString PyDictionary;
    int32_t WndHeight = 0;
    int32_t WndWidth = 0;
    int16_t XBase = 0;
    int16_t YBase = 0;
    // A style may draw its pieces from a font's chess signs instead of a
    // sheet: then PiecesFont names the family, and the squares are plain
    // colours, the dark ones hatched when DarkHatch is 1.
    QString PiecesFont;
    // The sign of each letter of PiecesList in the font, as hexadecimal code
    // points apart by blanks ("-" for none); empty for the orthodox signs.
    QString PiecesSigns;
    int32_t LightColor = 0xFFFFFF;
    int32_t DarkColor = 0xC0C0C0;
    int16_t DarkHatch = 0;
};

inline constexpr const char* kDefaultPiecesList = "pPnNbBrRqQkK";
inline constexpr const char* kDefaultStartPos = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";
inline constexpr int kTwipsPerPixel = 15;

// Every field but StyleName back to its default; the caller empties
// FullDictionary, which lives in the shared state.
void resetStyle(Style& style);

// The one conversion from twips to pixels: the whole part of v / 15 + 0.1.
double twipsToPixels(double twips);
int twipsToWholePixels(double twips);

// Number of squares the board really has: rows x columns, or 64 when the
// product is out of the 0..400 range that the square vector holds.
int boardSquares(int rows, int columns);

} // namespace marlith
