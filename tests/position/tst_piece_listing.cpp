#include "position/piece_listing.h"

#include <QTest>
#include <iterator>

using namespace marlith;

namespace {

constexpr auto kOwn = ListingMode::PiecesList;
constexpr auto kEnglish = ListingMode::EnglishNotation;
constexpr auto kDict = ListingMode::Dictionary;
const char* const kWalk = "4k3/8/8/8/8/8/5PPP/R3K3";
const char* const kGerman = "8/8/8/8/8/8/8/S3K2s";

// The lists of the position `fen`, read with the letters `pieces` (English
// `english`; both the default letters when null).
struct Case {
    const char *name, *fen, *dictionary;
    ListingMode mode;
    const char *white, *black, *neutral = "", *pieces = nullptr, *english = nullptr;
    const char* counter = nullptr; // by the letters' case, neutral by the dictionary
};

const Case kCases[] = {
    // Kinds stand in the order first met from the top left; each new square
    // goes directly behind the name, so a kind's squares come out reversed.
    {"names in walk order", kWalk, "&&", kDict, "Ph2g2f2 Ra1 Ke1", "Ke8", "", nullptr, nullptr,
     "(5x1)"},
    {"English letters, squares apart", kWalk, "", kEnglish, "Ph2 g2 f2 Ra1 Ke1", "Ke8"},
    // The style's letters in their own mode, the English ones in the others.
    {"style letters", kGerman, "", kOwn, "Sa1 Ke1", "Sh1", "", "bBsSlLtTdDkK"},
    {"dictionary by English", kGerman, "&&N=wS&&", kDict, "Sa1 Ke1", "Nh1", "", "bBsSlLtTdDkK"},
    // Only the exact case matches: "q" has no entry, and stays black.
    {"no entry keeps the letter", "q7/8/8/8/8/8/8/7Q", "&&Q=wDame&&", kDict, "DAMEh1", "Qa8"},
    {"neutral", "q7/8/8/8/8/8/8/6PQ", "&&q=n Q &&Q=NQ&&P=bP&&", kDict, "", "Pg1", "Qh1a8", nullptr,
     nullptr, "(1x0+2)"},
    {"neutral by the last letter", "K7", "&&K=NK&&", kDict, "", "", "Ka8", nullptr, nullptr,
     "(0x0+1)"},
    // "N" is found inside "NR" first, so the knight's square goes there.
    {"shorter name inside a longer", "8/8/8/8/8/8/8/R1N5", "&&R=wNR&&", kDict, "Nc1Ra1", ""},
    {"style entries first", "8/8/8/8/8/8/8/K7", "&&K=bRoi&&&&K=wKing&&", kDict, "", "ROIa1"},
    // A broken entry, and letters missing from the English notation.
    {"entry without name", "K7", "&&K=b&&", kDict, "", "Ka8"},
    {"entry cut at its end", "K7", "&&K=", kDict, "Ka8", ""},
    {"short English", "Kp6", "", kEnglish, "", "Pb8", "", nullptr, "pP"},
};

} // namespace

class TstPieceListing : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void listing_data() {
        QTest::addColumn<int>("index");
        for (int n = 0; n < int(std::size(kCases)); ++n)
            QTest::newRow(kCases[n].name) << n;
    }
    void listing() {
        QFETCH(int, index);
        const Case& c = kCases[index];
        const QString pieces = QString::fromLatin1(c.pieces ? c.pieces : "pPnNbBrRqQkK");
        const QString english = QString::fromLatin1(c.english ? c.english : "pPnNbBrRqQkK");
        const Board board{8, 8};
        SquareVector squareVector{};
        buildBoard(QString::fromLatin1(c.fen), squareVector, board, pieces, nullptr, nullptr);
        const PieceLists lists = listPieces(squareVector, board, pieces, english,
                                            QString::fromLatin1(c.dictionary), c.mode);
        QCOMPARE(lists.white, QString::fromLatin1(c.white));
        QCOMPARE(lists.black, QString::fromLatin1(c.black));
        QCOMPARE(lists.neutral, QString::fromLatin1(c.neutral));
        if (c.counter)
            QCOMPARE(counterText(countPieces(squareVector, board, pieces, english,
                                             QString::fromLatin1(c.dictionary))),
                     QString::fromLatin1(c.counter));
    }
};

QTEST_APPLESS_MAIN(TstPieceListing)
#include "tst_piece_listing.moc"
