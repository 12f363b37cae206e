// What Export Diagram asks for and remembers: the format, the size in pixels
// or in millimetres at a resolution, and a transparent background, with the
// rules that turn these choices into a picture's size and a file name.
#pragma once

#include "output/image_output.h"

#include <QSize>
#include <QString>
#include <optional>

namespace marlith {

struct ExportRange {
    int least;
    int most;
};
inline constexpr ExportRange kExportWidths{16, 20000};
inline constexpr ExportRange kExportMillimetres{10, 1000};
inline constexpr ExportRange kExportResolutions{72, 2400};

struct ExportChoices {
    ImageFormat format = ImageFormat::Png;
    int width = 1200;         // pixels: BMP, PNG, SVG
    int millimetres = 80;     // PDF: the page's width
    int dotsPerInch = 300;    // PDF
    bool transparent = false; // PNG and SVG only
};

// Which controls a format asks for: the width in pixels, or millimetres at
// a resolution (PDF), and whether the background may be left out.
struct ExportControls {
    bool pixels;
    bool millimetres;
    bool transparent;
};
ExportControls exportControlsFor(ImageFormat format);

// "BMP", "PNG", "SVG", "PDF", as the format box and the settings file name them.
QString formatName(ImageFormat format);
// The format of such a name, in any case; nothing for another text.
std::optional<ImageFormat> formatNamed(const QString& name);

// A width in millimetres at `dotsPerInch`, in pixels at that resolution.
int pixelsForMillimetres(int millimetres, int dotsPerInch);

// The height of a picture `width` wide in the shape of `picture`; 0 for a
// picture without size.
int heightForWidth(int width, QSize picture);

// The widest picture of that shape whose sides both stay within the largest
// width, so that a tall board can't ask for a picture too high to make.
int largestWidthFor(QSize picture);

// What the file is written at: pixels as chosen (no wider than the shape
// allows); for PDF the page's millimetres at the resolution, the resolution
// lowered where the pixels would be too many, so that the page keeps its size.
PictureSize exportPictureSize(const ExportChoices& choices, QSize picture);

// The name with the format's extension: a name that already ends in it stays,
// an image extension (".bmp", ".png", ".svg", ".pdf", any case) gives way to
// it, and any other name gets it added.
QString exportFileName(const QString& name, ImageFormat format);

// A remembered number, brought into its range; a text that is no number
// leaves `current`.
int rememberedNumber(const QString& text, ExportRange range, int current);

} // namespace marlith
