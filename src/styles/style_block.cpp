#include "styles/style_block.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

namespace marlith {

namespace {

// Windows-1252 differs from Latin-1 in 0x80..0x9F alone; its five unused
// codes keep their Latin-1 value.
constexpr std::array<char16_t, 32> kWindows1252High = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

QString decodeWindows1252(QByteArrayView bytes) {
    QString text(bytes.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto b = static_cast<unsigned char>(bytes[i]);
        text[i] = QChar(b >= 0x80 && b < 0xA0 ? kWindows1252High[b - 0x80] : char16_t(b));
    }
    return text;
}

char encodeWindows1252(QChar c) {
    const char16_t u = c.unicode();
    if (u < 0x80 || (u >= 0xA0 && u <= 0xFF)) return static_cast<char>(u);
    for (size_t i = 0; i < kWindows1252High.size(); ++i)
        if (kWindows1252High[i] == u) return static_cast<char>(0x80 + i);
    return '?';
}

bool isBlank(QChar c) {
    return c == u' ' || c == u'\t';
}

template <typename Strip> QString trimWhile(QStringView text, Strip strip) {
    qsizetype start = 0;
    qsizetype end = text.size();
    while (start < end && strip(text[start]))
        ++start;
    while (end > start && strip(text[end - 1]))
        --end;
    return text.mid(start, end - start).toString();
}

bool isLineEnd(QChar c) {
    return c == u'\r' || c == u'\n';
}

bool endsItem(QChar c) {
    return c == u',' || isLineEnd(c);
}

// Reads a value character by character, passing over blanks, tabs and line
// ends wherever they stand, as the old number reader did ("1 5" is 15).
class NumberCursor {
  public:
    explicit NumberCursor(QStringView text) : text_(text) {}
    QChar peek() {
        while (pos_ < text_.size() && (isBlank(text_[pos_]) || isLineEnd(text_[pos_])))
            ++pos_;
        return pos_ < text_.size() ? text_[pos_] : QChar();
    }
    void take() { ++pos_; }
    qsizetype mark() const { return pos_; }
    void back(qsizetype mark) { pos_ = mark; }

  private:
    QStringView text_;
    qsizetype pos_ = 0;
};

int hexDigit(QChar c) {
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9') return u - u'0';
    if (u >= u'a' && u <= u'f') return u - u'a' + 10;
    if (u >= u'A' && u <= u'F') return u - u'A' + 10;
    return -1;
}

bool isDigit(QChar c) {
    return c.unicode() >= u'0' && c.unicode() <= u'9';
}

// Leading zeros don't count: "&H00FFFF" is the 16-bit -1 like "&HFFFF".
std::optional<double> readHex(NumberCursor& cursor) {
    uint64_t value = 0;
    int significant = 0;
    for (int digit = hexDigit(cursor.peek()); digit >= 0; digit = hexDigit(cursor.peek())) {
        cursor.take();
        if (significant == 0 && digit == 0) continue;
        if (++significant > 8) return std::nullopt;
        value = value * 16 + static_cast<uint64_t>(digit);
    }
    if (significant <= 4) {
        const long long v = static_cast<long long>(value);
        return static_cast<double>(v >= 0x8000 ? v - 0x10000 : v);
    }
    const long long v = static_cast<long long>(value);
    return static_cast<double>(v >= 0x80000000LL ? v - 0x100000000LL : v);
}

std::optional<double> readDecimal(NumberCursor& cursor) {
    bool negative = false;
    if (cursor.peek() == u'+' || cursor.peek() == u'-') {
        negative = cursor.peek() == u'-';
        cursor.take();
    }
    std::string whole;
    std::string fraction;
    while (isDigit(cursor.peek())) {
        whole += static_cast<char>(cursor.peek().unicode());
        cursor.take();
    }
    if (cursor.peek() == u'.') {
        cursor.take();
        while (isDigit(cursor.peek())) {
            fraction += static_cast<char>(cursor.peek().unicode());
            cursor.take();
        }
    }
    if (whole.empty() && fraction.empty()) return 0.0;

    // An exponent letter counts only with a digit behind it: "1e" is 1.
    long long exponent = 0;
    const qsizetype beforeExponent = cursor.mark();
    const QChar letter = cursor.peek().toUpper();
    if (letter == u'E' || letter == u'D') {
        cursor.take();
        bool negativeExponent = false;
        if (cursor.peek() == u'+' || cursor.peek() == u'-') {
            negativeExponent = cursor.peek() == u'-';
            cursor.take();
        }
        if (!isDigit(cursor.peek())) {
            cursor.back(beforeExponent);
        } else {
            // Far beyond any double: saturating keeps the arithmetic defined.
            constexpr long long kExponentCap = 1000000;
            while (isDigit(cursor.peek())) {
                exponent = std::min(kExponentCap, exponent * 10 + (cursor.peek().unicode() - u'0'));
                cursor.take();
            }
            if (negativeExponent) exponent = -exponent;
        }
    }

    const std::string text = (whole.empty() ? std::string("0") : whole) + "." + fraction + "e" +
                             std::to_string(exponent);
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    (void)end;
    if (error == std::errc::result_out_of_range) {
        // Out of range either way: too small is 0, too large is no number.
        const std::string digits = whole + fraction;
        const auto first = digits.find_first_not_of('0');
        if (first == std::string::npos) return 0.0;
        const long long order =
            static_cast<long long>(whole.size()) - static_cast<long long>(first) - 1 + exponent;
        if (order < 0) return 0.0;
        return std::nullopt;
    }
    if (error != std::errc()) return 0.0;
    return (negative ? -value : value) + 0.0; // + 0.0: no negative zero
}

bool fits(double value, double low, double high) {
    return value >= low && value <= high;
}

constexpr double kMin16 = std::numeric_limits<int16_t>::min();
constexpr double kMax16 = std::numeric_limits<int16_t>::max();
constexpr double kMin32 = std::numeric_limits<int32_t>::min();
constexpr double kMax32 = std::numeric_limits<int32_t>::max();

// The old readers took a value as a path of the program folder when it named
// no folder; "/" is the only separator here. An empty value stays empty, so a
// style without a sheet doesn't name the folder itself as one.
QString completePath(const QString& value, const QString& folder) {
    if (folder.isEmpty() || value.isEmpty() || value.contains(u'/')) return value;
    return folder + value;
}

// " 15 " or "-5 ": the sign's place, the digits, one blank behind.
QString freeNumber(long long n) {
    return (n < 0 ? QString() : QStringLiteral(" ")) + QString::number(n) + QLatin1Char(' ');
}

QString pixelsOf(long long twips) {
    return freeNumber(static_cast<long long>(twipsToPixels(static_cast<double>(twips))));
}

QString hex(int32_t colour) {
    return QString::number(static_cast<uint32_t>(colour), 16).toUpper();
}

} // namespace

bool isValidUtf8(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString ignored = decoder.decode(bytes);
    return !decoder.hasError();
}

QString decodeStyleText(const QByteArray& bytes) {
    QString text;
    text.reserve(bytes.size());
    qsizetype start = 0;
    while (start < bytes.size()) {
        qsizetype end = bytes.indexOf('\n', start);
        end = end < 0 ? bytes.size() : end + 1;
        const QByteArray line = bytes.mid(start, end - start);
        text += isValidUtf8(line) ? QString::fromUtf8(line) : decodeWindows1252(line);
        start = end;
    }
    return text;
}

QByteArray encodeStyleText(const QString& text, bool windows1252) {
    if (!windows1252) return text.toUtf8();
    QByteArray bytes(text.size(), Qt::Uninitialized);
    for (qsizetype i = 0; i < text.size(); ++i)
        bytes[i] = encodeWindows1252(text[i]);
    return bytes;
}

bool ItemSplitter::next(QString& item) {
    const qsizetype n = text_.size();
    while (pos_ < n) {
        while (pos_ < n && isBlank(text_[pos_]))
            ++pos_;
        if (pos_ >= n) break;
        if (endsItem(text_[pos_])) {
            ++pos_;
            continue;
        }
        if (text_[pos_] == u'"') {
            const qsizetype close = text_.indexOf(u'"', pos_ + 1);
            const qsizetype end = close < 0 ? n : close;
            item = text_.mid(pos_ + 1, end - pos_ - 1).toString();
            pos_ = close < 0 ? n : close + 1;
        } else {
            const qsizetype start = pos_;
            while (pos_ < n && !endsItem(text_[pos_]))
                ++pos_;
            item = text_.mid(start, pos_ - start).toString();
        }
        while (pos_ < n && !endsItem(text_[pos_]))
            ++pos_;
        if (pos_ < n && text_[pos_] == u',') ++pos_;
        if (!item.isEmpty()) return true;
    }
    return false;
}

QStringList splitItems(QStringView text) {
    QStringList items;
    ItemSplitter splitter(text);
    QString item;
    while (splitter.next(item))
        items.append(item);
    return items;
}

QString trimBlanks(QStringView text) {
    return trimWhile(text, isBlank);
}

QString trimSpaces(QStringView text) {
    return trimWhile(text, [](QChar c) { return c == u' '; });
}

ValueFault settingsValueFault(QStringView value) {
    const auto holds = [value](auto&& test) {
        return std::any_of(value.begin(), value.end(), test);
    };
    // Unicode's own line and paragraph separators end a line for an editor,
    // if not for the reader.
    if (holds([](QChar c) {
            return c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
                   c == QChar::ParagraphSeparator;
        }))
        return ValueFault::LineBreak;
    const std::pair<QChar, ValueFault> signs[] = {{u',', ValueFault::ItemSeparator},
                                                  {u';', ValueFault::Comment},
                                                  {u'=', ValueFault::KeySeparator},
                                                  {u'"', ValueFault::Quote}};
    for (const auto& [sign, fault] : signs)
        if (value.contains(sign)) return fault;
    if (!value.isEmpty() && (isBlank(value.front()) || isBlank(value.back())))
        return ValueFault::OuterBlank;
    return ValueFault::None;
}

QString valueFaultText(ValueFault fault) {
    switch (fault) {
    case ValueFault::LineBreak:
        return QStringLiteral("a line break");
    case ValueFault::ItemSeparator:
        return QStringLiteral("\",\"");
    case ValueFault::Comment:
        return QStringLiteral("\";\"");
    case ValueFault::KeySeparator:
        return QStringLiteral("\"=\"");
    case ValueFault::Quote:
        return QStringLiteral("a double quote");
    case ValueFault::OuterBlank:
        return QStringLiteral("a blank at its start or end");
    case ValueFault::None:
        break;
    }
    return {};
}

QString styleNameRefusal(QStringView name) {
    const ValueFault fault = settingsValueFault(name);
    if (fault == ValueFault::None) return {};
    return QStringLiteral("The style name can't hold %1!").arg(valueFaultText(fault));
}

QString styleRefusal(const Style& style) {
    if (QString refusal = styleNameRefusal(style.StyleName); !refusal.isEmpty()) return refusal;
    const std::pair<const char*, const QString*> fields[] = {
        {"PiecesFile", &style.PiecesFile},     {"BorderFile", &style.BorderFile},
        {"PiecesList", &style.PiecesList},     {"EnglishNotation", &style.EnglishNotation},
        {"FontName", &style.FontName},         {"FontPos", &style.FontPos},
        {"FontStyle", &style.FontStyle},       {"StartPos", &style.StartPos},
        {"PyDictionary", &style.PyDictionary}, {"PiecesFont", &style.PiecesFont},
        {"PiecesSigns", &style.PiecesSigns}};
    for (const auto& [key, value] : fields) {
        // Behind the key, "=" and quotes read back as they were written.
        QString text = *value;
        text.remove(u'=').remove(u'"');
        const ValueFault fault = settingsValueFault(text);
        if (fault != ValueFault::None)
            return QStringLiteral("The style's %1 can't hold %2!")
                .arg(QLatin1String(key), valueFaultText(fault));
    }
    return {};
}

std::optional<StyleItem> parseItem(QStringView item, KeylessItems keyless) {
    while (!item.isEmpty() && isBlank(item.front()))
        item = item.mid(1);
    // A ";" in the first place keeps the item whole: its key then begins with
    // ";" and matches nothing, which makes such a line a comment too.
    const qsizetype semicolon = item.indexOf(u';');
    if (semicolon > 0) item = item.left(semicolon);
    const QString text = trimBlanks(item);
    if (text.isEmpty()) return std::nullopt;
    const qsizetype equals = text.indexOf(u'=');
    if (equals >= 1)
        return StyleItem{trimBlanks(QStringView(text).left(equals)).toUpper(),
                         trimBlanks(QStringView(text).mid(equals + 1))};
    if (keyless == KeylessItems::AsKey) return StyleItem{text.toUpper(), QString()};
    return std::nullopt;
}

std::optional<double> readNumber(QStringView text) {
    NumberCursor cursor(text);
    if (cursor.peek() == u'&') {
        cursor.take();
        if (cursor.peek().toUpper() != u'H') return 0.0;
        cursor.take();
        return readHex(cursor);
    }
    return readDecimal(cursor);
}

double roundHalfEven(double value) {
    const double below = std::floor(value);
    const double rest = value - below;
    if (rest > 0.5) return below + 1.0;
    if (rest < 0.5) return below;
    return std::fmod(below, 2.0) == 0.0 ? below : below + 1.0;
}

std::optional<double> itemNumber(QStringView value) {
    const std::optional<double> number = readNumber(value);
    if (!number) return std::nullopt;
    return roundHalfEven(*number) + 0.0;
}

std::optional<int32_t> itemColor(QStringView value) {
    const std::optional<double> number = itemNumber(value);
    if (!number || !fits(*number, kMin32, kMax32)) return std::nullopt;
    const int32_t colour = static_cast<int32_t>(*number);
    return colour < 0 ? colour + 65536 : colour;
}

StoreResult storeStyleKey(Style& style, const StyleItem& item, const QString& folderForBarePaths) {
    const QString& key = item.key;
    const QString& value = item.value;

    const auto number16 = [&](int16_t& field) {
        const std::optional<double> n = itemNumber(value);
        if (!n || !fits(*n, kMin16, kMax16)) return StoreResult::Fault;
        field = static_cast<int16_t>(*n);
        return StoreResult::Stored;
    };
    // A pixel value above 2184 doesn't fit a 16-bit twips field.
    const auto twips16 = [&](int16_t& field) {
        const std::optional<double> n = itemNumber(value);
        if (!n || !fits(*n * kTwipsPerPixel, kMin16, kMax16)) return StoreResult::Fault;
        field = static_cast<int16_t>(*n * kTwipsPerPixel);
        return StoreResult::Stored;
    };
    const auto twips32 = [&](int32_t& field) {
        const std::optional<double> n = itemNumber(value);
        if (!n || !fits(*n * kTwipsPerPixel, kMin32, kMax32)) return StoreResult::Fault;
        field = static_cast<int32_t>(*n * kTwipsPerPixel);
        return StoreResult::Stored;
    };
    const auto colour = [&](int32_t& field) {
        const std::optional<int32_t> c = itemColor(value);
        if (!c) return StoreResult::Fault;
        field = *c;
        return StoreResult::Stored;
    };
    const auto text = [&](QString& field, const QString& v) {
        field = v;
        return StoreResult::Stored;
    };
    const auto yes = [&](int16_t& field) {
        if (value.toUpper() != u"YES") return StoreResult::Ignored;
        field = 1;
        return StoreResult::Stored;
    };

    if (key == u"BORDERFILE")
        return text(style.BorderFile, completePath(value, folderForBarePaths));
    if (key == u"PIECESFILE")
        return text(style.PiecesFile, completePath(value, folderForBarePaths));
    if (key == u"BACKCOLOR") return colour(style.BackColor);
    if (key == u"BORDERHEIGHT") return number16(style.BorderHeight);
    if (key == u"BORDERWIDTH") return number16(style.BorderWidth);
    if (key == u"COPYCOUNTER") return yes(style.CopyCounter);
    if (key == u"ENGLISHNOTATION") return text(style.EnglishNotation, value);
    if (key == u"FONTCOLOR") return colour(style.FontColor);
    if (key == u"FONTNAME") return text(style.FontName, value);
    if (key == u"FONTPOS") return text(style.FontPos, value.toUpper());
    if (key == u"FONTSIZE") return number16(style.FontSize);
    if (key == u"FONTSTYLE") return text(style.FontStyle, value.toUpper());
    if (key == u"FONTXBASE") return twips16(style.FontXBase);
    if (key == u"FONTYBASE") return twips16(style.FontYBase);
    if (key == u"FRAMECOLOR") return colour(style.FrameColor);
    if (key == u"FRAMEWIDTH") return number16(style.FrameWidth);
    if (key == u"PIECESLIST") return text(style.PiecesList, value);
    if (key == u"PIECESFONT") return text(style.PiecesFont, value);
    if (key == u"PIECESSIGNS") return text(style.PiecesSigns, value);
    if (key == u"LIGHTCOLOR") return colour(style.LightColor);
    if (key == u"DARKCOLOR") return colour(style.DarkColor);
    if (key == u"DARKHATCH") return yes(style.DarkHatch);
    if (key == u"PYDICTIONARY") return text(style.PyDictionary, value);
    if (key == u"SHOWGRID") return yes(style.ShowGrid);
    if (key == u"SQRHEIGHT") return twips16(style.SqrHeight);
    if (key == u"SQRHTAB") return twips16(style.SqrHTab);
    if (key == u"SQRVTAB") return twips16(style.SqrVTab);
    if (key == u"SQRHSPC") return twips16(style.SqrHSpc);
    if (key == u"SQRVSPC") return twips16(style.SqrVSpc);
    if (key == u"SQRWIDTH") return twips16(style.SqrWidth);
    if (key == u"STARTPOS") return text(style.StartPos, value);
    if (key == u"WNDHEIGHT") return twips32(style.WndHeight);
    if (key == u"WNDWIDTH") return twips32(style.WndWidth);
    if (key == u"XBASE") return twips16(style.XBase);
    if (key == u"YBASE") return twips16(style.YBase);
    return StoreResult::Ignored;
}

QList<StyleBitmap> styleBitmaps(QStringView text) {
    QList<StyleBitmap> bitmaps;
    ItemSplitter items(text);
    QString raw;
    QString style;
    while (items.next(raw)) {
        const std::optional<StyleItem> item = parseItem(raw, KeylessItems::Skip);
        if (!item) continue;
        if (item->key == u"BEGINSTYLE")
            style = item->value.toUpper();
        else if (item->key == u"PIECESFILE" || item->key == u"BORDERFILE")
            bitmaps.append({style, item->value});
    }
    return bitmaps;
}

QString writeStyleBlock(Style& style) {
    QString block;
    const auto line = [&block](const QString& text) { block += text + QStringLiteral("\r\n"); };
    const QString defaultPieces = QString::fromLatin1(kDefaultPiecesList);

    line(QStringLiteral("BeginStyle = ") + style.StyleName);
    if (!style.PiecesFile.isEmpty()) line(QStringLiteral("  PiecesFile = ") + style.PiecesFile);
    if (!style.BorderFile.isEmpty()) line(QStringLiteral("  BorderFile = ") + style.BorderFile);
    if (!style.PiecesFont.isEmpty()) {
        line(QStringLiteral("  PiecesFont = ") + style.PiecesFont);
        line(QStringLiteral("  LightColor = &H") + hex(style.LightColor));
        line(QStringLiteral("  DarkColor = &H") + hex(style.DarkColor));
        if (style.DarkHatch > 0) line(QStringLiteral("  DarkHatch = Yes"));
        if (!style.PiecesSigns.isEmpty())
            line(QStringLiteral("  PiecesSigns = ") + style.PiecesSigns);
    }
    line(QStringLiteral("  SqrWidth =") + pixelsOf(style.SqrWidth));
    line(QStringLiteral("  SqrHeight =") + pixelsOf(style.SqrHeight));
    if (style.SqrHTab != style.SqrWidth)
        line(QStringLiteral("  SqrHTab =") + pixelsOf(style.SqrHTab));
    if (style.SqrVTab != style.SqrHeight)
        line(QStringLiteral("  SqrVTab =") + pixelsOf(style.SqrVTab));
    if (style.SqrHSpc > 0) line(QStringLiteral("  SqrHSpc =") + pixelsOf(style.SqrHSpc));
    if (style.SqrVSpc > 0) line(QStringLiteral("  SqrVSpc =") + pixelsOf(style.SqrVSpc));
    if (style.XBase > 0) line(QStringLiteral("  XBase =") + pixelsOf(style.XBase));
    if (style.YBase > 0) line(QStringLiteral("  YBase =") + pixelsOf(style.YBase));
    if (style.BorderWidth != 8)
        line(QStringLiteral("  BorderWidth =") + freeNumber(style.BorderWidth));
    if (style.BorderHeight != 8)
        line(QStringLiteral("  BorderHeight =") + freeNumber(style.BorderHeight));
    if (style.PiecesList != defaultPieces)
        line(QStringLiteral("  PiecesList = ") + style.PiecesList);
    if (style.EnglishNotation != defaultPieces)
        line(QStringLiteral("  EnglishNotation = ") + style.EnglishNotation);
    if (!style.PyDictionary.isEmpty())
        line(QStringLiteral("  PyDictionary = ") + style.PyDictionary);
    if (style.StartPos != QLatin1String(kDefaultStartPos))
        line(QStringLiteral("  StartPos = ") + style.StartPos);
    if (style.CopyCounter > 0) line(QStringLiteral("  CopyCounter = Yes"));
    if (style.BackColor > 0) line(QStringLiteral("  BackColor = &H") + hex(style.BackColor));
    if (style.FrameWidth > 0) {
        line(QStringLiteral("  FrameWidth =") + freeNumber(style.FrameWidth));
        line(QStringLiteral("  FrameColor = &H") + hex(style.FrameColor));
    }

    // The board's own lines stand above with the numbers as they were; a
    // board of more than 400 squares leaves the record as 8 x 8.
    long long last = static_cast<long long>(style.BorderHeight) * style.BorderWidth - 1;
    if (last >= 400) {
        style.BorderHeight = 8;
        style.BorderWidth = 8;
        last = 63;
    }
    // With no columns the worked-out size would divide by zero. It is then
    // worked out as the draw does it, from (columns - 1) steps across and
    // (rows - 1) down, so that a drawn record still writes no size lines.
    long long columnSteps = style.BorderWidth - 1LL;
    long long rowSteps = style.BorderHeight - 1LL;
    if (style.BorderWidth != 0) {
        columnSteps = last % style.BorderWidth;
        rowSteps = last / style.BorderWidth;
    }
    const long long workedOutWidth =
        2LL * style.XBase + columnSteps * (static_cast<long long>(style.SqrHTab) + style.SqrHSpc) +
        style.SqrWidth + 60;
    const long long workedOutHeight =
        2LL * style.YBase + rowSteps * (static_cast<long long>(style.SqrVTab) + style.SqrVSpc) +
        style.SqrHeight + 60;
    if (style.WndWidth != workedOutWidth)
        line(QStringLiteral("  WndWidth =") + pixelsOf(style.WndWidth));
    if (style.WndHeight != workedOutHeight)
        line(QStringLiteral("  WndHeight =") + pixelsOf(style.WndHeight));

    if (style.ShowGrid > 0) {
        line(QStringLiteral("  ShowGrid = Yes"));
        if (!style.FontName.isEmpty()) line(QStringLiteral("    FontName = ") + style.FontName);
        if (style.FontColor > 0) line(QStringLiteral("    FontColor = &H") + hex(style.FontColor));
        if (style.FontSize > 0) line(QStringLiteral("    FontSize =") + freeNumber(style.FontSize));
        if (!style.FontStyle.isEmpty()) line(QStringLiteral("    FontStyle = ") + style.FontStyle);
        if (!style.FontPos.isEmpty()) line(QStringLiteral("    FontPos = ") + style.FontPos);
        if (style.FontXBase > 0)
            line(QStringLiteral("    FontXBase =") + pixelsOf(style.FontXBase));
        if (style.FontYBase > 0)
            line(QStringLiteral("    FontYBase =") + pixelsOf(style.FontYBase));
    }
    line(QStringLiteral("EndStyle"));
    return block;
}

} // namespace marlith
