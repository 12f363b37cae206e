#include "output/image_output.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QStandardPaths>
#include <QSvgGenerator>
#include <cmath>
#include <optional>

#include "position/fen.h"

namespace marlith {

QString settleImageName(const QString& imageFile) {
    if (imageFile.isEmpty()) return QStringLiteral("Marlith.bmp");
    if (!imageFile.contains(QLatin1Char('.'))) return imageFile + QStringLiteral(".bmp");
    return imageFile;
}

ImageFormat imageFormatOf(const QString& path) {
    // Only the file's own extension counts: a dot in a folder name asks for nothing.
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == u"png") return ImageFormat::Png;
    if (suffix == u"svg") return ImageFormat::Svg;
    if (suffix == u"pdf") return ImageFormat::Pdf;
    return ImageFormat::Bitmap;
}

namespace {

// The largest side a picture may have, and its height at a width.
constexpr int kMostPixels = 20000;

std::optional<QSize> scaledSize(const QImage& screen, int width) {
    if (screen.isNull()) return std::nullopt;
    if (width <= 0) return screen.size();
    if (width > kMostPixels) return std::nullopt;
    const double height = std::round(static_cast<double>(screen.height()) * width / screen.width());
    if (height < 1 || height > kMostPixels) return std::nullopt;
    return QSize(width, static_cast<int>(height));
}

// Paints the diagram scaled onto a device of `size`.
bool paintScaled(const DiagramPicture& picture, QPaintDevice* device, QSize size,
                 bool transparent) {
    QPainter painter;
    if (!painter.begin(device)) return false;
    painter.scale(static_cast<double>(size.width()) / picture.screen.width(),
                  static_cast<double>(size.height()) / picture.screen.height());
    picture.paint(painter, transparent);
    return painter.end();
}

// The whole of the bytes or a failure: an empty text is a coding that failed.
bool writeBytes(const QByteArray& bytes, QIODevice* device) {
    return !bytes.isEmpty() && device->write(bytes) == bytes.size();
}

// One page the size of the picture at the resolution, without margins.
bool writePdf(const DiagramPicture& picture, QSize size, double dotsPerInch, QIODevice* device) {
    if (!(dotsPerInch >= 1 && dotsPerInch <= 10000)) return false;
    const double pointsPerPixel = 72.0 / dotsPerInch;
    QPdfWriter pdf(device);
    pdf.setCreator(QStringLiteral("Marlith"));
    pdf.setResolution(static_cast<int>(std::lround(dotsPerInch)));
    const QPageSize page(QSizeF(size.width() * pointsPerPixel, size.height() * pointsPerPixel),
                         QPageSize::Point, QString(), QPageSize::ExactMatch);
    if (!pdf.setPageLayout(QPageLayout(page, QPageLayout::Portrait, QMarginsF()))) return false;
    QPainter painter;
    if (!painter.begin(&pdf)) return false;
    // A bitmap sheet's squares and letters would blur under JPEG.
    painter.setRenderHint(QPainter::LosslessImageRendering);
    painter.scale(static_cast<double>(pdf.width()) / picture.screen.width(),
                  static_cast<double>(pdf.height()) / picture.screen.height());
    picture.paint(painter, false);
    return painter.end();
}

} // namespace

QImage diagramImage(const DiagramPicture& picture, int width, bool transparent) {
    const std::optional<QSize> size = scaledSize(picture.screen, width);
    if (!size) return QImage();
    if (*size == picture.screen.size() && !transparent) return picture.screen;
    QImage image(*size, QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) return image;
    image.fill(Qt::transparent);
    if (!paintScaled(picture, &image, *size, transparent)) return QImage();
    return image;
}

QByteArray diagramSvg(const DiagramPicture& picture, int width, bool transparent) {
    const std::optional<QSize> size = scaledSize(picture.screen, width);
    if (!size) return {};
    QByteArray svg;
    QBuffer buffer(&svg);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(*size);
    generator.setResolution(96); // a pixel is a CSS pixel
    generator.setViewBox(QRect(QPoint(), *size));
    generator.setTitle(QStringLiteral("Marlith diagram"));
    if (!paintScaled(picture, &generator, *size, transparent)) return {};
    return svg;
}

QByteArray pngBytes(const QImage& image) {
    QByteArray png;
    QBuffer buffer(&png);
    if (image.isNull() || !buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG"))
        return {};
    return png;
}

namespace {

// The picture coded in the format, whole, into the device.
bool writeFormat(const DiagramPicture& picture, ImageFormat format, const PictureSize& size,
                 QIODevice* device) {
    if (format == ImageFormat::Bitmap) {
        const QImage image = diagramImage(picture, size.width, false);
        return !image.isNull() && image.convertToFormat(QImage::Format_RGB32).save(device, "BMP");
    }
    if (format == ImageFormat::Png)
        return writeBytes(pngBytes(diagramImage(picture, size.width, size.transparent)), device);
    if (format == ImageFormat::Svg)
        return writeBytes(diagramSvg(picture, size.width, size.transparent), device);
    const std::optional<QSize> pixels = scaledSize(picture.screen, size.width);
    return pixels && writePdf(picture, *pixels, size.dotsPerInch, device);
}

} // namespace

bool writeImageFile(const DiagramPicture& picture, const QString& path, const PictureSize& size) {
    if (picture.screen.isNull()) return false;
    // Written whole under a new name, then renamed over the old picture: a
    // full disk leaves the old picture, never a torn one.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    // A write that stays in the file's buffer fails only at the flush, and
    // commit alone would still put the torn file in place.
    return writeFormat(picture, imageFormatOf(path), size, &file) && file.flush() && file.commit();
}

QString unusedPdfPath(const QString& folder, const QString& stem) {
    const QDir dir(folder);
    QString path = dir.filePath(stem + QStringLiteral(".pdf"));
    for (int number = 2; QFileInfo::exists(path); ++number)
        path = dir.filePath(stem + QStringLiteral("-%1.pdf").arg(number));
    return path;
}

QString pagePdfPath(const QString& stem, const QString& programFolder) {
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const bool usable = !documents.isEmpty() && QDir().mkpath(documents);
    return unusedPdfPath(usable ? documents : programFolder, stem);
}

QString copiedPositionText(const QString& canonical, const QString& counter, int copyCounter) {
    return copyCounter == 1 ? counter + canonical : canonical;
}

QString pastedPositionText(const QString& clipboard, int columns, const QString& piecesList,
                           int maxLength) {
    // Completing rows only lengthens a text, so what the box would cut off
    // anyway need not be read.
    return fillRows(clipboard.left(maxLength), columns, piecesList).left(maxLength);
}

QString htmlFragment(const SquareVector& squareVector, const Board& board,
                     const QString& piecesList) {
    QString text;
    const int squares = board.squares();
    int counter = 0;
    for (int i = 0; i < squares; ++i) {
        const QChar colour = squareColor(i, board.columns) == 0 ? u'w' : u'b';
        const int content = foldedContent(squareVector[static_cast<size_t>(i)].painted,
                                          static_cast<int>(piecesList.size()));
        QString name;
        if (content <= 0 || content > piecesList.size()) {
            name = QStringLiteral("sq") + colour;
        } else {
            const QChar letter = piecesList.at(content - 1);
            name = QString(letter) + (letter.toUpper() == letter ? u'w' : u'b') + colour;
        }
        text += QStringLiteral("<img src=\"") + name + QStringLiteral(".gif\">");
        if (++counter == board.columns) {
            text += QStringLiteral("<br>\r\n");
            counter = 0;
        }
    }
    return text;
}

} // namespace marlith
