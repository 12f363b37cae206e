#include "editing/board_edit.h"

#include <QTest>

using namespace marlith;

namespace {

// An 8 by 8 board of 225 twip squares; gestures go between square middles.
struct EditBoard {
    Style style;
    SquareVector squareVector{};
    int reversed = 0;
    int chosenPiece = -1;

    EditBoard() {
        resetStyle(style);
        style.SqrHTab = 225;
        style.SqrVTab = 225;
    }
    BoardEdit gesture(int button, int shift, QPointF from, QPointF to) {
        const BoardPress press{from.x(), from.y(), button, shift};
        return editOnRelease(press, to.x(), to.y(), squareVector, style, reversed, chosenPiece);
    }
    BoardEdit drag(int fromSquare, int toSquare, int shift = 0, int button = kLeftButton) {
        return gesture(button, shift, at(fromSquare), at(toSquare));
    }
    QPointF at(int square) const { return QPointF(square % 8 * 225 + 112, square / 8 * 225 + 112); }
    int content(int square) const { return foldedContent(squareVector[square][1], 12); }
    QString fen() const { return squaresToFen(squareVector, {8, 8}, style.PiecesList); }
};

} // namespace

class TstBoardEdit : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void dragMovesAndCtrlCopies() {
        EditBoard b;
        b.squareVector[0][1] = 12; // K on a light square
        const BoardEdit edit = b.drag(0, 9);
        QVERIFY(edit.squaresChanged && !edit.clicked);
        QCOMPARE(b.squareVector[0][1], int16_t(0));
        QCOMPARE(b.squareVector[9][1], int16_t(12)); // square 9 is light too
        b.drag(9, 10);
        QCOMPARE(b.squareVector[9][1], int16_t(0));
        QCOMPARE(b.squareVector[10][1], int16_t(12 + 13)); // the cell of a dark square
        b.drag(10, 20, kMaskCtrl);
        QCOMPARE(b.squareVector[20][1], int16_t(12)); // and back to the cell of a light one
        QCOMPARE(b.fen(), QStringLiteral("8/2K5/4K3/8/8/8/8/8"));
        // Shift and Ctrl together, or Alt, move as without keys.
        b.drag(20, 21, kMaskShift | kMaskCtrl);
        b.drag(21, 22, kMaskAlt);
        QCOMPARE(b.fen(), QStringLiteral("8/2K5/6K1/8/8/8/8/8"));

        // An empty source, light or dark, empties the target.
        b.squareVector[5][1] = 3;
        b.drag(0, 5, kMaskCtrl);
        QCOMPARE(b.content(5), 0);
        b.squareVector[5][1] = 3;
        b.drag(1, 5);
        QCOMPARE(b.content(5), 0);
        QCOMPARE(b.content(1), 0);
    }

    void clicksSetTheChosenPieceOrAskForOne() {
        EditBoard b;
        BoardEdit edit = b.drag(12, 12);
        QVERIFY(!edit.squaresChanged && edit.clicked);
        QCOMPARE(edit.clickedSquare, 12);

        b.chosenPiece = 8; // R
        for (const int square : {3, 4, 63}) {
            edit = b.drag(square, square);
            QVERIFY(edit.squaresChanged);
            QCOMPARE(edit.clickedSquare, square);
        }
        QCOMPARE(b.fen(), QStringLiteral("3RR3/8/8/8/8/8/8/7R"));
        b.chosenPiece = 11;
        b.drag(3, 3); // no toggle: the piece is replaced
        QCOMPARE(b.fen(), QStringLiteral("3kR3/8/8/8/8/8/8/7R"));
        // A piece chosen doesn't stop the right click from emptying.
        edit = b.drag(3, 3, 0, kRightButton);
        QVERIFY(edit.squaresChanged && !edit.clicked);
        QCOMPARE(b.fen(), QStringLiteral("4R3/8/8/8/8/8/8/7R"));
    }

    void gesturesThatDoNothing() {
        EditBoard b;
        b.squareVector[0][1] = 12;
        QVERIFY(!b.drag(0, 1, 0, kRightButton).squaresChanged);
        QVERIFY(!b.drag(0, 1, 0, kMiddleButton).squaresChanged);
        QVERIFY(!b.drag(0, 0, 0, kMiddleButton).clicked);
        QVERIFY(!b.drag(0, 1, kMaskShift).squaresChanged); // a stroke over the diagram
        // Gestures that start or end off the squares.
        const QPointF off(8 * 225 + 10, 100);
        QVERIFY(!b.gesture(kLeftButton, 0, b.at(0), off).squaresChanged);
        QVERIFY(!b.gesture(kLeftButton, 0, off, b.at(0)).squaresChanged);
        QVERIFY(!b.gesture(kLeftButton, 0, QPointF(-5, 10), b.at(3)).squaresChanged);
        QCOMPARE(b.fen(), QStringLiteral("K7/8/8/8/8/8/8/8"));
    }

    void theTurnedBoardMapsScreenToVector() {
        EditBoard b;
        b.reversed = 65;
        b.squareVector[63][1] = 12; // shown at the top left
        b.drag(0, 1);               // screen squares 0 -> 1
        QCOMPARE(b.content(62), 12);
        QCOMPARE(b.content(63), 0);
        b.chosenPiece = 2;
        QCOMPARE(b.drag(8, 8).clickedSquare, 8); // the number on the screen
        QCOMPARE(b.content(55), 2);
    }

    void mouseButtonsAndKeys() {
        QCOMPARE(buttonNumber(Qt::LeftButton), kLeftButton);
        QCOMPARE(buttonNumber(Qt::RightButton), kRightButton);
        QCOMPARE(buttonNumber(Qt::MiddleButton), kMiddleButton);
        QCOMPARE(buttonNumber(Qt::NoButton), 0);
        QCOMPARE(keyMask(Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier), 7);
        QCOMPARE(keyMask(Qt::KeypadModifier), 0);
    }
};

QTEST_APPLESS_MAIN(TstBoardEdit)
#include "tst_board_edit.moc"
