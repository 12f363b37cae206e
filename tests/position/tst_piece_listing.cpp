#include "position/move_writer.h"
#include "position/piece_listing.h"

#include <QTest>

using namespace marlith;

namespace {

const QString kPieces = QStringLiteral("pPnNbBrRqQkK");

PieceLists List(const QString& fen, const QString& dictionary,
                ListingMode mode = ListingMode::Dictionary, const QString& pieces = kPieces,
                const QString& english = kPieces, Board board = {8, 8}) {
    VetArray vet{};
    ResetVet(vet, board);
    Build(
        fen, vet, board, pieces, [](int, int) {}, nullptr);
    return FEN2ALG(vet, board, pieces, english, dictionary, mode);
}

} // namespace

class TstPieceListing : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void emptyBoardGivesEmptyLists() {
        for (const auto mode :
             {ListingMode::PiecesList, ListingMode::EnglishNotation, ListingMode::Dictionary}) {
            const PieceLists lists = List(QString(), QStringLiteral("&&K=wKing&&"), mode);
            QVERIFY(lists.white.isEmpty() && lists.black.isEmpty() && lists.neutral.isEmpty());
        }
    }

    // Kinds stand in the order first met from the top left; each new square
    // goes directly behind the name, so a kind's squares come out reversed.
    void namesInWalkOrderSquaresReversed() {
        const QString fen = QStringLiteral("4k3/8/8/8/8/8/5PPP/R3K3");
        const PieceLists dict = List(fen, QStringLiteral("&&"));
        QCOMPARE(dict.white, QStringLiteral("Ph2g2f2 Ra1 Ke1"));
        QCOMPARE(dict.black, QStringLiteral("Ke8"));
        QVERIFY(dict.neutral.isEmpty());
        const PieceLists english = List(fen, QString(), ListingMode::EnglishNotation);
        QCOMPARE(english.white, QStringLiteral("Ph2 g2 f2 Ra1 Ke1"));
    }

    // Mode 0 names the pieces by the style's letters, the others by English.
    void styleLettersAgainstEnglish() {
        const QString german = QStringLiteral("bBsSlLtTdDkK");
        const QString fen = QStringLiteral("8/8/8/8/8/8/8/S3K2s");
        const PieceLists own = List(fen, QString(), ListingMode::PiecesList, german, kPieces);
        QCOMPARE(own.white, QStringLiteral("Sa1 Ke1"));
        QCOMPARE(own.black, QStringLiteral("Sh1"));
        const PieceLists english =
            List(fen, QStringLiteral("&&N=wS&&"), ListingMode::Dictionary, german, kPieces);
        QCOMPARE(english.white, QStringLiteral("Sa1 Ke1"));
        QCOMPARE(english.black, QStringLiteral("Nh1"));
    }

    void pieceWithoutEntryKeepsItsLetter() {
        // Only the exact case matches: "q" has no entry, and stays black.
        const PieceLists lists =
            List(QStringLiteral("q7/8/8/8/8/8/8/7Q"), QStringLiteral("&&Q=wDame&&"));
        QCOMPARE(lists.white, QStringLiteral("DAMEh1"));
        QCOMPARE(lists.black, QStringLiteral("Qa8"));
    }

    void neutralColourWhateverTheLetter() {
        const PieceLists lists =
            List(QStringLiteral("q7/8/8/8/8/8/8/6PQ"), QStringLiteral("&&q=n Q &&Q=NQ&&P=bP&&"));
        QVERIFY(lists.white.isEmpty());
        QCOMPARE(lists.black, QStringLiteral("Pg1"));
        QCOMPARE(lists.neutral, QStringLiteral("Qh1a8"));
    }

    void twoLetterNamesTakeTheSquaresBehindThem() {
        const PieceLists lists =
            List(QStringLiteral("8/8/8/8/8/8/8/RR6"), QStringLiteral("&&R=wNR&&"));
        QCOMPARE(lists.white, QStringLiteral("NRb1a1"));
    }

    // "N" is found inside "NR" first, so the knight's square goes there.
    void shorterNameInsideLongerFirstMatchDecides() {
        const PieceLists lists =
            List(QStringLiteral("8/8/8/8/8/8/8/R1N5"), QStringLiteral("&&R=wNR&&"));
        QCOMPARE(lists.white, QStringLiteral("Nc1Ra1"));
    }

    void styleEntriesWinOverTable() {
        const PieceLists lists = List(QStringLiteral("8/8/8/8/8/8/8/K7"),
                                      QStringLiteral("&&K=bRoi&&") + QStringLiteral("&&K=wKing&&"));
        QCOMPARE(lists.black, QStringLiteral("ROIa1"));
        QVERIFY(lists.white.isEmpty());
    }

    // Entries without an end, a name or a colour, letters missing from the
    // English notation: nothing crashes and every piece still lands somewhere
    // sensible.
    void brokenEntriesAndMissingLetters() {
        QCOMPARE(List(QStringLiteral("K7"), QStringLiteral("&&K=wKing")).white,
                 QStringLiteral("KINGa8"));
        QCOMPARE(List(QStringLiteral("K7"), QStringLiteral("&&K=")).white, QStringLiteral("Ka8"));
        QCOMPARE(List(QStringLiteral("K7"), QStringLiteral("&&K=b&&")).black,
                 QStringLiteral("Ka8"));
        const PieceLists shortEnglish =
            List(QStringLiteral("Kp6"), QString(), ListingMode::EnglishNotation, kPieces,
                 QStringLiteral("pP"));
        QCOMPARE(shortEnglish.black, QStringLiteral("Pb8"));
        QVERIFY(shortEnglish.white.isEmpty());
    }

    void squareNames() {
        QCOMPARE(SquareName(0, 8), QStringLiteral("a8"));
        QCOMPARE(SquareName(63, 8), QStringLiteral("h1"));
        QCOMPARE(SquareName(9, 10), QStringLiteral("j10"));
        QVERIFY(SquareName(5, 0).isEmpty());
    }
};

QTEST_APPLESS_MAIN(TstPieceListing)
#include "tst_piece_listing.moc"
