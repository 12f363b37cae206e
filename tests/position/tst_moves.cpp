#include "position/move_reader.h"
#include "position/move_writer.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

using namespace marlith;

namespace {

const QString kPieces = QStringLiteral("pPnNbBrRqQkK");
// Knight S, bishop L, rook T, queen D, in step with the English letters.
const QString kGermanPieces = QStringLiteral("pPsSlLtTdDkK");
const QString kStart = QStringLiteral("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR");

// One board in the wanted slot, as the book scanner keeps it while it plays.
struct Table {
    VetArray vet{};
    Board board;
    Notation notation{kPieces, kPieces};

    explicit Table(const QString& fen, Board b = {8, 8}, Notation n = {kPieces, kPieces})
        : board(b), notation(n) {
        QString text = fen;
        Build2(1, text, vet, board, notation.piecesList);
    }
    QString play(int side, const QString& move) {
        QString word = move;
        PlayMove(side, word, vet, board, notation);
        return word;
    }
    QString fen() const { return VetToFEN(vet, board, notation.piecesList); }
};

// The move between two positions, loaded the way the History window does.
QString MoveBetween(const QString& before, const QString& after, Board board = {8, 8},
                    Notation notation = {kPieces, kPieces}) {
    VetArray vet{};
    QString first = before;
    QString second = after;
    Build2(0, first, vet, board, notation.piecesList);
    Build2(1, second, vet, board, notation.piecesList);
    QString m = QStringLiteral("junk");
    SetMove(0, m, vet, board, notation);
    return m;
}

} // namespace

class TstMoves : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void reading_data() {
        QTest::addColumn<QString>("fen");
        QTest::addColumn<int>("side");
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("result");
        QTest::addColumn<QString>("after");

        // Two knights reach d7: without a file the search order picks f6.
        const QString knights = QStringLiteral("1n2k3/8/5n2/8/8/8/8/4K3");
        QTest::newRow("Nd7 by order") << knights << 1 << "Nd7"
                                      << "ok"
                                      << "1n2k3/3n4/8/8/8/8/8/4K3";
        QTest::newRow("Nbd7 by file") << knights << 1 << "Nbd7"
                                      << "ok"
                                      << "4k3/3n4/5n2/8/8/8/8/4K3";

        // A rook of the wrong rank does not hide the one behind it.
        const QString rooks = QStringLiteral("4k3/8/8/8/8/8/R7/R3K3");
        QTest::newRow("Ra3 nearest") << rooks << 0 << "Ra3"
                                     << "ok"
                                     << "4k3/8/8/8/8/R7/8/R3K3";
        QTest::newRow("R1a3 behind a2") << rooks << 0 << "R1a3"
                                        << "ok"
                                        << "4k3/8/8/8/8/R7/R7/4K3";
        QTest::newRow("R5a3 upwards") << "4k3/8/8/R7/8/8/8/R3K3" << 0 << "R5a3"
                                      << "ok"
                                      << "4k3/8/8/8/8/R7/8/R3K3";

        // A full square as mask gives its file alone.
        const QString queens = QStringLiteral("4k3/8/8/8/1Q5Q/8/8/8");
        QTest::newRow("Qe1 by order") << queens << 0 << "Qe1"
                                      << "ok"
                                      << "4k3/8/8/8/7Q/8/8/4Q3";
        QTest::newRow("Qh4e1") << queens << 0 << "Qh4e1"
                               << "ok"
                               << "4k3/8/8/8/1Q6/8/8/4Q3";
        QTest::newRow("Qh1e1 rank not read") << queens << 0 << "Qh1e1"
                                             << "ok"
                                             << "4k3/8/8/8/1Q6/8/8/4Q3";

        const QString pawns = QStringLiteral("3r4/4P3/8/8/8/8/4p3/5R2");
        QTest::newRow("e8=Q+ White") << pawns << 0 << "e8=Q+"
                                     << "ok"
                                     << "3rQ3/8/8/8/8/8/4p3/5R2";
        QTest::newRow("e1=Q Black") << pawns << 1 << "e1=Q"
                                    << "ok"
                                    << "3r4/4P3/8/8/8/8/8/4qR2";
        QTest::newRow("exd8=Q") << pawns << 0 << "exd8=Q"
                                << "ok"
                                << "3Q4/8/8/8/8/8/4p3/5R2";
        QTest::newRow("exf1=N black") << pawns << 1 << "exf1=N"
                                      << "ok"
                                      << "3r4/4P3/8/8/8/8/8/5n2";
        QTest::newRow("e8Q needs =") << pawns << 0 << "e8Q"
                                     << "" << pawns;
        QTest::newRow("promotion letter unknown") << pawns << 0 << "e8=Z"
                                                  << "ok"
                                                  << "3r4/8/8/8/8/8/4p3/5R2";

        // En passant: the pawn beside goes before the source is sought.
        const QString passant = QStringLiteral("4k3/8/8/3pP3/4pP2/8/8/4K3");
        QTest::newRow("exd6") << passant << 0 << "exd6"
                              << "ok"
                              << "4k3/8/3P4/8/4pP2/8/8/4K3";
        QTest::newRow("exd6ep") << passant << 0 << "exd6ep"
                                << "ok"
                                << "4k3/8/3P4/8/4pP2/8/8/4K3";
        QTest::newRow("exf3 black") << passant << 1 << "exf3"
                                    << "ok"
                                    << "4k3/8/8/3pP3/8/5p2/8/4K3";
        QTest::newRow("e of e.p.") << passant << 0 << "e"
                                   << "" << passant;
        QTest::newRow("p of e.p.") << passant << 0 << "p"
                                   << "" << passant;
        // With no pawn to make it, the one taken is gone all the same.
        QTest::newRow("cxd6 finds none") << passant << 0 << "cxd6"
                                         << ""
                                         << "4k3/8/8/4P3/4pP2/8/8/4K3";

        // The pawn's steps are not tied to the kind of move.
        QTest::newRow("blocked first step") << "4k3/8/8/8/8/4n3/4P3/4K3" << 0 << "e4"
                                            << "ok"
                                            << "4k3/8/8/8/4P3/4n3/8/4K3";
        QTest::newRow("diagonal without capture") << "4k3/8/8/8/8/3P4/8/4K3" << 0 << "e4"
                                                  << "ok"
                                                  << "4k3/8/8/8/4P3/8/8/4K3";
        QTest::newRow("marks dropped") << kStart << 0 << "Nf3!?"
                                       << "ok"
                                       << "rnbqkbnr/pppppppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R";
        QTest::newRow("black knight") << kStart << 1 << "Nc6"
                                      << "ok"
                                      << "r1bqkbnr/pppppppp/2n5/8/8/8/PPPPPPPP/RNBQKBNR";
        // Nor is what stands on the target.
        QTest::newRow("onto an own piece") << kStart << 0 << "Ke2"
                                           << "ok"
                                           << "rnbqkbnr/pppppppp/8/8/8/8/PPPPKPPP/RNBQ1BNR";

        // Words that are no moves leave the board as it was.
        for (const char* word : {"", "-", "0-1", "1-0", "1/2-1/2", "*", "$14", "=", "e", "Z4"})
            QTest::newRow(qPrintable(QStringLiteral("no move '%1'").arg(QLatin1String(word))))
                << kStart << 0 << QString::fromLatin1(word) << "" << kStart;
        QTest::newRow("target out of vector")
            << kStart << 0 << QStringLiteral("N%1%2").arg(QChar(0x4e00)).arg(1) << "" << kStart;
    }

    void reading() {
        QFETCH(QString, fen);
        QFETCH(int, side);
        QFETCH(QString, word);
        QFETCH(QString, result);
        QFETCH(QString, after);
        Table table(fen);
        QCOMPARE(table.play(side, word), result);
        QCOMPARE(table.fen(), after);
    }

    void castling_data() {
        QTest::addColumn<int>("columns");
        QTest::addColumn<QString>("fen");
        QTest::addColumn<int>("side");
        QTest::addColumn<QString>("word");
        QTest::addColumn<QString>("after");

        const QString castles = QStringLiteral("r3k2r/8/8/8/8/8/8/R3K2R");
        QTest::newRow("O-O White") << 8 << castles << 0 << "O-O"
                                   << "r3k2r/8/8/8/8/8/8/R4RK1";
        QTest::newRow("0-0-0 White") << 8 << castles << 0 << "0-0-0"
                                     << "r3k2r/8/8/8/8/8/8/2KR3R";
        QTest::newRow("O-O+ Black") << 8 << castles << 1 << "O-O+"
                                    << "r4rk1/8/8/8/8/8/8/R3K2R";
        QTest::newRow("O-O-O# Black") << 8 << castles << 1 << "O-O-O#"
                                      << "2kr3r/8/8/8/8/8/8/R3K2R";
        // Only the word is read: the four squares are written on any board.
        QTest::newRow("no king") << 8 << "8/8/8/8/8/8/8/8" << 0 << "O-O-O+"
                                 << "8/8/8/8/8/8/8/2KR4";
        QTest::newRow("no king Black") << 8 << "8/8/8/8/8/8/8/8" << 1 << "0-0"
                                       << "5rk1/8/8/8/8/8/8/8";

        // Long from the left corner, short from the right, on any width.
        const QString wide = QStringLiteral("r4k3r/82/82/82/82/82/82/R4K3R");
        QTest::newRow("10 columns O-O-O") << 10 << wide << 0 << "O-O-O"
                                          << "r4k3r/82/82/82/82/82/82/2KR1K3R";
        QTest::newRow("10 columns O-O") << 10 << wide << 0 << "O-O"
                                        << "r4k3r/82/82/82/82/82/82/R4K1RK1";
        QTest::newRow("10 columns O-O-O Black") << 10 << wide << 1 << "O-O-O"
                                                << "2kr1k3r/82/82/82/82/82/82/R4K3R";
        QTest::newRow("10 columns O-O Black") << 10 << wide << 1 << "O-O"
                                              << "r4k1rk1/82/82/82/82/82/82/R4K3R";
    }

    void castling() {
        QFETCH(int, columns);
        QFETCH(QString, fen);
        QFETCH(int, side);
        QFETCH(QString, word);
        QFETCH(QString, after);
        Table table(fen, Board{8, columns});
        QCOMPARE(table.play(side, word), word);
        QCOMPARE(table.fen(), after);
    }

    void tenColumnsStillEightRanks() {
        // Rank 8 is the top row, rank 1 the eighth, whatever the width.
        Table table(QStringLiteral("9k/82/82/82/82/82/82/9R"), Board{8, 10});
        QCOMPARE(table.play(0, QStringLiteral("Rj7")), QStringLiteral("ok"));
        QCOMPARE(table.fen(), QStringLiteral("81k/81R/82/82/82/82/82/82"));
        QCOMPARE(table.play(1, QStringLiteral("Kxj7")), QStringLiteral("ok"));
        QCOMPARE(table.fen(), QStringLiteral("82/81k/82/82/82/82/82/82"));
    }

    void castlingPastTheVector() {
        // One column of 400 rows: White's long castling runs past square 400
        // after its first square is written, and stops there.
        Table table(QStringLiteral("K"), Board{400, 1});
        table.vet[399][1] = 12;
        QCOMPARE(table.play(0, QStringLiteral("O-O-O")), QString());
        QCOMPARE(int(table.vet[399][1]), 0);
        QCOMPARE(int(table.vet[0][1]), 12);
    }

    void otherLanguage() {
        const Notation german{kGermanPieces, kPieces};
        const QString start = QStringLiteral("tsldklst/pppppppp/8/8/8/8/PPPPPPPP/TSLDKLST");
        Table table(start, Board{8, 8}, german);
        QCOMPARE(table.play(0, QStringLiteral("Nf3")), QString());
        QCOMPARE(table.fen(), start);
        QCOMPARE(table.play(0, QStringLiteral("Sf3")), QStringLiteral("ok"));
        QCOMPARE(table.play(1, QStringLiteral("Sc6")), QStringLiteral("ok"));
        QCOMPARE(table.play(0, QStringLiteral("e4")), QStringLiteral("ok"));
        QCOMPARE(table.play(1, QStringLiteral("d5")), QStringLiteral("ok"));
        QCOMPARE(table.play(0, QStringLiteral("Lb5")), QStringLiteral("ok"));
        QCOMPARE(table.play(1, QStringLiteral("Dd7")), QStringLiteral("ok"));
        QCOMPARE(table.play(0, QStringLiteral("O-O")), QStringLiteral("O-O"));
        QCOMPARE(table.fen(),
                 QStringLiteral("t1l1klst/pppdpppp/2s5/1L1p4/4P3/5S2/PPPP1PPP/TSLD1TK1"));

        // Without a "P" in the list the default pawn letter names nothing.
        Table noPawn(QStringLiteral("rnbqkbnr/oooooooo/8/8/8/8/OOOOOOOO/RNBQKBNR"), Board{8, 8},
                     Notation{QStringLiteral("oOnNbBrRqQkK"), kPieces});
        QCOMPARE(noPawn.play(0, QStringLiteral("e4")), QString());
        QCOMPARE(noPawn.play(0, QStringLiteral("Nf3")), QStringLiteral("ok"));

        // Letters that the English notation does not know can't be moved.
        Table fairy(QStringLiteral("8/8/8/8/8/8/8/A7"), Board{8, 8},
                    Notation{kPieces + QStringLiteral("aA"), kPieces + QStringLiteral("aA")});
        QCOMPARE(fairy.play(0, QStringLiteral("Ab1")), QString());
    }

    void writing_data() {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<QString>("move");

        QTest::newRow("pawn push") << kStart << "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR"
                                   << "e4";
        QTest::newRow("black knight") << kStart << "r1bqkbnr/pppppppp/2n5/8/8/8/PPPPPPPP/RNBQKBNR"
                                      << "Nc6";
        QTest::newRow("king takes") << "8/8/8/8/8/8/4p3/4K3"
                                    << "8/8/8/8/8/8/4K3/8"
                                    << "Kxe2";
        QTest::newRow("knights by file") << "1n2k3/8/5n2/8/8/8/8/4K3"
                                         << "4k3/3n4/5n2/8/8/8/8/4K3"
                                         << "Nbd7";
        QTest::newRow("rooks on a rank") << "4k3/8/8/8/8/8/8/R6R"
                                         << "4k3/8/8/8/8/8/8/3R3R"
                                         << "Rad1";
        QTest::newRow("knights on a file") << "4k3/8/8/6N1/8/8/8/6N1"
                                           << "4k3/8/8/6N1/8/5N2/8/8"
                                           << "N1f3";
        QTest::newRow("three queens") << "4k3/8/8/8/Q7/8/8/Q2Q4"
                                      << "4k3/8/8/8/Q2Q4/8/8/3Q4"
                                      << "Qa1d4";
        QTest::newRow("twin behind the mover") << "4k3/8/8/8/8/8/R7/R7"
                                               << "4k3/8/8/R7/8/8/8/R7"
                                               << "R2a5";
        QTest::newRow("twin blocked") << "4k3/8/8/8/8/8/8/R1n4R"
                                      << "4k3/8/8/8/8/8/8/R1n1R3"
                                      << "Re1";
        QTest::newRow("promotion with capture") << "3r4/4P3/8/8/8/8/8/8"
                                                << "3Q4/8/8/8/8/8/8/8"
                                                << "exd8=Q";
        QTest::newRow("black promotion") << "8/8/8/8/8/8/4p3/8"
                                         << "8/8/8/8/8/8/8/4n3"
                                         << "e1=N";
        QTest::newRow("en passant") << "4k3/8/8/3pP3/8/8/8/4K3"
                                    << "4k3/8/3P4/8/8/8/8/4K3"
                                    << "exd6";
        QTest::newRow("en passant black") << "4k3/8/8/8/4pP2/8/8/4K3"
                                          << "4k3/8/8/8/8/5p2/8/4K3"
                                          << "exf3";
        const QString castles = QStringLiteral("r3k2r/8/8/8/8/8/8/R3K2R");
        QTest::newRow("O-O") << castles << "r3k2r/8/8/8/8/8/8/R4RK1"
                             << "O-O";
        QTest::newRow("O-O-O") << castles << "r3k2r/8/8/8/8/8/8/2KR3R"
                               << "O-O-O";
        QTest::newRow("O-O black") << castles << "r4rk1/8/8/8/8/8/8/R3K2R"
                                   << "O-O";
        QTest::newRow("O-O-O black") << castles << "2kr3r/8/8/8/8/8/8/R3K2R"
                                     << "O-O-O";
        QTest::newRow("two filled, no corner") << "8/8/8/8/8/8/3PP3/8"
                                               << "8/8/8/8/3PP3/8/8/8"
                                               << "";
        // Positions not one move apart.
        QTest::newRow("no change, piece on a8") << kStart << kStart << "Rxa8";
        QTest::newRow("no change, a8 empty") << "8/8/8/8/8/8/8/K7"
                                             << "8/8/8/8/8/8/8/K7"
                                             << "";
        QTest::newRow("three filled") << kStart << "rnbqkbnr/pppppppp/8/8/3PPP2/8/PPP3PP/RNBQKBNR"
                                      << "";
        QTest::newRow("three emptied") << kStart << "rnbqkbnr/pppppppp/8/8/4P3/8/PPP3PP/RNBQKBNR"
                                       << "";
        QTest::newRow("fairy piece") << "8/8/8/8/8/8/8/A7"
                                     << "8/8/8/8/8/8/8/1A6"
                                     << "";
    }

    void writing() {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QFETCH(QString, move);
        const Notation fairy{kPieces + QStringLiteral("aA"), kPieces + QStringLiteral("aA")};
        QCOMPARE(MoveBetween(before, after, Board{8, 8}, fairy), move);
    }

    void writingInTheStyleLetters() {
        const Notation german{kGermanPieces, kPieces};
        QCOMPARE(MoveBetween(QStringLiteral("4k3/8/8/8/8/8/8/6S1"),
                             QStringLiteral("4k3/8/8/8/8/5S2/8/8"), Board{8, 8}, german),
                 QStringLiteral("Sf3"));
        QCOMPARE(MoveBetween(QStringLiteral("3t4/4P3/8/8/8/8/8/8"),
                             QStringLiteral("3D4/8/8/8/8/8/8/8"), Board{8, 8}, german),
                 QStringLiteral("exd8=D"));
        QCOMPARE(MoveBetween(QStringLiteral("8/8/8/8/8/8/8/T3K2T"),
                             QStringLiteral("8/8/8/8/8/8/8/T4TK1"), Board{8, 8}, german),
                 QStringLiteral("O-O"));
    }

    void writingOnOtherBoards() {
        // Ranks count from the width: on 10 columns the top row is rank 10.
        QCOMPARE(SquareName(0, 10), QStringLiteral("a10"));
        QCOMPARE(SquareName(79, 10), QStringLiteral("j3"));
        QCOMPARE(SquareName(63, 8), QStringLiteral("h1"));
        QCOMPARE(SquareName(5, 0), QString());
        const Board wide{8, 10};
        QCOMPARE(MoveBetween(QStringLiteral("R9/82/82/82/82/82/82/R9"),
                             QStringLiteral("82/82/82/R9/82/82/82/R9"), wide),
                 QStringLiteral("R0a7")); // the last character of "a10"
        QCOMPARE(MoveBetween(QStringLiteral("k9/82/82/82/82/82/82/R4K3R"),
                             QStringLiteral("k9/82/82/82/82/82/82/R4K1RK1"), wide),
                 QStringLiteral("O-O"));
        // The lower left corner is taken as (columns - 1) x rows, which is
        // that corner only on a square board.
        QCOMPARE(MoveBetween(QStringLiteral("k9/82/82/82/82/82/82/R4K3R"),
                             QStringLiteral("k9/82/82/82/82/82/82/2KR1K3R"), wide),
                 QString());
    }

    void build2() {
        VetArray vet{};
        vet[5][0] = 7;
        QString text = QStringLiteral("(2x1)K7/1k6/8/8/8/8/8/8 b - - 0 1");
        Build2(1, text, vet, Board{8, 8}, kPieces);
        QCOMPARE(text, QStringLiteral("K7/1k6/8/8/8/8/8/8 b - - 0 1"));
        QCOMPARE(int(vet[0][1]), 12);
        QCOMPARE(int(vet[9][1]), 11);
        QCOMPARE(int(vet[5][0]), 7); // the other slot is left alone
        // The side to move lands behind the board, where nobody looks.
        QCOMPARE(int(vet[64][1]), 5);
        QCOMPARE(VetToFEN(vet, Board{8, 8}, kPieces), QStringLiteral("K7/1k6/8/8/8/8/8/8"));

        // The rest of the board is emptied, in the slot asked for.
        vet[30][0] = 3;
        QString shortText = QStringLiteral("p");
        Build2(0, shortText, vet, Board{8, 8}, kPieces);
        QCOMPARE(int(vet[0][0]), 1);
        QCOMPARE(int(vet[30][0]), 0);
        QCOMPARE(int(vet[0][1]), 12);

        // A text of more than 401 squares ends at the end of the vector.
        vet[400][0] = 5;
        QString longText = QString(50, QLatin1Char('9')) + QStringLiteral("K");
        Build2(0, longText, vet, Board{20, 20}, kPieces);
        QCOMPARE(int(vet[400][0]), 0);

        QString ignored = QStringLiteral("K");
        Build2(2, ignored, vet, Board{8, 8}, kPieces); // no such slot: nothing written
        QCOMPARE(int(vet[0][0]), 0);
        QCOMPARE(int(vet[0][1]), 12);
    }

    void roundTrip_data() {
        QTest::addColumn<QString>("moves");
        QTest::addColumn<QString>("final");
        // Paris 1858, at the opera.
        QTest::newRow("Paris 1858")
            << "e4 e5 Nf3 d6 d4 Bg4 dxe5 Bxf3 Qxf3 dxe5 Bc4 Nf6 Qb3 Qe7 Nc3 c6 Bg5 b5 Nxb5 "
               "cxb5 Bxb5+ Nbd7 O-O-O Rd8 Rxd7 Rxd7 Rd1 Qe6 Bxd7+ Nxd7 Qb8+ Nxb8 Rd8#"
            << "1n1Rkb1r/p4ppp/4q3/4p1B1/4P3/8/PPP2PPP/2K5";
        // London 1851.
        QTest::newRow("London 1851")
            << "e4 e5 f4 exf4 Bc4 Qh4+ Kf1 b5 Bxb5 Nf6 Nf3 Qh6 d3 Nh5 Nh4 Qg5 Nf5 c6 g4 Nf6 "
               "Rg1 cxb5 h4 Qg6 h5 Qg5 Qf3 Ng8 Bxf4 Qf6 Nc3 Bc5 Nd5 Qxb2 Bd6 Bxg1 e5 Qxa1+ "
               "Ke2 Na6 Nxg7+ Kd8 Qf6+ Nxf6 Be7#"
            << "r1bk3r/p2pBpNp/n4n2/1p1NP2P/6P1/3P4/P1P1K3/q5b1";
        // London 1912: the king hunt.
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
        const Board board{8, 8};
        const Notation notation{kPieces, kPieces};
        Table game(kStart);
        VetArray history{};
        QString first = game.fen();
        Build2(0, first, history, board, kPieces);
        int side = 0;
        int ply = 0;
        for (const QString& san : moves.split(QLatin1Char(' '))) {
            ++ply;
            QVERIFY2(!game.play(side, san).isEmpty(), qPrintable(san));
            QString position = game.fen();
            Build2(ply % 2, position, history, board, kPieces);
            QString written;
            SetMove((ply + 1) % 2, written, history, board, notation);
            QString expected = san;
            expected.remove(QRegularExpression(QStringLiteral("[+#!?]")));
            QCOMPARE(written, expected);
            side = 1 - side;
        }
        QCOMPARE(game.fen(), final);
    }

    void noCrashOnAnyWord() {
        // Random words and boards of every shape, for the sanitizers.
        QRandomGenerator random(20240611);
        const QString alphabet =
            QStringLiteral("abcdefghijklmnopKQRBNPkqrbnp012345678 9=xX+#-!?Oep/");
        const QString fens[] = {kStart, QStringLiteral("r3k2r/8/8/8/8/8/8/R3K2R"),
                                QString(40, QLatin1Char('Q')), QString(40, QLatin1Char('p'))};
        for (int n = 0; n < 4000; ++n) {
            const int columns = random.bounded(0, 24);
            const int rows = random.bounded(0, 24);
            Table table(fens[n % 4], Board{rows, columns});
            QString word;
            const int length = random.bounded(0, 9);
            for (int c = 0; c < length; ++c)
                word += alphabet.at(random.bounded(alphabet.size()));
            if (n % 7 == 0) word += QChar(random.bounded(0x20, 0xffff));
            table.play(random.bounded(0, 3), word);
            QString m;
            SetMove(n % 2, m, table.vet, table.board, table.notation);
            for (const auto& square : table.vet)
                QVERIFY(square[1] >= 0 && square[1] <= 12);
        }
    }
};

QTEST_GUILESS_MAIN(TstMoves)
#include "tst_moves.moc"
