#include "styles/style_block.h"

#include <QSize>
#include <QTest>
#include <array>
#include <optional>
#include <tuple>
#include <utility>

using namespace marlith;

namespace {

Style defaults() {
    Style style;
    resetStyle(style);
    return style;
}

// Stores the items of a text into a record the way a reader inside the
// wanted block does; false when a value didn't fit.
bool storeText(Style& style, const QString& text, const QString& folder = {},
               KeylessItems keyless = KeylessItems::Skip) {
    for (const QString& raw : splitItems(text)) {
        const std::optional<StyleItem> item = parseItem(raw, keyless);
        if (!item || item->key == u"BEGINSTYLE") continue;
        if (storeStyleKey(style, *item, folder) == StoreResult::Fault) return false;
    }
    return true;
}

// The 8 x 8 board of 15-pixel squares after its first draw: 7 x 225 + 225 + 60.
Style drawnSample() {
    Style style = defaults();
    style.StyleName = QStringLiteral("Sample");
    style.PiecesFile = QStringLiteral("pieces.bmp");
    style.SqrHTab = style.SqrVTab = 225;
    style.WndWidth = style.WndHeight = 1860;
    return style;
}

} // namespace

class TstStyleBlock : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void itemsAndTheirKeys() {
        const std::pair<const char*, QStringList> texts[] = {
            {"a=1, b=2\r\n\r\n   \r\n,,c=3\nd=4\re=5", {"a=1", "b=2", "c=3", "d=4", "e=5"}},
            {"   \tSqrWidth = 20  \r\n", {"SqrWidth = 20  "}}, // trailing blanks stay
            {"\"PiecesList = p,P\", x=1", {"PiecesList = p,P", "x=1"}},
            {"x\r\n\"a, b\r\nc", {"x", "a, b\r\nc"}}}; // unclosed: runs to the end
        for (const auto& [text, items] : texts)
            QCOMPARE(splitItems(QString::fromUtf8(text)), items);
        // Item, key for the settings reader, for the importer ("-": none), value.
        const std::array<const char*, 4> cases[] = {
            {"  sqrWidth =  Left Up ", "SQRWIDTH", "SQRWIDTH", "Left Up"},
            {"PiecesList = pP;nN", "PIECESLIST", "PIECESLIST", "pP"},
            {"; a note", "-", "; A NOTE", ""},
            {"a = b=c", "A", "A", "b=c"},
            {"EndStyle", "-", "ENDSTYLE", ""}};
        for (const auto& [item, settingsKey, importKey, value] : cases) {
            const auto settings = parseItem(QString::fromUtf8(item), KeylessItems::Skip);
            const auto imported = parseItem(QString::fromUtf8(item), KeylessItems::AsKey);
            QCOMPARE(settings ? settings->key : QStringLiteral("-"),
                     QString::fromUtf8(settingsKey));
            QCOMPARE(imported ? imported->key : QStringLiteral("-"), QString::fromUtf8(importKey));
            if (imported) QCOMPARE(imported->value, QString::fromUtf8(value));
        }
    }

    // Refused for what the reader would do to it, else read back unchanged.
    void valuesTheFileCanHold() {
        const std::pair<const char*, ValueFault> cases[] = {
            {"Ärger (2) & Co.", ValueFault::None}, {"Smith, John", ValueFault::ItemSeparator},
            {"a;b", ValueFault::Comment},          {"a=b", ValueFault::KeySeparator},
            {"\"a\"", ValueFault::Quote},          {"a\nb, c", ValueFault::LineBreak},
            {"a ", ValueFault::OuterBlank}};
        for (const auto& [text, fault] : cases) {
            Style style = drawnSample();
            style.StyleName = QString::fromUtf8(text);
            QVERIFY2(settingsValueFault(style.StyleName) == fault, text);
            const auto read = parseItem(splitItems(writeStyleBlock(style))[0], KeylessItems::Skip);
            if (fault == ValueFault::None) QCOMPARE(read->value, style.StyleName);
        }
    }

    void numbersAndColours() {
        // Leading numeric text, ties to even; hex of up to four digits is 16-bit.
        const std::pair<const char*, std::optional<double>> numbers[] = {
            {"- 1 5", -15},     {"12abc", 12},           {"2.5", 2},
            {"-2.5", -2},       {"1e400", std::nullopt}, {"&HFFFF", -1},
            {"&H10000", 65536}, {"&H0000FFFF", -1},      {"&H123456789", std::nullopt},
            {"3e10", 3e10}};
        for (const auto& [text, number] : numbers)
            QVERIFY2(itemNumber(QString::fromUtf8(text)) == number, text);
        // A colour is the number, plus 65536 if negative; none beyond 32 bits.
        const std::pair<const char*, std::optional<int32_t>> colours[] = {
            {"-1", 65535}, {"&HFFFFFFFF", 65535}, {"&HFFFF0000", 0}, {"4294967295", std::nullopt}};
        for (const auto& [text, colour] : colours)
            QVERIFY2(itemColor(QString::fromUtf8(text)) == colour, text);
    }

    void paths() {
        // A bare name takes the folder, if any (the importer has none).
        const std::array<const char*, 3> cases[] = {{"sheet.gif", "/prog/", "/prog/sheet.gif"},
                                                    {"sheets/a.gif", "/prog/", "sheets/a.gif"},
                                                    {"sheet.gif", "", "sheet.gif"},
                                                    {"", "/prog/", ""}};
        for (const auto& [value, folder, stored] : cases) {
            Style style = defaults();
            QVERIFY(storeText(style, QStringLiteral("PiecesFile = %1, BorderFile = %1").arg(value),
                              QString::fromUtf8(folder)));
            QCOMPARE(style.PiecesFile, QString::fromUtf8(stored));
            QCOMPARE(style.BorderFile, QString::fromUtf8(stored));
        }
    }

    void valuesThatDontFit() {
        // A value that doesn't fit, or is ignored, leaves the record as it was.
        constexpr StoreResult kFits = StoreResult::Stored;
        constexpr StoreResult kFault = StoreResult::Fault;
        const std::tuple<const char*, const char*, StoreResult> cases[] = {
            {"SQRWIDTH", "2184", kFits},         {"SQRWIDTH", "2185", kFault},
            {"SQRHTAB", "2184.4", kFits},        {"BORDERHEIGHT", "32768", kFault},
            {"WNDWIDTH", "143165576", kFits},    {"WNDHEIGHT", "143165577", kFault},
            {"BACKCOLOR", "2147483648", kFault}, {"SQRVSPC", "1e999", kFault},
            {"PIECESLIST", "1e999", kFits},      {"SHOWGRID", "1", StoreResult::Ignored},
            {"BORDERHEIGHT", "-32768", kFits},   {"BORDERHEIGHT", "-32769", kFault}};
        for (const auto& [key, value, result] : cases) {
            Style style = defaults();
            Style before = style;
            QVERIFY2(storeStyleKey(style, {key, value}, QString()) == result, key);
            // Every field shows in the written block once it leaves its default.
            if (result != kFits) QCOMPARE(writeStyleBlock(style), writeStyleBlock(before));
        }
    }

    void conditionalLines() {
        // Items on top of the sample; lines that must be there, starts that must not.
        const std::tuple<const char*, QStringList, QStringList> cases[] = {
            {"FrameWidth = 1", {"  FrameWidth = 1 ", "  FrameColor = &H0"}, {}},
            {"FrameColor = &HFF", {}, {"  FrameColor", "  FrameWidth"}},
            {"ShowGrid = yes",
             {"  ShowGrid = Yes", "    FontName = MS Sans Serif", "    FontSize = 8 ",
              "    FontPos = Left Up"},
             {"    FontColor", "    FontStyle", "    FontXBase", "    FontYBase"}},
            {"ShowGrid = yes, FontName =, FontSize = 0, FontStyle = bold, FontPos = up",
             {"    FontStyle = BOLD", "    FontPos = UP"},
             {"    FontName", "    FontSize"}},
            // Pixels are rounded before they become twips; negatives aren't printed.
            {"XBase = 9.5, YBase = -1, SqrHSpc = -2, SqrVSpc = -2",
             {"  XBase = 10 "},
             {"  YBase", "  SqrHSpc", "  SqrVSpc"}},
            {"SqrWidth = 20, SqrHTab = 20", {"  SqrWidth = 20 "}, {"  SqrHTab"}},
            {"PiecesList = PPNNBBRRQQKK", {"  PiecesList = PPNNBBRRQQKK"}, {"  EnglishNotation"}},
            // A larger board changes the worked-out size, across only.
            {"BorderWidth = 9",
             {"  BorderWidth = 9 ", "  WndWidth = 124 "},
             {"  BorderHeight", "  WndHeight"}},
            // Before the first draw the size is 0, and 0 is what is printed.
            {"WndWidth = 0, WndHeight = 0", {"  WndWidth = 0 ", "  WndHeight = 0 "}, {}}};
        for (const auto& [setup, present, absent] : cases) {
            Style style = drawnSample();
            QVERIFY2(storeText(style, QString::fromUtf8(setup)), setup);
            const QStringList lines = writeStyleBlock(style).split(QStringLiteral("\r\n"));
            for (const QString& line : present)
                QVERIFY2(lines.contains(line), qPrintable(line));
            for (const QString& start : absent)
                for (const QString& line : lines)
                    QVERIFY2(!line.startsWith(start), qPrintable(line));
        }
    }

    // Past 400 squares the counts print as they were, then fall back to 8 x 8.
    void boardsOfMoreThan400Squares() {
        const std::tuple<int, int, const char*> cases[] = {
            {21, 20, "BorderWidth = 20 \r\n  BorderHeight = 21 "},
            {20, 20, "BorderWidth = 20 \r\n  BorderHeight = 20 "},
            {-32768, -32768, "BorderWidth =-32768 \r\n  BorderHeight =-32768 "}};
        for (const auto& [rows, columns, printed] : cases) {
            Style style = drawnSample();
            style.BorderHeight = int16_t(rows);
            style.BorderWidth = int16_t(columns);
            const QString block = writeStyleBlock(style);
            QVERIFY2(block.contains(QLatin1String(printed)), printed);
            const bool fallsBack = rows != 20;
            QCOMPARE(QSize(style.BorderWidth, style.BorderHeight),
                     fallsBack ? QSize(8, 8) : QSize(20, 20));
            QCOMPARE(block.contains(QStringLiteral("Wnd")), !fallsBack);
        }
    }

    // Every key in and out; the values differ, so a key in the wrong field shows.
    void roundTrip() {
        const QString block = QStringLiteral(
            "BeginStyle = Full\r\n  PiecesFile = /p/pieces.gif\r\n  BorderFile = /p/board.bmp\r\n"
            "  SqrWidth = 20 \r\n  SqrHeight = 22 \r\n  SqrHTab = 19 \r\n  SqrVTab = 21 \r\n"
            "  SqrHSpc = 2 \r\n  SqrVSpc = 3 \r\n  XBase = 10 \r\n  YBase = 11 \r\n"
            "  BorderWidth = 12 \r\n  BorderHeight = 6 \r\n  PiecesList = pPnNbBrRqQkKaA\r\n"
            "  EnglishNotation = pPsSlLtTdDkKaA\r\n  PyDictionary = &&a=Amazon\r\n"
            "  StartPos = 8/8\r\n  CopyCounter = Yes\r\n  BackColor = &HC0C0C0\r\n"
            "  FrameWidth = 4 \r\n  FrameColor = &HFF\r\n  WndWidth = 200 \r\n"
            "  WndHeight = 160 \r\n  ShowGrid = Yes\r\n    FontName = Arial\r\n"
            "    FontColor = &H80\r\n    FontSize = 14 \r\n    FontStyle = BOLD CAPS\r\n"
            "    FontPos = DOWN RIGHT\r\n    FontXBase = 7 \r\n    FontYBase = 2184 \r\n"
            "EndStyle\r\n");
        Style read = defaults();
        read.StyleName = QStringLiteral("Full");
        QVERIFY(storeText(read, block, QString(), KeylessItems::AsKey));
        QCOMPARE(read.SqrWidth, int16_t(300)); // pixels become twips
        QCOMPARE(writeStyleBlock(read), block);
    }
};

QTEST_APPLESS_MAIN(TstStyleBlock)
#include "tst_style_block.moc"
