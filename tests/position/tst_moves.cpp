#include "position/move_reader.h"
#include "position/move_writer.h"

#include <QRegularExpression>
#include <QTest>
#include <iterator>

using namespace marlith;

namespace {

const QString kPieces = QStringLiteral("pPnNbBrRqQkK");
const Notation kNotations[] = {
    {kPieces + "aA", kPieces + "aA"}, // the default letters and a fairy piece
    {"pPsSlLtTdDkK", kPieces},        // knight S, bishop L, rook T, queen D
    {"oOnNbBrRqQkK", kPieces},        // no "P"
};
const char* const kStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";
const char* const kGerman = "tsldklst/pppppppp/8/8/8/8/PPPPPPPP/TSLDKLST";
const char* const kKnights = "1n2k3/8/5n2/8/8/8/8/4K3";
const char* const kPawns = "3r4/4P3/8/8/8/8/4p3/5R2";
const char* const kPassant = "4k3/8/8/3pP3/4pP2/8/8/4K3";
const char* const kCastles = "r3k2r/8/8/8/8/8/8/R3K2R";
const char* const kWide = "r4k3r/82/82/82/82/82/82/R4K3R";
const char* const kPinned = "4k3/8/1n6/4n3/8/8/8/4R2K"; // the rook pins e5 to e8

// One board in the wanted slot, as the book scanner keeps it while it plays.
struct Table {
    SquareVector squareVector{};
    Board board;
    Notation notation;

    explicit Table(QString fen, Board b = {8, 8}, int letters = 0)
        : board(b), notation(kNotations[letters]) {
        fenToSlot(1, fen, squareVector, board, notation.piecesList);
    }
    // The scanner's entry point is played alongside on a copy.
    bool bytesAgree = true;

    QString play(int side, const QString& move) {
        SquareVector bytesPlayed = squareVector;
        const bool played = playMove(side, move.toLatin1(), bytesPlayed, board, notation);
        QString word = move;
        playMove(side, word, squareVector, board, notation);
        if (QString::fromLatin1(move.toLatin1()) == move)
            bytesAgree = bytesAgree && played != word.isEmpty() && bytesPlayed == squareVector;
        return word;
    }
    QString fen() const { return squaresToFen(squareVector, board, notation.piecesList); }
};

// The move between two positions, loaded the way the History window does.
QString moveBetween(QString before, QString after, Board board, const Notation& notation) {
    SquareVector squareVector{};
    fenToSlot(0, before, squareVector, board, notation.piecesList);
    fenToSlot(1, after, squareVector, board, notation.piecesList);
    QString m = QStringLiteral("junk");
    writeMove(0, m, squareVector, board, notation);
    return m;
}

// A word played on a board 8 rows high; `after` null: the board is unchanged.
struct ReadCase {
    const char *name, *fen;
    int side;
    const char *word, *result, *after;
    int columns = 8, letters = 0; // letters: the place in kNotations
};

const ReadCase kReads[] = {
    // Two knights reach d7: without a file the search order picks f6.
    {"Nd7 by order", kKnights, 1, "Nd7", "ok", "1n2k3/3n4/8/8/8/8/8/4K3"},
    {"Nbd7 by file", kKnights, 1, "Nbd7", "ok", "4k3/3n4/5n2/8/8/8/8/4K3"},
    // A rook of the wrong rank does not hide the one behind it; a full
    // square as mask gives its file alone.
    {"R1a3 behind a2", "4k3/8/8/8/8/8/R7/R3K3", 0, "R1a3", "ok", "4k3/8/8/8/8/R7/R7/4K3"},
    {"e8=Q+", kPawns, 0, "e8=Q+", "ok", "3rQ3/8/8/8/8/8/4p3/5R2"},
    {"exf1=N black", kPawns, 1, "exf1=N", "ok", "3r4/4P3/8/8/8/8/8/5n2"},
    // En passant: the pawn beside goes before the source is sought, even
    // when no pawn can make the move.
    {"exd6ep", kPassant, 0, "exd6ep", "ok", "4k3/8/3P4/8/4pP2/8/8/4K3"},
    {"cxd6 finds none", kPassant, 0, "cxd6", "", "4k3/8/8/4P3/4pP2/8/8/4K3"},
    // No rule of chess: neither the pawn's path nor the target is looked at.
    {"blocked first step", "4k3/8/8/8/8/4n3/4P3/4K3", 0, "e4", "ok", "4k3/8/8/8/4P3/4n3/8/4K3"},
    {"own piece, marks dropped", kStart, 0, "Ke2!?", "ok",
     "rnbqkbnr/pppppppp/8/8/8/8/PPPPKPPP/RNBQ1BNR"},
    // Castling gives the word back; the four squares are written on any
    // board, long from the left corner, short from the right.
    {"O-O White", kCastles, 0, "O-O", "O-O", "r3k2r/8/8/8/8/8/8/R4RK1"},
    {"0-0-0 White", kCastles, 0, "0-0-0", "0-0-0", "r3k2r/8/8/8/8/8/8/2KR3R"},
    {"10 columns O-O-O", kWide, 0, "O-O-O", "O-O-O", "r4k3r/82/82/82/82/82/82/2KR1K3R", 10},
    // Ranks are counted for eight rows: rank 7 is the second row.
    {"10 columns Rj7", "9k/82/82/82/82/82/82/9R", 0, "Rj7", "ok", "81k/81R/82/82/82/82/82/82", 10},
    // The style's letters name the pieces, the English ones tell their kind.
    {"Nf3 in German", kGerman, 0, "Nf3", "", nullptr, 8, 1},
    {"Sf3", kGerman, 0, "Sf3", "ok", "tsldklst/pppppppp/8/8/8/5S2/PPPPPPPP/TSLDKL1T", 8, 1},
    {"O-O in German", kGerman, 0, "O-O", "O-O", "tsldklst/pppppppp/8/8/8/8/PPPPPPPP/TSLD1TK1", 8,
     1},
    // Without a "P" in the list the default pawn letter names nothing.
    {"no pawn letter", "rnbqkbnr/oooooooo/8/8/8/8/OOOOOOOO/RNBQKBNR", 0, "e4", "", nullptr, 8, 2},
    // Letters that the English notation does not know can't be moved.
    {"fairy piece", "8/8/8/8/8/8/8/A7", 0, "Ab1", "", nullptr},
    // Of two pieces that reach the target, a pinned one gives way to the
    // next in the order; a lone pinned piece, or one with no king, moves.
    {"pinned knight on a file", kPinned, 1, "Nd7", "ok", "4k3/3n4/8/4n3/8/8/8/4R2K"},
    // The pin goes by the kinds, not the letters: T rook, L bishop, and the
    // king the list's last letter.
    {"pinned rook on a diagonal", "3T3k/8/8/6l1/8/4T3/8/2K5", 0, "Td3", "ok",
     "7k/8/8/6l1/8/3TT3/8/2K5", 8, 1},
    {"bishop pinned along a rank", "5b2/8/8/k1b4R/8/8/8/7K", 1, "Bd6", "ok",
     "8/8/3b4/k1b4R/8/8/8/7K"},
    {"no king on the board", "8/8/1n6/4n3/8/8/8/4R2K", 1, "Nd7", "ok", "8/3n4/1n6/8/8/8/8/4R2K"},
    {"lone pinned knight", "4k3/8/8/4n3/8/8/8/4R2K", 1, "Nd7", "ok", "4k3/3n4/8/8/8/8/8/4R2K"},
    // The pin along the first rank runs past the eighth column.
    {"10 columns pinned knight", "82/82/82/82/82/2N7/82/r5N2K", 0, "Ne2", "ok",
     "82/82/82/82/82/82/4N5/r5N2K", 10},
    // Results, annotations and bare letters are no moves.
    {"empty word", kStart, 0, "", "", nullptr},
};

// The move from `before` to `after` on a board 8 rows high.
struct WriteCase {
    const char *name, *before, *after, *move;
    int letters = 0, columns = 8;
};

const WriteCase kWrites[] = {
    {"rooks on a rank", "4k3/8/8/8/8/8/8/R6R", "4k3/8/8/8/8/8/8/3R3R", "Rad1"},
    {"knights on a file", "4k3/8/8/6N1/8/8/8/6N1", "4k3/8/8/6N1/8/5N2/8/8", "N1f3"},
    {"three queens", "4k3/8/8/8/Q7/8/8/Q2Q4", "4k3/8/8/8/Q2Q4/8/8/3Q4", "Qa1d4"},
    {"twin behind the mover", "4k3/8/8/8/8/8/R7/R7", "4k3/8/8/R7/8/8/8/R7", "R2a5"},
    {"twin blocked", "4k3/8/8/8/8/8/8/R1n4R", "4k3/8/8/8/8/8/8/R1n1R3", "Re1"},
    {"black promotion", "8/8/8/8/8/8/4p3/8", "8/8/8/8/8/8/8/4n3", "e1=N"},
    {"en passant", "4k3/8/8/3pP3/8/8/8/4K3", "4k3/8/3P4/8/8/8/8/4K3", "exd6"},
    {"O-O", kCastles, "r3k2r/8/8/8/8/8/8/R4RK1", "O-O"},
    {"O-O-O black", kCastles, "2kr3r/8/8/8/8/8/8/R3K2R", "O-O-O"},
    {"style letters, promotion", "3t4/4P3/8/8/8/8/8/8", "3D4/8/8/8/8/8/8/8", "exd8=D", 1},
    // Ranks count from the width: a10 is the top left square.
    {"10 columns R0a7", "R9/82/82/82/82/82/82/R9", "82/82/82/R9/82/82/82/R9", "R0a7", 0, 10},
};

} // namespace

class TstMoves : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void reading_data() {
        QTest::addColumn<int>("index");
        for (int n = 0; n < int(std::size(kReads)); ++n)
            QTest::newRow(kReads[n].name) << n;
    }
    void reading() {
        QFETCH(int, index);
        const ReadCase& c = kReads[index];
        Table table(c.fen, Board{8, c.columns}, c.letters);
        QCOMPARE(table.play(c.side, QString::fromUtf8(c.word)), QString::fromLatin1(c.result));
        QCOMPARE(table.fen(), QString::fromLatin1(c.after ? c.after : c.fen));
        QVERIFY(table.bytesAgree);
    }

    void writing_data() {
        QTest::addColumn<int>("index");
        for (int n = 0; n < int(std::size(kWrites)); ++n)
            QTest::newRow(kWrites[n].name) << n;
    }
    void writing() {
        QFETCH(int, index);
        const WriteCase& c = kWrites[index];
        QCOMPARE(moveBetween(c.before, c.after, Board{8, c.columns}, kNotations[c.letters]),
                 QString::fromLatin1(c.move));
    }

    void fenToSlotCutsTheCounter() {
        SquareVector squareVector{};
        QString text = QStringLiteral("(2x1)K7/1k6/8/8/8/8/8/8 b - - 0 1");
        fenToSlot(1, text, squareVector, Board{8, 8}, kPieces);
        // The counter is cut from the text itself, as the caller reads it
        // again; the side to move lands behind the board.
        QCOMPARE(text, QStringLiteral("K7/1k6/8/8/8/8/8/8 b - - 0 1"));
        QCOMPARE(int(squareVector[64].wanted), 5);
    }

    void roundTrip_data() {
        QTest::addColumn<QString>("moves");
        QTest::addColumn<QString>("final");
        QTest::newRow("Paris 1858")
            << "e4 e5 Nf3 d6 d4 Bg4 dxe5 Bxf3 Qxf3 dxe5 Bc4 Nf6 Qb3 Qe7 Nc3 c6 Bg5 b5 Nxb5 "
               "cxb5 Bxb5+ Nbd7 O-O-O Rd8 Rxd7 Rxd7 Rd1 Qe6 Bxd7+ Nxd7 Qb8+ Nxb8 Rd8#"
            << "1n1Rkb1r/p4ppp/4q3/4p1B1/4P3/8/PPP2PPP/2K5";
        QTest::newRow("London 1912")
            << "d4 e6 Nf3 f5 Nc3 Nf6 Bg5 Be7 Bxf6 Bxf6 e4 fxe4 Nxe4 b6 Ne5 O-O Bd3 Bb7 Qh5 "
               "Qe7 Qxh7+ Kxh7 Nxf6+ Kh6 Neg4+ Kg5 h4+ Kf4 g3+ Kf3 Be2+ Kg2 Rh2+ Kg1 Kd2#"
            << "rn3r2/pbppq1p1/1p2pN2/8/3P2NP/6P1/PPPKBP1R/R5k1";
    }
    void roundTrip() {
        // Each move is played on the board, and the writer must give it back
        // from the two positions, as the History window will.
        QFETCH(QString, moves);
        QFETCH(QString, final);
        Table game(kStart);
        SquareVector history{};
        QString first = game.fen();
        fenToSlot(0, first, history, game.board, kPieces);
        for (int ply = 0; const QString& san : moves.split(QLatin1Char(' '))) {
            QVERIFY2(!game.play(ply++ % 2, san).isEmpty(), qPrintable(san));
            QString position = game.fen();
            fenToSlot(ply % 2, position, history, game.board, kPieces);
            QString written;
            writeMove((ply + 1) % 2, written, history, game.board, game.notation);
            QCOMPARE(written, QString(san).remove(QRegularExpression(QStringLiteral("[+#!?]"))));
        }
        QCOMPARE(game.fen(), final);
        QVERIFY(game.bytesAgree);
    }
};

QTEST_GUILESS_MAIN(TstMoves)
#include "tst_moves.moc"
