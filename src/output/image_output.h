// The diagram and the position on their way out: the image file, and the
// texts that go to and come from the clipboard.
#pragma once

#include "position/fen.h"

#include <QByteArray>
#include <QImage>
#include <QString>

namespace marlith {

// The name an image is saved under: "Marlith.bmp" for none, ".bmp" added to
// a name without any ".", even one in a folder name.
QString settleImageName(const QString& imageFile);

// Writes the picture in the format that the name's extension asks for,
// in any case: ".png" (lossless), ".svg" and ".pdf" (the picture at its size,
// a PDF page at 96 dpi), and a Windows bitmap for ".bmp" and any other or no
// extension. The old file stays whole when the write fails.
bool writeImageFile(const QImage& image, const QString& path);

// The picture as PNG bytes, lossless; empty for a picture that can't be coded.
QByteArray pngBytes(const QImage& image);

// The picture as an SVG document of its pixel size that carries it as PNG,
// so that it keeps every pixel; empty for a picture that can't be coded.
QByteArray svgBytes(const QImage& image);
// The same, around PNG bytes of the picture already made.
QByteArray svgBytes(QSize size, const QByteArray& png);

// The first of folder/stem.pdf, folder/stem-2.pdf, folder/stem-3.pdf, ...
// that is not there yet, so that a page never overwrites an earlier one.
QString unusedPdfPath(const QString& folder, const QString& stem);

// Where a page goes when there is no printer: an unused stem.pdf in the
// user's documents folder, made if missing, or in `programFolder` when
// there is no such folder or it can't be made.
QString pagePdfPath(const QString& stem, const QString& programFolder);

// The text that a copy of the position puts on the clipboard: the canonical
// text, with the piece counter directly in front when the style asks for it.
QString copiedPositionText(const QString& canonical, const QString& counter, int copyCounter);

// A pasted text made to fit the board: rows completed, at most `maxLength`
// characters read (the position box holds no more).
QString pastedPositionText(const QString& clipboard, int columns, const QString& piecesList,
                           int maxLength);

// The position as an HTML fragment: one picture a square, named by the
// piece's letter, its side ("w" for a letter that upper-casing leaves as it
// is) and the square's colour, "sqw" or "sqb" for an empty square, and a
// line break behind each row. Read from what is painted, always unturned.
QString htmlFragment(const SquareVector& squareVector, const Board& board,
                     const QString& piecesList);

} // namespace marlith
