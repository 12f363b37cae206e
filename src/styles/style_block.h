// The text form of a style: how settings and style files are cut into items,
// how a value becomes a number, which key fills which field, and the block
// that a style is stored as.
#pragma once

#include "styles/style.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <cstdint>
#include <optional>

namespace marlith {

// Settings and style files come from the old platform in Windows-1252 as
// well as from this one in UTF-8, and a file may mix both after an edit by
// hand. Each line is read as UTF-8 when it is valid UTF-8, else as
// Windows-1252, so no byte is ever lost to a replacement character.
QString decodeStyleText(const QByteArray& bytes);
bool isValidUtf8(const QByteArray& bytes);
// A line for a file whose other lines are in Windows-1252 goes in that code
// ("?" for what it lacks); else in UTF-8.
QByteArray encodeStyleText(const QString& text, bool windows1252);

// Cuts a text into items. An item starts at its first non-blank character and
// ends at a comma or a line end (CR LF, LF or CR). An item that begins with a
// double quote runs to the next double quote, across line ends if need be (to
// the end of the text when none follows), without the quotes; what stands
// behind the closing quote up to the next comma or line end is dropped. Items
// with nothing in them (blank lines, ",,") are not returned.
class ItemSplitter {
  public:
    explicit ItemSplitter(QStringView text) : text_(text) {}
    // The next item, or false at the end of the text.
    bool next(QString& item);

  private:
    QStringView text_;
    qsizetype pos_ = 0;
};

QStringList splitItems(QStringView text);

// What an item without "=" after its first character gives: the settings
// reader skips it, the importer takes the whole item, upper-cased, as a key
// with an empty value (so that "EndStyle" can close a block).
enum class KeylessItems { Skip, AsKey };

struct StyleItem {
    QString key;   // upper-cased
    QString value; // trimmed, case kept
};

// A ";" after the first character cuts the item; it is trimmed, and the key
// is what stands before the first "=". No result for an item that is empty
// after that, or that the mode skips.
std::optional<StyleItem> parseItem(QStringView item, KeylessItems keyless);

// Blanks and tabs: what trimming removes, at the ends of items and lines.
QString trimBlanks(QStringView text);
// Spaces alone off both ends; a tab stays.
QString trimSpaces(QStringView text);

// What keeps a value from coming back from a settings or style file as it was
// written: the item reader would end it, cut it or trim it. "=" and double
// quotes, the marks of keys and of quoted items, are kept out as well.
enum class ValueFault {
    None,
    LineBreak,     // a line end or any other control character
    ItemSeparator, // ","
    Comment,       // ";"
    KeySeparator,  // "="
    Quote,         // a double quote
    OuterBlank,    // a blank at either end
};

// The first fault of a value, in the order of the enum, or None.
ValueFault settingsValueFault(QStringView value);
// The fault as words for a message: "a line break", "\",\"", ...
QString valueFaultText(ValueFault fault);
// Why a style name can't be stored, as the message that refuses it; empty
// for a name the settings file gives back as it is.
QString styleNameRefusal(QStringView name);
// The same for the whole style: its name, then each text field that a
// block would not give back as it stands (a line break, "," or ";", a blank
// at either end), named by its key.
QString styleRefusal(const Style& style);

// The leading numeric text of a value, read as a number the way the old
// files were written: decimal with sign, point and exponent (E or D), or
// hexadecimal after "&H"; blanks anywhere inside are passed over; text that
// isn't numeric is 0. Hexadecimal of up to four significant digits is a
// signed 16-bit value, of five to eight a signed 32-bit value. No result when
// the text is too large for any number (more than eight hexadecimal digits,
// a decimal beyond the double range).
std::optional<double> readNumber(QStringView text);

// Ties go to the even neighbour: 0.5 -> 0, 1.5 -> 2, 2.5 -> 2, -2.5 -> -2.
double roundHalfEven(double value);

// The number of a value: readNumber rounded to a whole.
std::optional<double> itemNumber(QStringView value);

// The colour of a value: the number, plus 65536 if negative, so that the
// hexadecimal text FFFF gives 65535. No result outside the 32-bit range.
std::optional<int32_t> itemColor(QStringView value);

enum class StoreResult {
    Stored,
    Ignored, // a key that no field has, or a Yes/No field given another word
    Fault,   // the value doesn't fit its field: the reader stops there
};

// Stores one key of a block into the record. Lengths in the value are pixels
// and become twips. A BorderFile or PiecesFile value without "/" gets
// folderForBarePaths in front of it; an empty folder keeps values bare.
StoreResult storeStyleKey(Style& style, const StyleItem& item, const QString& folderForBarePaths);

// A bitmap that a block names: the block's style name, upper-cased, and the
// PiecesFile or BorderFile value as written.
struct StyleBitmap {
    QString style;
    QString file;
};
// Every bitmap that the blocks of a settings or style text name, in order.
QList<StyleBitmap> styleBitmaps(QStringView text);

// The block of the record as stored, each line ended by CR LF. A board of
// more than 400 squares is set to 8 x 8 in the record, after its own two lines
// have been printed with the old numbers.
QString writeStyleBlock(Style& style);

} // namespace marlith
