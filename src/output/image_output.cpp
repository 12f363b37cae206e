#include "output/image_output.h"

#include "position/fen.h"

namespace marlith {

QString settleImageName(const QString& imageFile) {
    if (imageFile.isEmpty()) return QStringLiteral("Marlith.bmp");
    if (!imageFile.contains(QLatin1Char('.'))) return imageFile + QStringLiteral(".bmp");
    return imageFile;
}

bool saveBitmap(const QImage& image, const QString& path) {
    return !image.isNull() && image.save(path, "BMP");
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

} // namespace marlith
