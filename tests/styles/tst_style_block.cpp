#include "styles/style_block.h"

#include <QTest>
#include <optional>
#include <utility>

using namespace marlith;

Q_DECLARE_METATYPE(std::optional<double>)

namespace {

// Every field by name, so that a failed comparison says which one differs.
QStringList Differences(const Style& a, const Style& b) {
    QStringList out;
#define MARLITH_FIELD(f)                                                                           \
    if (a.f != b.f) out << QStringLiteral(#f);
    MARLITH_FIELD(BorderFile)
    MARLITH_FIELD(StyleName)
    MARLITH_FIELD(PiecesFile)
    MARLITH_FIELD(BackColor)
    MARLITH_FIELD(BorderHeight)
    MARLITH_FIELD(BorderWidth)
    MARLITH_FIELD(CopyCounter)
    MARLITH_FIELD(PiecesList)
    MARLITH_FIELD(EnglishNotation)
    MARLITH_FIELD(FontColor)
    MARLITH_FIELD(FontXBase)
    MARLITH_FIELD(FontYBase)
    MARLITH_FIELD(FontName)
    MARLITH_FIELD(FontPos)
    MARLITH_FIELD(FontSize)
    MARLITH_FIELD(FontStyle)
    MARLITH_FIELD(FrameColor)
    MARLITH_FIELD(FrameWidth)
    MARLITH_FIELD(ShowGrid)
    MARLITH_FIELD(SqrHeight)
    MARLITH_FIELD(SqrWidth)
    MARLITH_FIELD(SqrHTab)
    MARLITH_FIELD(SqrVTab)
    MARLITH_FIELD(SqrHSpc)
    MARLITH_FIELD(SqrVSpc)
    MARLITH_FIELD(StartPos)
    MARLITH_FIELD(PyDictionary)
    MARLITH_FIELD(WndHeight)
    MARLITH_FIELD(WndWidth)
    MARLITH_FIELD(XBase)
    MARLITH_FIELD(YBase)
#undef MARLITH_FIELD
    return out;
}

Style Defaults() {
    Style style;
    ResetStyle(style);
    return style;
}

// Stores the items of a text into a record the way a reader inside the
// wanted block does; false when a value didn't fit.
bool StoreText(Style& style, const QString& text, const QString& folder = {},
               KeylessItems keyless = KeylessItems::Skip) {
    for (const QString& raw : SplitItems(text)) {
        const std::optional<StyleItem> item = ParseItem(raw, keyless);
        if (!item || item->key == u"BEGINSTYLE") continue;
        if (StoreStyleKey(style, *item, folder) == StoreResult::Fault) return false;
    }
    return true;
}

// The 8 x 8 board of 15-pixel squares after its first draw.
Style DrawnSample() {
    Style style = Defaults();
    style.StyleName = QStringLiteral("Sample");
    style.PiecesFile = QStringLiteral("pieces.bmp");
    style.SqrHTab = 225;
    style.SqrVTab = 225;
    style.WndWidth = 1860; // 7 x 225 + 225 + 60
    style.WndHeight = 1860;
    return style;
}

QStringList Lines(const QString& block) {
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
        QTest::newRow("comma and line ends")
            << "a=1, b=2\r\nc=3\nd=4\re=5" << QStringList{"a=1", "b=2", "c=3", "d=4", "e=5"};
        QTest::newRow("leading blanks and tabs go, trailing stay")
            << "   \tSqrWidth = 20  \r\n"
            << QStringList{"SqrWidth = 20  "};
        QTest::newRow("blank lines give nothing")
            << "\r\n\r\n   \r\n\n\r,,\r\nx" << QStringList{"x"};
        QTest::newRow("quoted item keeps its comma")
            << "\"PiecesList = p,P\", x=1" << QStringList{"PiecesList = p,P", "x=1"};
        QTest::newRow("text behind the closing quote is dropped")
            << "\"a=1\"junk, b=2\r\nc" << QStringList{"a=1", "b=2", "c"};
        QTest::newRow("quote runs across line ends")
            << "\"a=1\r\nb\",c" << QStringList{"a=1\r\nb", "c"};
        QTest::newRow("unclosed quote runs to the end")
            << "x\r\n\"a, b\r\nc" << QStringList{"x", "a, b\r\nc"};
        QTest::newRow("quote inside an item is plain text") << "a\"b,c" << QStringList{"a\"b", "c"};
        QTest::newRow("semicolon is no separator") << "a=1 ; note" << QStringList{"a=1 ; note"};
        QTest::newRow("empty text") << "" << QStringList{};
    }
    void items() {
        QFETCH(QString, text);
        QFETCH(QStringList, items);
        QCOMPARE(SplitItems(text), items);
    }

    void itemRules_data() {
        // "-" in the key columns: no entry at all.
        QTest::addColumn<QString>("item");
        QTest::addColumn<QString>("settingsKey");
        QTest::addColumn<QString>("importKey");
        QTest::addColumn<QString>("value");
        QTest::newRow("key upper-cased, value keeps case") << "  sqrWidth =  Left Up "
                                                           << "SQRWIDTH"
                                                           << "SQRWIDTH"
                                                           << "Left Up";
        QTest::newRow("comment cut") << "PiecesList = pP;nN"
                                     << "PIECESLIST"
                                     << "PIECESLIST"
                                     << "pP";
        QTest::newRow("comment at the first place stays") << ";BeginStyle = x"
                                                          << ";BEGINSTYLE"
                                                          << ";BEGINSTYLE"
                                                          << "x";
        QTest::newRow("comment line without =") << "; a note"
                                                << "-"
                                                << "; A NOTE"
                                                << "";
        QTest::newRow("only the first = splits") << "a = b=c"
                                                 << "A"
                                                 << "A"
                                                 << "b=c";
        QTest::newRow("= at the first place") << "=5"
                                              << "-"
                                              << "=5"
                                              << "";
        QTest::newRow("key of one character") << "a="
                                              << "A"
                                              << "A"
                                              << "";
        QTest::newRow("EndStyle") << "EndStyle"
                                  << "-"
                                  << "ENDSTYLE"
                                  << "";
        QTest::newRow("= behind the comment") << "x ;=1"
                                              << "-"
                                              << "X"
                                              << "";
        QTest::newRow("nothing but a comment cut") << " ;"
                                                   << "-"
                                                   << ";"
                                                   << "";
        QTest::newRow("blanks only") << "   "
                                     << "-"
                                     << "-"
                                     << "";
    }
    void itemRules() {
        QFETCH(QString, item);
        QFETCH(QString, settingsKey);
        QFETCH(QString, importKey);
        QFETCH(QString, value);
        const auto settings = ParseItem(item, KeylessItems::Skip);
        const auto imported = ParseItem(item, KeylessItems::AsKey);
        QCOMPARE(settings ? settings->key : QStringLiteral("-"), settingsKey);
        QCOMPARE(imported ? imported->key : QStringLiteral("-"), importKey);
        if (imported) QCOMPARE(imported->value, value);
        if (settings) QCOMPARE(settings->value, value);
    }

    void numbers_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::optional<double>>("number"); // rounded; nullopt: too large
        const auto row = [](const char* name, const char* text, std::optional<double> n) {
            QTest::newRow(name) << QString::fromUtf8(text) << n;
        };
        row("plain", "15", 15);
        row("negative", "-5", -5);
        row("plus sign", "+7", 7);
        row("trailing text", "12abc", 12);
        row("not a number", "abc", 0);
        row("empty", "", 0);
        row("blank", "   ", 0);
        row("blanks inside are passed over", "1 5", 15);
        row("blank after the sign", "- 5", -5);
        row("1.5 to 2", "1.5", 2);
        row("2.5 to 2", "2.5", 2);
        row("3.5 to 4", "3.5", 4);
        row("-2.5 to -2", "-2.5", -2);
        row("0.5 to 0", "0.5", 0);
        row("2.51 up", "2.51", 3);
        row("point first", ".7", 1);
        row("point alone", ".", 0);
        row("sign alone", "-", 0);
        row("two signs", "--5", 0);
        row("exponent", "1e3", 1000);
        row("exponent with sign", "15E-1", 2);
        row("D exponent", "2d2", 200);
        row("exponent letter without digits", "12e", 12);
        row("exponent sign without digits", "12e+x", 12);
        row("tiny", "1e-400", 0);
        row("huge decimal", "1e400", std::nullopt);
        row("many digits", "99999999999999999999", 1e20);
        row("hex FFFF is -1", "&HFFFF", -1);
        row("hex 8000 is -32768", "&H8000", -32768);
        row("hex 7FFF", "&H7FFF", 32767);
        row("hex lower case", "&hff", 255);
        row("hex digits lower case", "&Hff", 255);
        row("five hex digits", "&H10000", 65536);
        row("hex FF0000", "&HFF0000", 16711680);
        row("eight hex digits", "&HFFFFFFFF", -1);
        row("hex 80000000", "&H80000000", -2147483648.0);
        row("leading zeros don't count", "&H0000FFFF", -1);
        row("hex zero", "&H0", 0);
        row("hex without digits", "&H", 0);
        row("hex stops at a non-digit", "&H1G", 1);
        row("hex with blanks", "&H F F", 255);
        row("nine hex digits", "&H123456789", std::nullopt);
        row("ampersand without H", "&O17", 0);
        row("sign before hex", "-&H1", 0);
    }
    void numbers() {
        QFETCH(QString, text);
        QFETCH(std::optional<double>, number);
        const std::optional<double> read = ItemNumber(text);
        QCOMPARE(read.has_value(), number.has_value());
        if (number) QCOMPARE(*read, *number);
    }

    void colours_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("colour");
        QTest::addColumn<bool>("fits");
        QTest::newRow("FFFF") << "&HFFFF" << 65535 << true;
        QTest::newRow("8000") << "&H8000" << 32768 << true;
        QTest::newRow("FF0000") << "&HFF0000" << 16711680 << true;
        QTest::newRow("lower case") << "&hc0c0c0" << 0xC0C0C0 << true;
        QTest::newRow("0") << "&H0" << 0 << true;
        QTest::newRow("decimal") << "255" << 255 << true;
        QTest::newRow("negative decimal") << "-1" << 65535 << true;
        QTest::newRow("FFFFFFFF") << "&HFFFFFFFF" << 65535 << true;
        QTest::newRow("32-bit negative") << "&HFFFF0000" << 0 << true; // -65536 + 65536
        QTest::newRow("lowest") << "-2147483648" << int(-2147483647 - 1 + 65536) << true;
        QTest::newRow("beyond 32 bits") << "4294967295" << 0 << false;
        QTest::newRow("text") << "red" << 0 << true;
    }
    void colours() {
        QFETCH(QString, text);
        QFETCH(int, colour);
        QFETCH(bool, fits);
        const std::optional<int32_t> read = ItemColor(text);
        QCOMPARE(read.has_value(), fits);
        if (fits) QCOMPARE(*read, colour);
    }

    void keyTable() {
        Style style = Defaults();
        const QString block = QStringLiteral("BeginStyle = Mine\r\n"
                                             "  piecesfile = sheet.gif\r\n"
                                             "  BORDERFILE = /pics/board.bmp\r\n"
                                             "  BackColor = &HC0C0C0\r\n"
                                             "  BorderHeight = 6\r\n"
                                             "  BorderWidth = 10\r\n"
                                             "  CopyCounter = yes\r\n"
                                             "  EnglishNotation = pPsSlLtTdDkK\r\n"
                                             "  FontColor = -1\r\n"
                                             "  FontName = Times New Roman\r\n"
                                             "  FontPos = down right\r\n"
                                             "  FontSize = 11\r\n"
                                             "  FontStyle = bold caps\r\n"
                                             "  FontXBase = 3\r\n"
                                             "  FontYBase = 4\r\n"
                                             "  FrameColor = &HFF\r\n"
                                             "  FrameWidth = 2\r\n"
                                             "  PiecesList = aAbB\r\n"
                                             "  PyDictionary = &&a=Amazon\r\n"
                                             "  ShowGrid = Yes\r\n"
                                             "  SqrHeight = 22\r\n"
                                             "  SqrHTab = 19\r\n"
                                             "  SqrVTab = 21\r\n"
                                             "  SqrHSpc = 2\r\n"
                                             "  SqrVSpc = 3\r\n"
                                             "  SqrWidth = 20\r\n"
                                             "  StartPos = 8/8/8\r\n"
                                             "  WndHeight = 160\r\n"
                                             "  WndWidth = 200\r\n"
                                             "  XBase = 10\r\n"
                                             "  YBase = 11\r\n"
                                             "  StyleName = Other\r\n" // no such key in a block
                                             "EndStyle\r\n");
        QVERIFY(StoreText(style, block, QStringLiteral("/prog/")));
        Style expected = Defaults();
        expected.PiecesFile = QStringLiteral("/prog/sheet.gif");
        expected.BorderFile = QStringLiteral("/pics/board.bmp");
        expected.BackColor = 0xC0C0C0;
        expected.BorderHeight = 6;
        expected.BorderWidth = 10;
        expected.CopyCounter = 1;
        expected.EnglishNotation = QStringLiteral("pPsSlLtTdDkK");
        expected.FontColor = 65535;
        expected.FontName = QStringLiteral("Times New Roman");
        expected.FontPos = QStringLiteral("DOWN RIGHT");
        expected.FontSize = 11;
        expected.FontStyle = QStringLiteral("BOLD CAPS");
        expected.FontXBase = 45;
        expected.FontYBase = 60;
        expected.FrameColor = 255;
        expected.FrameWidth = 2;
        expected.PiecesList = QStringLiteral("aAbB");
        expected.PyDictionary = QStringLiteral("&&a=Amazon");
        expected.ShowGrid = 1;
        expected.SqrHeight = 330;
        expected.SqrHTab = 285;
        expected.SqrVTab = 315;
        expected.SqrHSpc = 30;
        expected.SqrVSpc = 45;
        expected.SqrWidth = 300;
        expected.StartPos = QStringLiteral("8/8/8");
        expected.WndHeight = 2400;
        expected.WndWidth = 3000;
        expected.XBase = 150;
        expected.YBase = 165;
        QCOMPARE(Differences(style, expected), QStringList());
    }

    void yesFieldsAndTextCuts() {
        Style style = Defaults();
        QVERIFY(StoreText(style, QStringLiteral("CopyCounter = No\r\nShowGrid = 1\r\n"
                                                "ShowGrid = yes please\r\n")));
        QCOMPARE(style.CopyCounter, int16_t(0));
        QCOMPARE(style.ShowGrid, int16_t(0));
        QVERIFY(StoreText(style, QStringLiteral("CopyCounter = YeS")));
        QCOMPARE(style.CopyCounter, int16_t(1));
        // A value can't hold a comma or a semicolon unless the whole item is quoted.
        QVERIFY(StoreText(style, QStringLiteral("PiecesList = pP,nN")));
        QCOMPARE(style.PiecesList, QStringLiteral("pP"));
        QVERIFY(StoreText(style, QStringLiteral("PiecesList = xX;yY")));
        QCOMPARE(style.PiecesList, QStringLiteral("xX"));
        QVERIFY(StoreText(style, QStringLiteral("\"PiecesList = a,A\"")));
        QCOMPARE(style.PiecesList, QStringLiteral("a,A"));
        // The half of a comment behind a comma is an item of its own.
        QVERIFY(StoreText(style, QStringLiteral("SqrWidth = 20 ; was 15, SqrHeight = 30")));
        QCOMPARE(style.SqrWidth, int16_t(300));
        QCOMPARE(style.SqrHeight, int16_t(450));
        // Lengths are rounded pixels before they become twips.
        QVERIFY(StoreText(style, QStringLiteral("XBase = 2.5, YBase = 3.5")));
        QCOMPARE(style.XBase, int16_t(30));
        QCOMPARE(style.YBase, int16_t(60));
    }

    void paths_data() {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("stored");
        QTest::newRow("bare name completed") << "sheet.gif"
                                             << "/prog/"
                                             << "/prog/sheet.gif";
        QTest::newRow("relative folder kept") << "sheets/a.gif"
                                              << "/prog/"
                                              << "sheets/a.gif";
        QTest::newRow("absolute kept") << "/usr/share/a.gif"
                                       << "/prog/"
                                       << "/usr/share/a.gif";
        QTest::newRow("colon is no separator here") << "C:sheet.gif"
                                                    << "/prog/"
                                                    << "/prog/C:sheet.gif";
        QTest::newRow("importer keeps bare") << "sheet.gif"
                                             << ""
                                             << "sheet.gif";
        QTest::newRow("empty stays empty") << ""
                                           << "/prog/"
                                           << "";
    }
    void paths() {
        QFETCH(QString, value);
        QFETCH(QString, folder);
        QFETCH(QString, stored);
        for (const QString& key : {QStringLiteral("PIECESFILE"), QStringLiteral("BORDERFILE")}) {
            Style style = Defaults();
            QCOMPARE(StoreStyleKey(style, {key, value}, folder), StoreResult::Stored);
            QCOMPARE(key == u"PIECESFILE" ? style.PiecesFile : style.BorderFile, stored);
        }
    }

    void valuesThatDontFit_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("fits");
        QTest::newRow("2184 pixels fit") << "SQRWIDTH"
                                         << "2184" << true;
        QTest::newRow("2185 pixels don't") << "SQRWIDTH"
                                           << "2185" << false;
        QTest::newRow("-2184 pixels fit") << "XBASE"
                                          << "-2184" << true;
        QTest::newRow("-2185 pixels don't") << "FONTYBASE"
                                            << "-2185" << false;
        QTest::newRow("2184.4 rounds into range") << "SQRHTAB"
                                                  << "2184.4" << true;
        QTest::newRow("count 32767") << "BORDERWIDTH"
                                     << "32767" << true;
        QTest::newRow("count 32768") << "BORDERHEIGHT"
                                     << "32768" << false;
        QTest::newRow("count -32768") << "FRAMEWIDTH"
                                      << "-32768" << true;
        QTest::newRow("count -32769") << "FONTSIZE"
                                      << "-32769" << false;
        QTest::newRow("hex count -1") << "BORDERWIDTH"
                                      << "&HFFFF" << true;
        QTest::newRow("32-bit length at the limit") << "WNDWIDTH"
                                                    << "143165576" << true;
        QTest::newRow("32-bit length beyond") << "WNDHEIGHT"
                                              << "143165577" << false;
        QTest::newRow("32-bit colour beyond") << "BACKCOLOR"
                                              << "2147483648" << false;
        QTest::newRow("nine hex digits") << "FRAMECOLOR"
                                         << "&H100000000" << false;
        QTest::newRow("huge decimal") << "SQRVSPC"
                                      << "1e999" << false;
        QTest::newRow("huge text value is only text") << "PIECESLIST"
                                                      << "1e999" << true;
        QTest::newRow("unknown key") << "SQRBORDER"
                                     << "99999" << true;
    }
    void valuesThatDontFit() {
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(bool, fits);
        Style style = Defaults();
        const Style before = style;
        const StoreResult result = StoreStyleKey(style, {key, value}, QString());
        QCOMPARE(result != StoreResult::Fault, fits);
        if (!fits) QCOMPARE(Differences(style, before), QStringList());
    }

    void writeSample() {
        Style style = DrawnSample();
        QCOMPARE(WriteStyleBlock(style), QStringLiteral("BeginStyle = Sample\r\n"
                                                        "  PiecesFile = pieces.bmp\r\n"
                                                        "  SqrWidth = 15 \r\n"
                                                        "  SqrHeight = 15 \r\n"
                                                        "EndStyle\r\n"));
    }

    void writeEveryLine() {
        Style style = Defaults();
        QVERIFY(StoreText(style, QStringLiteral("PiecesFile = /p/pieces.gif\n"
                                                "BorderFile = /p/board.bmp\n"
                                                "SqrWidth = 20\nSqrHeight = 22\n"
                                                "SqrHTab = 19\nSqrVTab = 21\n"
                                                "SqrHSpc = 2\nSqrVSpc = 3\n"
                                                "XBase = 10\nYBase = 11\n"
                                                "BorderWidth = 10\nBorderHeight = 6\n"
                                                "PiecesList = pPnNbBrRqQkKaA\n"
                                                "EnglishNotation = pPsSlLtTdDkKaA\n"
                                                "PyDictionary = &&a=Amazon\n"
                                                "StartPos = 8/8\n"
                                                "CopyCounter = Yes\n"
                                                "BackColor = &HC0C0C0\n"
                                                "FrameWidth = 2\nFrameColor = &HFF\n"
                                                "WndWidth = 200\nWndHeight = 160\n"
                                                "ShowGrid = Yes\nFontName = Arial\n"
                                                "FontColor = &H80\nFontSize = 10\n"
                                                "FontStyle = bold caps\nFontPos = down right\n"
                                                "FontXBase = 3\nFontYBase = 4\n")));
        style.StyleName = QStringLiteral("Full");
        const Style written = style;
        QCOMPARE(Lines(WriteStyleBlock(style)), QStringList({
                                                    "BeginStyle = Full",
                                                    "  PiecesFile = /p/pieces.gif",
                                                    "  BorderFile = /p/board.bmp",
                                                    "  SqrWidth = 20 ",
                                                    "  SqrHeight = 22 ",
                                                    "  SqrHTab = 19 ",
                                                    "  SqrVTab = 21 ",
                                                    "  SqrHSpc = 2 ",
                                                    "  SqrVSpc = 3 ",
                                                    "  XBase = 10 ",
                                                    "  YBase = 11 ",
                                                    "  BorderWidth = 10 ",
                                                    "  BorderHeight = 6 ",
                                                    "  PiecesList = pPnNbBrRqQkKaA",
                                                    "  EnglishNotation = pPsSlLtTdDkKaA",
                                                    "  PyDictionary = &&a=Amazon",
                                                    "  StartPos = 8/8",
                                                    "  CopyCounter = Yes",
                                                    "  BackColor = &HC0C0C0",
                                                    "  FrameWidth = 2 ",
                                                    "  FrameColor = &HFF",
                                                    "  WndWidth = 200 ",
                                                    "  WndHeight = 160 ",
                                                    "  ShowGrid = Yes",
                                                    "    FontName = Arial",
                                                    "    FontColor = &H80",
                                                    "    FontSize = 10 ",
                                                    "    FontStyle = BOLD CAPS",
                                                    "    FontPos = DOWN RIGHT",
                                                    "    FontXBase = 3 ",
                                                    "    FontYBase = 4 ",
                                                    "EndStyle",
                                                }));
        QCOMPARE(Differences(style, written), QStringList()); // a legal board stays as it is
    }

    void conditionalLines_data() {
        // Setup items on top of the drawn sample; lines that must be there,
        // and beginnings of lines that must not.
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QStringList>("present");
        QTest::addColumn<QStringList>("absent");
        QTest::newRow("black frame")
            << "FrameWidth = 1" << QStringList{"  FrameWidth = 1 ", "  FrameColor = &H0"}
            << QStringList{};
        QTest::newRow("frame colour without frame is lost")
            << "FrameColor = &HFF" << QStringList{} << QStringList{"  FrameColor", "  FrameWidth"};
        QTest::newRow("back colour 0 isn't written")
            << "BackColor = 0" << QStringList{} << QStringList{"  BackColor"};
        QTest::newRow("back colour from a negative number")
            << "BackColor = -1" << QStringList{"  BackColor = &HFFFF"} << QStringList{};
        QTest::newRow("grid off drops the font lines")
            << "FontName = Arial, FontSize = 12, FontColor = 255" << QStringList{}
            << QStringList{"  ShowGrid", "    Font"};
        QTest::newRow("grid on prints the defaults")
            << "ShowGrid = yes"
            << QStringList{"  ShowGrid = Yes", "    FontName = MS Sans Serif", "    FontSize = 8 ",
                           "    FontPos = Left Up"}
            << QStringList{"    FontColor", "    FontStyle", "    FontXBase", "    FontYBase"};
        QTest::newRow("grid on, empty font fields")
            << "ShowGrid = yes, FontName =, FontSize = 0, FontPos ="
            << QStringList{"  ShowGrid = Yes"}
            << QStringList{"    FontName", "    FontSize", "    FontPos"};
        QTest::newRow("negative number")
            << "SqrHTab = -5" << QStringList{"  SqrHTab =-5 "} << QStringList{};
        QTest::newRow("negative lengths not printed")
            << "XBase = -3, YBase = -1, SqrHSpc = -2, SqrVSpc = -2" << QStringList{}
            << QStringList{"  XBase", "  YBase", "  SqrHSpc", "  SqrVSpc"};
        QTest::newRow("tab equal to the square isn't printed")
            << "SqrWidth = 20, SqrHTab = 20" << QStringList{"  SqrWidth = 20 "}
            << QStringList{"  SqrHTab"};
        QTest::newRow("one count only") << "BorderWidth = 10" << QStringList{"  BorderWidth = 10 "}
                                        << QStringList{"  BorderHeight"};
        QTest::newRow("pieces list in other case")
            << "PiecesList = PPNNBBRRQQKK" << QStringList{"  PiecesList = PPNNBBRRQQKK"}
            << QStringList{"  EnglishNotation"};
        QTest::newRow("start position")
            << "StartPos = 8/8/8/8/8/8/8/K7" << QStringList{"  StartPos = 8/8/8/8/8/8/8/K7"}
            << QStringList{};
        QTest::newRow("no border file") << "" << QStringList{}
                                        << QStringList{"  BorderFile", "  PyDictionary",
                                                       "  StartPos", "  CopyCounter", "  Wnd"};
        QTest::newRow("a larger board changes the worked-out size")
            << "BorderWidth = 9" << QStringList{"  WndWidth = 124 "} << QStringList{"  WndHeight"};
    }
    void conditionalLines() {
        QFETCH(QString, setup);
        QFETCH(QStringList, present);
        QFETCH(QStringList, absent);
        Style style = DrawnSample();
        QVERIFY(StoreText(style, setup));
        const QStringList lines = Lines(WriteStyleBlock(style));
        for (const QString& line : present)
            QVERIFY2(lines.contains(line), qPrintable(line));
        for (const QString& start : absent)
            for (const QString& line : lines)
                QVERIFY2(!line.startsWith(start), qPrintable(line));
    }

    void sizeBeforeTheFirstDrawIsPrintedAsZero() {
        Style style = DrawnSample();
        style.WndWidth = 0;
        style.WndHeight = 0;
        const QStringList lines = Lines(WriteStyleBlock(style));
        QVERIFY(lines.contains(QStringLiteral("  WndWidth = 0 ")));
        QVERIFY(lines.contains(QStringLiteral("  WndHeight = 0 ")));
        Style read = Defaults();
        read.WndWidth = 1;
        QVERIFY(StoreText(read, lines.join(QStringLiteral("\r\n"))));
        QCOMPARE(read.WndWidth, 0);
        QCOMPARE(read.WndHeight, 0);
    }

    void boardsOfMoreThan400Squares_data() {
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("columns");
        QTest::addColumn<bool>("fallsBack");
        QTest::newRow("21 x 20") << 21 << 20 << true;
        QTest::newRow("1 x 401") << 1 << 401 << true;
        QTest::newRow("20 x 20 is the largest") << 20 << 20 << false;
        QTest::newRow("largest counts") << 32767 << 32767 << true;
        QTest::newRow("lowest counts") << -32768 << -32768 << true;
    }
    void boardsOfMoreThan400Squares() {
        QFETCH(int, rows);
        QFETCH(int, columns);
        QFETCH(bool, fallsBack);
        Style style = DrawnSample();
        style.BorderHeight = static_cast<int16_t>(rows);
        style.BorderWidth = static_cast<int16_t>(columns);
        const QStringList lines = Lines(WriteStyleBlock(style));
        // The block keeps the numbers as they were.
        QVERIFY(lines.contains(QStringLiteral("  BorderWidth =") +
                               (columns < 0 ? QString() : QStringLiteral(" ")) +
                               QString::number(columns) + QLatin1Char(' ')));
        QVERIFY(lines.contains(QStringLiteral("  BorderHeight =") +
                               (rows < 0 ? QString() : QStringLiteral(" ")) +
                               QString::number(rows) + QLatin1Char(' ')));
        if (fallsBack) {
            QCOMPARE(style.BorderHeight, int16_t(8));
            QCOMPARE(style.BorderWidth, int16_t(8));
            // The size is worked out for the 8 x 8 board: the drawn size matches.
            QVERIFY(!lines.join(u'|').contains(QStringLiteral("Wnd")));
        } else {
            QCOMPARE(style.BorderHeight, int16_t(rows));
            QCOMPARE(style.BorderWidth, int16_t(columns));
        }
    }

    void boardsWithoutColumnsOrWithNegativeCounts() {
        // No column: no division; the size is worked out as the draw does it,
        // one step back across and seven down.
        Style style = DrawnSample();
        style.BorderWidth = 0;
        style.WndWidth = 60;
        const QStringList lines = Lines(WriteStyleBlock(style));
        QVERIFY(lines.contains(QStringLiteral("  BorderWidth = 0 ")));
        QVERIFY(!lines.join(u'|').contains(QStringLiteral("Wnd")));
        QCOMPARE(style.BorderWidth, int16_t(0));

        const std::initializer_list<std::pair<int, int>> counts{
            {8, -1}, {-1, 8}, {1, -32768}, {0, 0}};
        for (const auto& [rows, columns] : counts) {
            Style odd = DrawnSample();
            odd.BorderHeight = static_cast<int16_t>(rows);
            odd.BorderWidth = static_cast<int16_t>(columns);
            QVERIFY(WriteStyleBlock(odd).endsWith(QStringLiteral("EndStyle\r\n")));
        }
    }

    void roundTrip() {
        Style style = Defaults();
        QVERIFY(StoreText(style, QStringLiteral("PiecesFile = /p/pieces.gif, BorderFile = b.bmp\n"
                                                "SqrWidth = 20, SqrHeight = 22, SqrHTab = 19\n"
                                                "SqrVTab = 0, SqrHSpc = 2, SqrVSpc = 3\n"
                                                "XBase = 10, YBase = 11\n"
                                                "BorderWidth = 12, BorderHeight = 1\n"
                                                "PiecesList = pPnNbBrRqQkKaAzZ\n"
                                                "EnglishNotation = pPnNbBrRqQkKaAcC\n"
                                                "PyDictionary = &&a=Amazon&&z=Zebra\n"
                                                "StartPos = kK/8\nCopyCounter = Yes\n"
                                                "BackColor = &HFFFFFF, FrameWidth = 3\n"
                                                "FrameColor = &H0, WndWidth = 600\n"
                                                "WndHeight = 2184, ShowGrid = Yes\n"
                                                "FontName = Courier New, FontColor = &HFF00\n"
                                                "FontSize = 14, FontStyle = ITALIC UNDERLINE\n"
                                                "FontPos = MIDDLE CENTER\n"
                                                "FontXBase = 7, FontYBase = 2184\n")));
        style.StyleName = QStringLiteral("Round Trip");
        const Style original = style;
        const QString block = WriteStyleBlock(style);
        Style read = Defaults();
        read.StyleName = QStringLiteral("Round Trip");
        QVERIFY(StoreText(read, block, QString(), KeylessItems::AsKey));
        QCOMPARE(Differences(read, original), QStringList());
        // And once more from what was read.
        QCOMPARE(WriteStyleBlock(read), block);
    }
};

QTEST_APPLESS_MAIN(TstStyleBlock)
#include "tst_style_block.moc"
