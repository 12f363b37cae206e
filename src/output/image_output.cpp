#include "output/image_output.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QStandardPaths>

#include "position/fen.h"

namespace marlith {

QString settleImageName(const QString& imageFile) {
    if (imageFile.isEmpty()) return QStringLiteral("Marlith.bmp");
    if (!imageFile.contains(QLatin1Char('.'))) return imageFile + QStringLiteral(".bmp");
    return imageFile;
}

namespace {

enum class ImageFormat { Bitmap, Png, Svg, Pdf };

// Only the file's own extension counts: a dot in a folder name asks for nothing.
ImageFormat formatOfName(const QString& path) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == u"png") return ImageFormat::Png;
    if (suffix == u"svg") return ImageFormat::Svg;
    if (suffix == u"pdf") return ImageFormat::Pdf;
    return ImageFormat::Bitmap;
}

// The whole of the bytes or a failure: an empty text is a coding that failed.
bool writeBytes(const QByteArray& bytes, QIODevice* device) {
    return !bytes.isEmpty() && device->write(bytes) == bytes.size();
}

// One page the size of the picture at the screen's 96 dpi, without margins.
bool writePdf(const QImage& image, QIODevice* device) {
    constexpr double kPointsPerPixel = 72.0 / 96.0;
    QPdfWriter pdf(device);
    pdf.setCreator(QStringLiteral("Marlith"));
    pdf.setResolution(96);
    const QPageSize page(QSizeF(image.width() * kPointsPerPixel, image.height() * kPointsPerPixel),
                         QPageSize::Point, QString(), QPageSize::ExactMatch);
    if (!pdf.setPageLayout(QPageLayout(page, QPageLayout::Portrait, QMarginsF()))) return false;
    QPainter painter;
    if (!painter.begin(&pdf)) return false;
    // Squares and letters would blur under JPEG.
    painter.setRenderHint(QPainter::LosslessImageRendering);
    painter.drawImage(0, 0, image);
    return painter.end();
}

} // namespace

QByteArray pngBytes(const QImage& image) {
    QByteArray png;
    QBuffer buffer(&png);
    if (image.isNull() || !buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG"))
        return {};
    return png;
}

QByteArray svgBytes(const QImage& image) {
    return svgBytes(image.size(), pngBytes(image));
}

QByteArray svgBytes(QSize size, const QByteArray& png) {
    if (png.isEmpty()) return {};
    const QByteArray width = QByteArray::number(size.width());
    const QByteArray height = QByteArray::number(size.height());
    const QByteArray sized = "width=\"" + width + "\" height=\"" + height + '"';
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
           "<svg xmlns=\"http://www.w3.org/2000/svg\" "
           "xmlns:xlink=\"http://www.w3.org/1999/xlink\" " +
           sized + " viewBox=\"0 0 " + width + ' ' + height + "\">\n<image " + sized +
           " xlink:href=\"data:image/png;base64," + png.toBase64() + "\"/>\n</svg>\n";
}

bool writeImageFile(const QImage& image, const QString& path) {
    if (image.isNull()) return false;
    // Written whole under a new name, then renamed over the old picture: a
    // full disk leaves the old picture, never a torn one.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    bool written = false;
    switch (formatOfName(path)) {
    case ImageFormat::Bitmap:
        written = image.save(&file, "BMP");
        break;
    case ImageFormat::Png:
        written = writeBytes(pngBytes(image), &file);
        break;
    case ImageFormat::Svg:
        written = writeBytes(svgBytes(image), &file);
        break;
    case ImageFormat::Pdf:
        written = writePdf(image, &file);
        break;
    }
    // A write that stays in the file's buffer fails only at the flush, and
    // commit alone would still put the torn file in place.
    return written && file.flush() && file.commit();
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
