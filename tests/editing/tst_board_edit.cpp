#include "editing/board_edit.h"
#include "editing/board_effects.h"
#include "position/move_writer.h"

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
        style.SqrHTab = style.SqrVTab = 225;
    }
    BoardEdit gesture(QPointF from, QPointF to, int button = kLeftButton, int shift = 0) {
        const BoardPress press{from.x(), from.y(), button, shift};
        return editOnRelease(press, to.x(), to.y(), squareVector, style, reversed, chosenPiece);
    }
    BoardEdit drag(int fromSquare, int toSquare, int shift = 0, int button = kLeftButton) {
        return gesture(at(fromSquare), at(toSquare), button, shift);
    }
    QPointF at(int square) const { return QPointF(square % 8 * 225 + 112, square / 8 * 225 + 112); }
    int content(int square) const { return foldedContent(squareVector[square].wanted, 12); }
    QString fen() const { return squaresToFen(squareVector, {8, 8}, style.PiecesList); }
};

} // namespace

class TstBoardEdit : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void dragMovesAndCtrlCopies() {
        EditBoard b;
        b.squareVector[0].wanted = 12; // K on a light square
        QVERIFY(b.drag(0, 10).squaresChanged);
        QCOMPARE(b.squareVector[10].wanted, int16_t(12 + 13)); // the cell of a dark square
        b.drag(10, 20, kMaskCtrl);
        QCOMPARE(b.squareVector[20].wanted, int16_t(12)); // and back to the cell of a light one
        // Shift and Ctrl together, or Alt, move as without keys; an empty
        // source empties the target, with Ctrl too.
        b.drag(20, 21, kMaskShift | kMaskCtrl);
        b.drag(21, 22, kMaskAlt);
        b.squareVector[5].wanted = b.squareVector[6].wanted = 3;
        b.drag(0, 5, kMaskCtrl);
        b.drag(1, 6);
        b.drag(22, 0);
        QCOMPARE(b.fen(), QStringLiteral("K7/2K5/8/8/8/8/8/8"));
    }

    void clicksSetTheChosenPieceOrAskForOne() {
        EditBoard b;
        BoardEdit edit = b.drag(12, 12);
        QVERIFY(!edit.squaresChanged && edit.clicked && edit.clickedSquare == 12);
        b.chosenPiece = 8; // R
        for (const int square : {3, 4, 63})
            QVERIFY(b.drag(square, square).squaresChanged);
        b.chosenPiece = 11;
        QCOMPARE(b.drag(3, 3).clickedSquare, 3); // no toggle: the piece is replaced
        QCOMPARE(b.fen(), QStringLiteral("3kR3/8/8/8/8/8/8/7R"));
        // A piece chosen doesn't stop the right click from emptying.
        edit = b.drag(3, 3, 0, kRightButton);
        QVERIFY(edit.squaresChanged && !edit.clicked);
        QCOMPARE(b.fen(), QStringLiteral("4R3/8/8/8/8/8/8/7R"));
    }

    void gesturesThatDoNothing() {
        EditBoard b;
        b.squareVector[0].wanted = 12;
        // Right and middle drags, a middle click, a Shift stroke over the
        // diagram, and gestures that start or end off the squares.
        const QPointF off(8 * 225 + 10, 100);
        for (const BoardEdit& edit :
             {b.drag(0, 1, 0, kRightButton), b.drag(0, 1, 0, kMiddleButton),
              b.drag(0, 0, 0, kMiddleButton), b.drag(0, 1, kMaskShift), b.gesture(b.at(0), off),
              b.gesture(off, b.at(0)), b.gesture(QPointF(-5, 10), b.at(3))})
            QVERIFY(!edit.squaresChanged && !edit.clicked);
        QCOMPARE(b.fen(), QStringLiteral("K7/8/8/8/8/8/8/8"));
        // A board too large for the vector, not yet fallen back to 8 by 8, takes no gesture.
        b.style.BorderHeight = 21;
        b.style.BorderWidth = 20;
        QVERIFY(!b.gesture({1012, 787}, {2362, 112}).squaresChanged); // square 64 to square 10
    }

    void theTurnedBoardMapsScreenToVector() {
        EditBoard b;
        b.reversed = 65;
        b.squareVector[63].wanted = 12; // shown at the top left
        b.drag(0, 1);                   // screen squares 0 -> 1
        QCOMPARE(std::pair(b.content(62), b.content(63)), std::pair(12, 0));
        b.chosenPiece = 2;
        QCOMPARE(b.drag(8, 8).clickedSquare, 8); // the number on the screen
        QCOMPARE(b.content(55), 2);
    }

    // Each effect on boards square and not, odd and even, and one of a row; four quarter turns, two
    // mirrors, give the position back; a shift back doesn't bring back what fell off. Each result
    // is the effects, by letter, applied to the board afresh: mirror top to bottom (H) or in the
    // diagonal (D), quarter turn (R), shift (<>^v); then the position.
    void boardEffects() {
        const QString start = "r3k2r/1P6/8/8/3p4/8/4P3/R3K2R";
        const std::tuple<int, int, QString, QStringList> cases[] = {
            {3, 3, "kq1/2r/K2", {"H K2/2r/kq1", "D 1r1/2q/K1k", "R K1k/2q/1r1"}},
            {2,
             3,
             "kq1/p1r",
             {"R kq1/p1r", "D kq1/p1r", "< q2/1r1", "> 1kq/1p1", "^ p1r/3", "v 3/kq1"}},
            {4, 4, "k3/1q2/2r1/3K", {"H 3K/2r1/1q2/k3"}},
            {1, 10, "k8K", {"H k8K", "< 8K1"}},
            {10, 1, "k/1/1/1/1/1/1/1/1/K", {"> 1/1/1/1/1/1/1/1/1/1"}},
            {8, 8, start, {"RRDRRDHH " + start, "<> 4k2r/1P6/8/8/3p4/8/4P3/4K2R"}}};
        for (const auto& [rows, columns, before, results] : cases) {
            for (const QString& result : results) {
                SquareVector v{};
                QString text = before;
                fenToSlot(1, text, v, {rows, columns}, QLatin1String(kDefaultPiecesList));
                for (const QChar effect : result.section(u' ', 0, 0))
                    applyBoardEffect(v, {rows, columns},
                                     BoardEffect(QStringLiteral("HDR<>^v").indexOf(effect)));
                QCOMPARE(squaresToFen(v, {rows, columns}, QLatin1String(kDefaultPiecesList)),
                         result.section(u' ', 1));
            }
        }
    }
};

QTEST_APPLESS_MAIN(TstBoardEdit)
#include "tst_board_edit.moc"
