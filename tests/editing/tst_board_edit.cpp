#include "editing/board_edit.h"

#include <QTest>

using namespace marlith;

namespace {

Style BoardStyle() {
    Style style;
    ResetStyle(style);
    style.SqrHTab = 225;
    style.SqrVTab = 225;
    return style;
}

// The middle of square (row, column) in twips.
QPointF Middle(int row, int column, const Style& style) {
    return QPointF(style.XBase + column * (style.SqrHTab + style.SqrHSpc) + 112,
                   style.YBase + row * (style.SqrVTab + style.SqrVSpc) + 112);
}

struct EditBoard {
    Style style = BoardStyle();
    VetArray vet{};
    int reversed = 0;
    int viewPiece = -1;

    BoardEdit gesture(int button, int shift, QPointF from, QPointF to) {
        const BoardPress press{from.x(), from.y(), button, shift};
        return ReleaseOnBoard(press, to.x(), to.y(), vet, style, reversed, viewPiece);
    }
    BoardEdit drag(int fromSquare, int toSquare, int shift = 0, int button = kLeftButton) {
        return gesture(button, shift, at(fromSquare), at(toSquare));
    }
    QPointF at(int square) const { return Middle(square / 8, square % 8, style); }
    int content(int square) const { return FoldedContent(vet[square][1], 12); }
    QString fen() const { return VetToFEN(vet, {8, 8}, style.PiecesList); }
};

} // namespace

class TstBoardEdit : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void dragMovesAndCtrlCopies() {
        EditBoard b;
        b.vet[0][1] = 12; // K on a light square
        BoardEdit edit = b.drag(0, 9);
        QVERIFY(edit.picMove);
        QVERIFY(!edit.clicked);
        QCOMPARE(b.vet[0][1], int16_t(0));
        QCOMPARE(b.vet[9][1], int16_t(12)); // square 9 is light too
        b.drag(9, 10);
        QCOMPARE(b.vet[9][1], int16_t(0));
        QCOMPARE(b.vet[10][1], int16_t(12 + 13)); // the cell of a dark square
        QCOMPARE(b.fen(), QStringLiteral("8/2K5/8/8/8/8/8/8"));

        b.drag(10, 20, kMaskCtrl);
        QCOMPARE(b.fen(), QStringLiteral("8/2K5/4K3/8/8/8/8/8"));
        // Shift and Ctrl together are an ordinary move.
        b.drag(20, 21, kMaskShift | kMaskCtrl);
        QCOMPARE(b.fen(), QStringLiteral("8/2K5/5K2/8/8/8/8/8"));
        // Alt with the button moves as well.
        b.drag(21, 22, kMaskAlt);
        QCOMPARE(b.fen(), QStringLiteral("8/2K5/6K1/8/8/8/8/8"));
    }

    void emptySourcesClearTheTarget() {
        EditBoard b;
        b.vet[5][1] = 3;
        b.drag(0, 5, kMaskCtrl);
        QCOMPARE(b.content(5), 0);
        QCOMPARE(b.content(0), 0);
        b.vet[5][1] = 3;
        b.drag(1, 5); // from a dark empty square
        QCOMPARE(b.content(5), 0);
        QCOMPARE(b.content(1), 0);
    }

    void clicksSetTheChosenPieceOrAskForOne() {
        EditBoard b;
        BoardEdit edit = b.drag(12, 12);
        QVERIFY(!edit.picMove);
        QVERIFY(edit.clicked);
        QCOMPARE(edit.clickedSquare, 12);

        b.viewPiece = 8; // R
        for (const int square : {3, 4, 63}) {
            edit = b.drag(square, square);
            QVERIFY(edit.picMove);
            QCOMPARE(edit.clickedSquare, square);
        }
        QCOMPARE(b.fen(), QStringLiteral("3RR3/8/8/8/8/8/8/7R"));
        b.viewPiece = 11;
        b.drag(3, 3); // no toggle: the piece is replaced
        QCOMPARE(b.fen(), QStringLiteral("3kR3/8/8/8/8/8/8/7R"));
        // A piece chosen doesn't stop the right click from emptying.
        edit = b.drag(3, 3, 0, kRightButton);
        QVERIFY(edit.picMove);
        QVERIFY(!edit.clicked);
        QCOMPARE(b.fen(), QStringLiteral("4R3/8/8/8/8/8/8/7R"));
    }

    void otherButtonsAndRightDragsDoNothing() {
        EditBoard b;
        b.vet[0][1] = 12;
        QVERIFY(!b.drag(0, 1, 0, kRightButton).picMove);
        QVERIFY(!b.drag(0, 1, 0, kMiddleButton).picMove);
        QVERIFY(!b.drag(0, 0, 0, kMiddleButton).clicked);
        QCOMPARE(b.content(0), 12);
        // Shift alone is a stroke over the diagram, never an edit.
        QVERIFY(!b.drag(0, 1, kMaskShift).picMove);
        QCOMPARE(b.content(0), 12);
    }

    void gesturesOffTheSquaresAreDropped() {
        EditBoard b;
        b.vet[0][1] = 12;
        const QPointF off(8 * 225 + 10, 100); // right of the last column
        QVERIFY(!b.gesture(kLeftButton, 0, b.at(0), off).picMove);
        QVERIFY(!b.gesture(kLeftButton, 0, off, b.at(0)).picMove);
        QVERIFY(!b.gesture(kLeftButton, 0, QPointF(-5, 10), b.at(3)).picMove);
        QCOMPARE(b.content(0), 12);
    }

    void gapsBelongToTheNearerSquare() {
        EditBoard b;
        b.style.SqrHSpc = 30;
        b.style.XBase = 150;
        b.vet[0][1] = 12;
        const double leftOfSquare2 = 150 + 2 * 255;
        b.gesture(kLeftButton, 0, b.at(0), QPointF(leftOfSquare2 - 10, 100));
        QCOMPARE(b.content(2), 12);
        b.gesture(kLeftButton, 0, b.at(2), QPointF(leftOfSquare2 - 20, 100));
        QCOMPARE(b.content(1), 12);
    }

    void theTurnedBoardMapsScreenToVector() {
        EditBoard b;
        b.reversed = 65;
        b.vet[63][1] = 12; // shown at the top left
        b.drag(0, 1);      // screen squares 0 -> 1
        QCOMPARE(b.content(62), 12);
        QCOMPARE(b.content(63), 0);
        b.viewPiece = 2;
        const BoardEdit edit = b.drag(8, 8);
        QCOMPARE(edit.clickedSquare, 8); // the number on the screen
        QCOMPARE(b.content(55), 2);
    }

    void landFoldsAndColours() {
        VetArray vet{};
        Land(vet, 1, 12 + 13, 12, 8); // a dark square's cell onto a dark square
        QCOMPARE(vet[1][1], int16_t(12 + 13));
        Land(vet, 0, 12 + 13, 12, 8);
        QCOMPARE(vet[0][1], int16_t(12));
        Land(vet, 9, 0, 12, 9); // 9 columns: square 9 starts row 1, dark
        QCOMPARE(vet[9][1], int16_t(13));
    }

    void mouseButtonsAndKeys() {
        QCOMPARE(ButtonNumber(Qt::LeftButton), kLeftButton);
        QCOMPARE(ButtonNumber(Qt::RightButton), kRightButton);
        QCOMPARE(ButtonNumber(Qt::MiddleButton), kMiddleButton);
        QCOMPARE(ButtonNumber(Qt::NoButton), 0);
        QCOMPARE(KeyMask(Qt::ShiftModifier | Qt::ControlModifier), 3);
        QCOMPARE(KeyMask(Qt::AltModifier), 4);
        QCOMPARE(KeyMask(Qt::KeypadModifier), 0);
    }
};

QTEST_APPLESS_MAIN(TstBoardEdit)
#include "tst_board_edit.moc"
