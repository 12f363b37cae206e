#include "output/image_output.h"

#include <QSaveFile>

#include "position/fen.h"

namespace marlith {

QString settleImageName(const QString& imageFile) {
    if (imageFile.isEmpty()) return QStringLiteral("Marlith.bmp");
    if (!imageFile.contains(QLatin1Char('.'))) return imageFile + QStringLiteral(".bmp");
    return imageFile;
}

bool saveBitmap(const QImage& image, const QString& path) {
    if (image.isNull()) return false;
    // Written whole under a new name, then renamed over the old picture: a
    // full disk leaves the old picture, never a torn one.
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && image.save(&file, "BMP") && file.commit();
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
