// The diagram and the position on their way out: the image file, and the
// texts that go to and come from the clipboard.
#pragma once

#include "position/fen.h"

#include <QByteArray>
#include <QImage>
#include <QString>
#include <functional>

class QPainter;

namespace marlith {

// The name an image is saved under: "Marlith.bmp" for none, ".bmp" added to
// a name without any ".", even one in a folder name.
QString settleImageName(const QString& imageFile);

// A diagram that can be drawn at any size: the picture the screen shows,
// and a call that paints the same in that picture's pixels onto any painter
// (a larger image, an SVG or PDF document, a printer), leaving out the
// background colour for a transparent picture.
struct DiagramPicture {
    QImage screen;
    std::function<void(QPainter&, bool transparent)> paint;
};

enum class ImageFormat { Bitmap, Png, Svg, Pdf };

// The format a file name asks for by its own extension, in any case: a
// Windows bitmap for ".bmp" and for any other or no extension.
ImageFormat imageFormatOf(const QString& path);

struct PictureSize {
    int width = 0;            // pixels; 0 or less: the screen picture's own
    bool transparent = false; // PNG and SVG only
    double dotsPerInch = 96;  // PDF: a page of width / dotsPerInch inches
};

// The diagram as pixels, `width` wide and as high as the shape asks; the
// screen picture itself when that is what is asked for.
QImage diagramImage(const DiagramPicture& picture, int width, bool transparent);

// The diagram as an SVG document `width` pixels wide: outlines where the
// style draws them, its bitmaps embedded; empty when it can't be made.
QByteArray diagramSvg(const DiagramPicture& picture, int width, bool transparent);

// Writes the diagram in the format that the name asks for: BMP and PNG as
// pixels, SVG and PDF as vectors (a PDF page the size of the picture). The
// old file stays whole when the write fails.
bool writeImageFile(const DiagramPicture& picture, const QString& path,
                    const PictureSize& size = {});

// The picture as PNG bytes, lossless; empty for a picture that can't be coded.
QByteArray pngBytes(const QImage& image);

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
