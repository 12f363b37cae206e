#include "styles/style_block.h"

#include <QTest>
#include <array>
#include <optional>
#include <tuple>
#include <utility>

using namespace marlith;

namespace {

// Every field by name, so that a failed comparison says which one differs.
QStringList differences(const Style& a, const Style& b) {
    QStringList out;
    const auto check = [&out](const char* name, bool same) {
        if (!same) out << QLatin1String(name);
    };
#define MARLITH_FIELD(f) check(#f, a.f == b.f)
    MARLITH_FIELD(BorderFile), MARLITH_FIELD(StyleName), MARLITH_FIELD(PiecesFile),
        MARLITH_FIELD(BackColor), MARLITH_FIELD(BorderHeight), MARLITH_FIELD(BorderWidth),
        MARLITH_FIELD(CopyCounter), MARLITH_FIELD(PiecesList), MARLITH_FIELD(EnglishNotation),
        MARLITH_FIELD(FontColor), MARLITH_FIELD(FontXBase), MARLITH_FIELD(FontYBase),
        MARLITH_FIELD(FontName), MARLITH_FIELD(FontPos), MARLITH_FIELD(FontSize),
        MARLITH_FIELD(FontStyle), MARLITH_FIELD(FrameColor), MARLITH_FIELD(FrameWidth),
        MARLITH_FIELD(ShowGrid), MARLITH_FIELD(SqrHeight), MARLITH_FIELD(SqrWidth),
        MARLITH_FIELD(SqrHTab), MARLITH_FIELD(SqrVTab), MARLITH_FIELD(SqrHSpc),
        MARLITH_FIELD(SqrVSpc), MARLITH_FIELD(StartPos), MARLITH_FIELD(PyDictionary),
        MARLITH_FIELD(WndHeight), MARLITH_FIELD(WndWidth), MARLITH_FIELD(XBase),
        MARLITH_FIELD(YBase);
#undef MARLITH_FIELD
    return out;
}

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

// The 8 x 8 board of 15-pixel squares after its first draw.
Style drawnSample() {
    Style style = defaults();
    style.StyleName = QStringLiteral("Sample");
    style.PiecesFile = QStringLiteral("pieces.bmp");
    style.SqrHTab = 225;
    style.SqrVTab = 225;
    style.WndWidth = 1860; // 7 x 225 + 225 + 60
    style.WndHeight = 1860;
    return style;
}

QStringList linesOf(const QString& block) {
    QStringList lines = block.split(QStringLiteral("\r\n"));
    if (!lines.isEmpty() && lines.last().isEmpty()) lines.removeLast();
    return lines;
}

} // namespace

class TstStyleBlock : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void items_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("items");
        const auto row = [](const char* name, const char* text, const QStringList& items) {
            QTest::newRow(name) << QString::fromUtf8(text) << items;
        };
        row("comma and line ends", "a=1, b=2\r\nc=3\nd=4\re=5",
            {"a=1", "b=2", "c=3", "d=4", "e=5"});
        row("leading blanks go, trailing stay", "   \tSqrWidth = 20  \r\n", {"SqrWidth = 20  "});
        row("blank lines give nothing", "\r\n\r\n   \r\n\n\r,,\r\nx", {"x"});
        row("quoted item keeps its comma", "\"PiecesList = p,P\", x=1",
            {"PiecesList = p,P", "x=1"});
        row("text behind the closing quote is dropped", "\"a=1\"junk, b=2", {"a=1", "b=2"});
        row("quote runs across line ends", "\"a=1\r\nb\",c", {"a=1\r\nb", "c"});
        row("unclosed quote runs to the end", "x\r\n\"a, b\r\nc", {"x", "a, b\r\nc"});
        row("quote inside an item is plain text", "a\"b,c", {"a\"b", "c"});
        row("semicolon is no separator", "a=1 ; note", {"a=1 ; note"});
    }
    void items() {
        QFETCH(QString, text);
        QFETCH(QStringList, items);
        QCOMPARE(splitItems(text), items);
    }

    void itemRules() {
        // Keys upper-cased, values keep their case; "-": no entry at all.
        // Item, key for the settings reader, key for the importer, value.
        const std::array<const char*, 4> cases[] = {
            {"  sqrWidth =  Left Up ", "SQRWIDTH", "SQRWIDTH", "Left Up"},
            {"PiecesList = pP;nN", "PIECESLIST", "PIECESLIST", "pP"},
            {";BeginStyle = x", ";BEGINSTYLE", ";BEGINSTYLE", "x"},
            {"; a note", "-", "; A NOTE", ""},
            {"a = b=c", "A", "A", "b=c"},
            {"=5", "-", "=5", ""},
            {"EndStyle", "-", "ENDSTYLE", ""},
            {"x ;=1", "-", "X", ""}};
        for (const auto& [item, settingsKey, importKey, value] : cases) {
            const auto settings = parseItem(QString::fromUtf8(item), KeylessItems::Skip);
            const auto imported = parseItem(QString::fromUtf8(item), KeylessItems::AsKey);
            QCOMPARE(settings ? settings->key : QStringLiteral("-"),
                     QString::fromUtf8(settingsKey));
            QCOMPARE(imported ? imported->key : QStringLiteral("-"), QString::fromUtf8(importKey));
            if (imported) QCOMPARE(imported->value, QString::fromUtf8(value));
            if (settings) QCOMPARE(settings->value, QString::fromUtf8(value));
        }
    }

    void numbers() {
        // Leading numeric text, blanks passed over, ties to the even whole;
        // hex of four digits is 16-bit, of five to eight 32-bit; leading zeros
        // don't count; too large is no number at all.
        const std::pair<const char*, std::optional<double>> cases[] = {
            {"15", 15},         {"-5", -5},
            {"- 1 5", -15},     {"12abc", 12},
            {"abc", 0},         {"1.5", 2},
            {"2.5", 2},         {"-2.5", -2},
            {"15E-1", 2},       {"1e400", std::nullopt},
            {"&HFFFF", -1},     {"&H8000", -32768},
            {"&H7FFF", 32767},  {"&hff", 255},
            {"&H10000", 65536}, {"&HFFFFFFFF", -1},
            {"&H0000FFFF", -1}, {"&H123456789", std::nullopt}};
        for (const auto& [text, number] : cases)
            QVERIFY2(itemNumber(QString::fromUtf8(text)) == number, text);
    }

    void colours() {
        // The number, plus 65536 if negative; no colour beyond 32 bits.
        const std::pair<const char*, std::optional<int32_t>> cases[] = {
            {"&HFFFF", 65535},
            {"-1", 65535},
            {"&HFFFFFFFF", 65535},
            {"&HFFFF0000", 0},
            {"4294967295", std::nullopt}};
        for (const auto& [text, colour] : cases)
            QVERIFY2(itemColor(QString::fromUtf8(text)) == colour, text);
    }

    void paths() {
        // A bare name is completed with the folder; an empty folder (the
        // importer) keeps it bare; an empty value stays empty.
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
        // Lengths are 16-bit twips (2184 pixels at most) but for the window's,
        // counts 16-bit, colours 32-bit; a value that doesn't fit leaves the
        // record as it was, and so does one that is ignored.
        constexpr StoreResult kFits = StoreResult::Stored;
        constexpr StoreResult kFault = StoreResult::Fault;
        constexpr StoreResult kIgnored = StoreResult::Ignored;
        const std::tuple<const char*, const char*, StoreResult> cases[] = {
            {"SQRWIDTH", "2184", kFits},         {"SQRWIDTH", "2185", kFault},
            {"SQRHTAB", "2184.4", kFits},        {"BORDERWIDTH", "32767", kFits},
            {"BORDERHEIGHT", "32768", kFault},   {"BORDERWIDTH", "&HFFFF", kFits},
            {"WNDWIDTH", "143165576", kFits},    {"WNDHEIGHT", "143165577", kFault},
            {"BACKCOLOR", "2147483648", kFault}, {"SQRVSPC", "1e999", kFault},
            {"PIECESLIST", "1e999", kFits},      {"SQRBORDER", "99999", kIgnored},
            {"SHOWGRID", "1", kIgnored}};
        for (const auto& [key, value, result] : cases) {
            Style style = defaults();
            const Style before = style;
            QVERIFY2(storeStyleKey(style, {key, value}, QString()) == result,
                     qPrintable(
                         QStringLiteral("%1 = %2").arg(QLatin1String(key), QLatin1String(value))));
            if (result != kFits) QCOMPARE(differences(style, before), QStringList());
        }
    }

    void writeSample() {
        Style style = drawnSample();
        QCOMPARE(writeStyleBlock(style), QStringLiteral("BeginStyle = Sample\r\n"
                                                        "  PiecesFile = pieces.bmp\r\n"
                                                        "  SqrWidth = 15 \r\n"
                                                        "  SqrHeight = 15 \r\n"
                                                        "EndStyle\r\n"));
    }

    void conditionalLines_data() {
        // Setup items on top of the drawn sample; lines that must be there,
        // and beginnings of lines that must not.
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QStringList>("present");
        QTest::addColumn<QStringList>("absent");
        const auto row = [](const char* name, const char* setup, const QStringList& present,
                            const QStringList& absent) {
            QTest::newRow(name) << QString::fromUtf8(setup) << present << absent;
        };
        row("black frame", "FrameWidth = 1", {"  FrameWidth = 1 ", "  FrameColor = &H0"}, {});
        row("frame colour without frame is lost", "FrameColor = &HFF", {},
            {"  FrameColor", "  FrameWidth"});
        row("grid off drops the font lines", "FontName = Arial, FontSize = 12, FontColor = 255", {},
            {"  ShowGrid", "    Font"});
        row("grid on prints the defaults", "ShowGrid = yes",
            {"  ShowGrid = Yes", "    FontName = MS Sans Serif", "    FontSize = 8 ",
             "    FontPos = Left Up"},
            {"    FontColor", "    FontStyle", "    FontXBase", "    FontYBase"});
        row("grid on, empty font fields",
            "ShowGrid = yes, FontName =, FontSize = 0, FontPos =", {"  ShowGrid = Yes"},
            {"    FontName", "    FontSize", "    FontPos"});
        row("pixels are rounded before they become twips", "XBase = 9.5", {"  XBase = 10 "}, {});
        row("font style and place upper-cased", "ShowGrid = yes, FontStyle = bold, FontPos = up",
            {"    FontStyle = BOLD", "    FontPos = UP"}, {});
        row("negative lengths not printed", "XBase = -3, YBase = -1, SqrHSpc = -2, SqrVSpc = -2",
            {}, {"  XBase", "  YBase", "  SqrHSpc", "  SqrVSpc"});
        row("tab equal to the square isn't printed", "SqrWidth = 20, SqrHTab = 20",
            {"  SqrWidth = 20 "}, {"  SqrHTab"});
        row("one count only", "BorderWidth = 10", {"  BorderWidth = 10 "}, {"  BorderHeight"});
        row("pieces list in other case", "PiecesList = PPNNBBRRQQKK",
            {"  PiecesList = PPNNBBRRQQKK"}, {"  EnglishNotation"});
        row("a larger board changes the worked-out size", "BorderWidth = 9", {"  WndWidth = 124 "},
            {"  WndHeight"});
        // Before the first draw the size is 0, and 0 is what is printed.
        row("size before the first draw", "WndWidth = 0, WndHeight = 0",
            {"  WndWidth = 0 ", "  WndHeight = 0 "}, {});
    }
    void conditionalLines() {
        QFETCH(QString, setup);
        QFETCH(QStringList, present);
        QFETCH(QStringList, absent);
        Style style = drawnSample();
        QVERIFY(storeText(style, setup));
        const QStringList lines = linesOf(writeStyleBlock(style));
        for (const QString& line : present)
            QVERIFY2(lines.contains(line), qPrintable(line));
        for (const QString& start : absent)
            for (const QString& line : lines)
                QVERIFY2(!line.startsWith(start), qPrintable(line));
    }

    void boardsOfMoreThan400Squares() {
        // Rows, columns, and whether the record falls back to 8 x 8; odd
        // counts are printed as they are, and nothing divides by zero.
        const std::tuple<int, int, bool> cases[] = {
            {21, 20, true},       {1, 401, true},         {20, 20, false},
            {32767, 32767, true}, {-32768, -32768, true}, {7, -1, false},
            {-1, 7, false},       {1, -32768, false},     {0, 0, false}};
        for (const auto& [rows, columns, fallsBack] : cases) {
            Style style = drawnSample();
            style.BorderHeight = static_cast<int16_t>(rows);
            style.BorderWidth = static_cast<int16_t>(columns);
            const QStringList lines = linesOf(writeStyleBlock(style));
            QVERIFY(lines.contains(
                QStringLiteral("  BorderWidth =%1%2 ").arg(columns < 0 ? "" : " ").arg(columns)));
            QVERIFY(lines.contains(
                QStringLiteral("  BorderHeight =%1%2 ").arg(rows < 0 ? "" : " ").arg(rows)));
            QCOMPARE(style.BorderHeight, int16_t(fallsBack ? 8 : rows));
            QCOMPARE(style.BorderWidth, int16_t(fallsBack ? 8 : columns));
            // The size is worked out for the 8 x 8 board: the drawn size matches.
            if (fallsBack) QVERIFY(!lines.join(u'|').contains(QStringLiteral("Wnd")));
        }
    }

    void boardsWithoutColumnsOrWithNegativeCounts() {
        // No column: the size is worked out as the draw does it, one step
        // back across and seven down.
        Style style = drawnSample();
        style.BorderWidth = 0;
        style.WndWidth = 60;
        QVERIFY(!writeStyleBlock(style).contains(QStringLiteral("Wnd")));
    }

    // Every key in, every line out in its place and read back the same.
    // The values differ, so a key stored in the wrong field shows.
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
        QCOMPARE(linesOf(writeStyleBlock(read)), linesOf(block));
    }
};

QTEST_APPLESS_MAIN(TstStyleBlock)
#include "tst_style_block.moc"
