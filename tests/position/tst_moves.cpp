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
    {"pPnNbBqQkK", "pPnNbBqQkK"},     // no rooks
};
const char* const kStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR";
const char* const kGerman = "tsldklst/pppppppp/8/8/8/8/PPPPPPPP/TSLDKLST";
const char* const kPassant = "4k3/8/8/3pP3/4pP2/8/8/4K3";
const char* const kCastles = "r3k2r/8/8/8/8/8/8/R3K2R";

// One board in the wanted slot, as the book scanner keeps it while it plays;
// the scanner's byte entry point is played alongside on a copy.
struct Table {
    SquareVector squareVector{};
    Board board;
    Notation notation;
    bool bytesAgree = true;

    explicit Table(QString fen, Board b = {8, 8}, int letters = 0)
        : board(b), notation(kNotations[letters]) {
        fenToSlot(1, fen, squareVector, board, notation.piecesList);
    }
    QString play(int side, QString word) {
        SquareVector bytesPlayed = squareVector;
        const bool played = playMove(side, word.toLatin1(), bytesPlayed, board, notation);
        playMove(side, word, squareVector, board, notation);
        bytesAgree = bytesAgree && played != word.isEmpty() && bytesPlayed == squareVector;
        return word;
    }
    QString fen() const { return squaresToFen(squareVector, board, notation.piecesList); }
};

// A word played on a board 8 rows high; `after` null: the board is unchanged.
struct ReadCase {
    const char *name, *fen;
    int side;
    const char *word, *result, *after;
    int columns = 8, letters = 0; // letters: the place in kNotations
};

// No rule of chess is checked; of two pieces that reach the target a pinned
// one gives way to the next in the search order.
const ReadCase kReads[] = {
    {"two knights: search order", "1n2k3/8/5n2/8/8/8/8/4K3", 1, "Nd7", "ok",
     "1n2k3/3n4/8/8/8/8/8/4K3"},
    {"rank mask passes the wrong rank", "4k3/8/8/8/8/8/R7/R3K3", 0, "R1a3", "ok",
     "4k3/8/8/8/8/R7/R7/4K3"},
    {"black promotes on a capture", "3r4/4P3/8/8/8/8/4p3/5R2", 1, "exf1=N", "ok",
     "3r4/4P3/8/8/8/8/8/5n2"},
    {"en passant", kPassant, 0, "exd6ep", "ok", "4k3/8/3P4/8/4pP2/8/8/4K3"},
    {"en passant pawn goes first", kPassant, 0, "cxd6", "", "4k3/8/8/4P3/4pP2/8/8/4K3"},
    {"en passant in capitals", kPassant, 0, "exd6EP", "ok", "4k3/8/3P4/8/4pP2/8/8/4K3"},
    {"king along the rank", kPassant, 0, "Kd1", "ok", "4k3/8/8/3pP3/4pP2/8/8/3K4"},
    {"blocked first step", "4k3/8/8/8/8/4n3/4P3/4K3", 0, "e4", "ok", "4k3/8/8/8/4P3/4n3/8/4K3"},
    {"own piece, marks dropped", kStart, 0, "Ke2!?", "ok",
     "rnbqkbnr/pppppppp/8/8/8/8/PPPPKPPP/RNBQ1BNR"},
    {"castling with zeros", kCastles, 0, "0-0-0", "0-0-0", "r3k2r/8/8/8/8/8/8/2KR3R"},
    {"10 columns O-O-O", "r4k3r/82/82/82/82/82/82/R4K3R", 0, "O-O-O", "O-O-O",
     "r4k3r/82/82/82/82/82/82/2KR1K3R", 10},
    {"10 columns: rank 7 is row 2", "9k/82/82/82/82/82/82/9R", 0, "Rj7", "ok",
     "81k/81R/82/82/82/82/82/82", 10},
    {"English letter in German", kGerman, 0, "Nf3", "", nullptr, 8, 1},
    {"Sf3", kGerman, 0, "Sf3", "ok", "tsldklst/pppppppp/8/8/8/5S2/PPPPPPPP/TSLDKL1T", 8, 1},
    {"O-O in German", kGerman, 0, "O-O", "O-O", "tsldklst/pppppppp/8/8/8/8/PPPPPPPP/TSLD1TK1", 8,
     1},
    {"no pawn letter", "rnbqkbnr/oooooooo/8/8/8/8/OOOOOOOO/RNBQKBNR", 0, "e4", "", nullptr, 8, 2},
    {"fairy piece", "8/8/8/8/8/8/8/A7", 0, "Ab1", "", nullptr},
    {"pinned knight on a file", "4k3/8/1n6/4n3/8/8/8/4R2K", 1, "Nd7", "ok",
     "4k3/3n4/8/4n3/8/8/8/4R2K"},
    {"pinned rook on a diagonal, German", "3T3k/8/8/6l1/8/4T3/8/2K5", 0, "Td3", "ok",
     "7k/8/8/6l1/8/3TT3/8/2K5", 8, 1},
    {"bishop pinned along a rank", "5b2/8/8/k1b4R/8/8/8/7K", 1, "Bd6", "ok",
     "8/8/3b4/k1b4R/8/8/8/7K"},
    {"pin without a king", "8/8/1n6/4n3/8/8/8/4R2K", 1, "Nd7", "ok", "8/3n4/1n6/8/8/8/8/4R2K"},
    {"lone pinned knight", "4k3/8/8/4n3/8/8/8/4R2K", 1, "Nd7", "ok", "4k3/3n4/8/8/8/8/8/4R2K"},
    {"pinned down the diagonal", "k5n1/8/2n5/8/4B3/8/8/7K", 1, "Ne7", "ok",
     "k7/4n3/2n5/8/4B3/8/8/7K"},
    {"10 columns: pin past column 8", "82/82/82/82/82/2N7/82/r5N2K", 0, "Ne2", "ok",
     "82/82/82/82/82/82/4N5/r5N2K", 10},
    {"empty word", kStart, 0, "", "", nullptr},
    {"a-file pawn", kStart, 0, "a4", "ok", "rnbqkbnr/pppppppp/8/8/P7/8/1PPPPPPP/RNBQKBNR"},
    {"castling without rooks", "4k3/8/8/8/8/8/8/4K3", 0, "O-O", "", nullptr, 8, 3},
    {"castling off a narrow board", "r1k/3/3/3/3/3/3/3", 1, "O-O", "", nullptr, 3},
};

// The move from `before` to `after` on a board 8 rows high.
struct WriteCase {
    const char *name, *before, *after, *move;
    int letters = 0, columns = 8;
};

const WriteCase kWrites[] = {
    {"knights on a file", "4k3/8/8/6N1/8/8/8/6N1", "4k3/8/8/6N1/8/5N2/8/8", "N1f3"},
    {"three queens", "4k3/8/8/8/Q7/8/8/Q2Q4", "4k3/8/8/8/Q2Q4/8/8/3Q4", "Qa1d4"},
    {"twin behind the mover", "4k3/8/8/8/8/8/R7/R7", "4k3/8/8/R7/8/8/8/R7", "R2a5"},
    {"twin blocked", "4k3/8/8/8/8/8/8/R1n4R", "4k3/8/8/8/8/8/8/R1n1R3", "Re1"},
    {"twins on the top row", "R6R/8/8/8/8/8/8/4k2K", "3R3R/8/8/8/8/8/8/4k2K", "Rad8"},
    {"twin down the other diagonal", "4k3/8/8/8/8/8/8/B5B1", "4k3/8/8/8/3B4/8/8/6B1", "Bad4"},
    {"black promotion", "8/8/8/8/8/8/4p3/8", "8/8/8/8/8/8/8/4n3", "e1=N"},
    {"en passant", "4k3/8/8/3pP3/8/8/8/4K3", "4k3/8/3P4/8/8/8/8/4K3", "exd6"},
    {"O-O-O black", kCastles, "2kr3r/8/8/8/8/8/8/R3K2R", "O-O-O"},
    {"style letters, promotion", "3t4/4P3/8/8/8/8/8/8", "3D4/8/8/8/8/8/8/8", "exd8=D", 1},
    {"10 columns: a10 on top", "R9/82/82/82/82/82/82/R9", "82/82/82/R9/82/82/82/R9", "R0a7", 0, 10},
};

template <typename Case, size_t N> void namedRows(const Case (&cases)[N]) {
    QTest::addColumn<int>("index");
    for (size_t n = 0; n < N; ++n)
        QTest::newRow(cases[n].name) << int(n);
}

} // namespace

class TstMoves : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void reading_data() { namedRows(kReads); }
    void reading() {
        QFETCH(int, index);
        const ReadCase& c = kReads[index];
        Table table(c.fen, Board{8, c.columns}, c.letters);
        QCOMPARE(table.play(c.side, QString::fromUtf8(c.word)), QString::fromLatin1(c.result));
        QCOMPARE(table.fen(), QString::fromLatin1(c.after ? c.after : c.fen));
        QVERIFY(table.bytesAgree);
    }

    void writing_data() { namedRows(kWrites); }
    void writing() {
        QFETCH(int, index);
        const WriteCase& c = kWrites[index];
        Table table(c.after, Board{8, c.columns}, c.letters);
        QString before = c.before, move = QStringLiteral("junk");
        fenToSlot(0, before, table.squareVector, table.board, table.notation.piecesList);
        writeMove(0, move, table.squareVector, table.board, table.notation);
        QCOMPARE(move, QString::fromLatin1(c.move));
    }

    // The counter is cut from the text itself, as the caller reads it again;
    // the side to move lands behind the board.
    void fenToSlotCutsTheCounter() {
        SquareVector squareVector{};
        QString text = QStringLiteral("(2x1)K7/1k6/8/8/8/8/8/7R b - - 0 1");
        fenToSlot(1, text, squareVector, Board{8, 8}, kPieces);
        QCOMPARE(text, QStringLiteral("K7/1k6/8/8/8/8/8/7R b - - 0 1"));
        QCOMPARE(int(squareVector[64].wanted), 5);
        QCOMPARE(dropCounterPrefix(QStringLiteral(")K7")), "K7"); // up to the first ")"
        QString shorter = QStringLiteral("K"); // the squares behind the text are emptied
        fenToSlot(1, shorter, squareVector, Board{8, 8}, kPieces);
        QCOMPARE(int(squareVector[63].wanted), 0);
    }

    // Each move is played, and the writer gives it back from the two
    // positions, as the History window will.
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
