#include "styles/style_form.h"

#include "styles/style_block.h"

#include <algorithm>
#include <cmath>

namespace marlith {

namespace {

// A length in pixels that still fits a 16-bit field of twips.
constexpr int kMaxPixels16 = 32767 / kTwipsPerPixel;
// The picture size boxes take five digits.
constexpr int kMaxPicturePixels = 99999;

QString pixelText(int twips) {
    return QString::number(twipsToWholePixels(twips));
}

int16_t twips16(const QString& text) {
    return static_cast<int16_t>(formNumber(text, 0, kMaxPixels16) * kTwipsPerPixel);
}

// Cell length in twips for a sheet `sheetTwips` long of `cells` cells that
// share `overlap` twips with each neighbour, in whole pixels.
int cellLength(int sheetTwips, int cells, int overlap) {
    const double twips = (static_cast<double>(cells - 1) * overlap + sheetTwips) / cells;
    return std::clamp(twipsToWholePixels(twips), 1, kMaxPixels16) * kTwipsPerPixel;
}

// The step from one cell to the next; at least a pixel, so that an overlap
// larger than the cell can't fold the sheet onto itself.
int16_t cellStep(int cell, int overlap) {
    return static_cast<int16_t>(std::max(cell - overlap, kTwipsPerPixel));
}

} // namespace

int formNumber(const QString& text, int low, int high) {
    const std::optional<double> number = itemNumber(text);
    const double value = number ? *number : 0.0;
    return static_cast<int>(std::clamp(value, static_cast<double>(low), static_cast<double>(high)));
}

int centredBase(int pictureTwips, int count, int tab) {
    const double base = (pictureTwips - static_cast<double>(count) * tab) / 2.0;
    return static_cast<int>(std::clamp(roundHalfEven(base), 0.0, 32767.0));
}

QPoint centredBoardBase(QSize pictureTwips, const Style& style) {
    return {centredBase(pictureTwips.width(), style.BorderWidth, style.SqrHTab),
            centredBase(pictureTwips.height(), style.BorderHeight, style.SqrVTab)};
}

QString fontStyleText(bool bold, bool italic, bool underline, bool strikeout, bool caps) {
    QString text;
    if (bold) text += QLatin1String("BOLD ");
    if (italic) text += QLatin1String("ITALIC ");
    if (underline) text += QLatin1String("UNDERLINE ");
    if (strikeout) text += QLatin1String("STRIKEOUT ");
    if (caps) text += QLatin1String("CAPS ");
    return text.trimmed();
}

QString fontPosText(int verticalAlign, int horizontalAlign) {
    static const char* const vertical[] = {"UP ", "MIDDLE ", "DOWN "};
    static const char* const horizontal[] = {"LEFT ", "CENTER ", "RIGHT "};
    QString text;
    if (verticalAlign >= 0 && verticalAlign <= 2) text += QLatin1String(vertical[verticalAlign]);
    if (horizontalAlign >= 0 && horizontalAlign <= 2)
        text += QLatin1String(horizontal[horizontalAlign]);
    return text.trimmed();
}

int scrolledLength(int barValue, int baseTwips) {
    return (barValue - kSizeBarMaximum / 2) * kTwipsPerPixel + baseTwips;
}

int farEdgeOffset(int pictureTwips, int textTwips, int marginTwips) {
    return twipsToWholePixels(std::max(0, pictureTwips - textTwips - marginTwips));
}

StyleForm formFromStyle(const Style& style) {
    StyleForm form;
    form.styleName = style.StyleName;
    form.piecesFile = style.PiecesFile;
    form.piecesFont = style.PiecesFont;
    form.squareSize = pixelText(style.SqrWidth);
    form.lightColor = style.LightColor;
    form.darkColor = style.DarkColor;
    form.darkHatch = style.DarkHatch != 0;
    form.borderFile = style.BorderFile;
    // An empty list is shown as the default one, though it stays empty in
    // the style until the controls are stored.
    form.piecesList =
        style.PiecesList.isEmpty() ? QString::fromLatin1(kDefaultPiecesList) : style.PiecesList;
    form.startPosition = style.StartPos;
    form.englishNotation = style.EnglishNotation;
    form.popeyeDictionary = style.PyDictionary;
    form.cellOverlapVertical = pixelText(style.SqrHeight - style.SqrVTab);
    form.cellOverlapHorizontal = pixelText(style.SqrWidth - style.SqrHTab);
    form.squareSpaceVertical = pixelText(style.SqrVSpc);
    form.squareSpaceHorizontal = pixelText(style.SqrHSpc);
    form.copyCounter = style.CopyCounter != 0;

    form.boardRows = QString::number(style.BorderHeight);
    form.boardColumns = QString::number(style.BorderWidth);
    form.boardOffsetY = pixelText(style.YBase);
    form.boardOffsetX = pixelText(style.XBase);
    form.frameWidth = QString::number(style.FrameWidth);
    form.frameColor = style.FrameColor;
    form.backColor = style.BackColor;
    form.pictureHeight = pixelText(style.WndHeight);
    form.pictureWidth = pixelText(style.WndWidth);

    form.showGrid = style.ShowGrid != 0;
    form.fontName = style.FontName;
    // A number with its sign place: " 8".
    form.fontSize =
        (style.FontSize < 0 ? QString() : QStringLiteral(" ")) + QString::number(style.FontSize);
    form.gridOffsetY = pixelText(style.FontYBase);
    form.gridOffsetX = pixelText(style.FontXBase);
    const QString& fs = style.FontStyle;
    form.bold = fs.contains(QLatin1String("BOLD"));
    form.italic = fs.contains(QLatin1String("ITALIC"));
    form.underline = fs.contains(QLatin1String("UNDERLINE"));
    form.strikeout = fs.contains(QLatin1String("STRIKEOUT"));
    form.caps = fs.contains(QLatin1String("CAPS"));
    form.fontColor = style.FontColor;
    const QString& fp = style.FontPos;
    form.verticalAlign = fp.contains(QLatin1String("DOWN"))     ? 2
                         : fp.contains(QLatin1String("MIDDLE")) ? 1
                                                                : 0;
    form.horizontalAlign = fp.contains(QLatin1String("RIGHT"))    ? 2
                           : fp.contains(QLatin1String("CENTER")) ? 1
                                                                  : 0;
    return form;
}

void storeForm(const StyleForm& form, QSize sheetPixels, Style& style) {
    // A board has at least one square each way; more than 400 squares fall
    // back to 8 by 8 at the draw.
    style.BorderHeight = static_cast<int16_t>(formNumber(form.boardRows, 1, 99));
    style.BorderWidth = static_cast<int16_t>(formNumber(form.boardColumns, 1, 99));
    style.YBase = twips16(form.boardOffsetY);
    style.XBase = twips16(form.boardOffsetX);
    style.FrameWidth = static_cast<int16_t>(formNumber(form.frameWidth, 0, kMaxPixels16));
    style.FrameColor = form.frameColor;
    style.BackColor = form.backColor;

    style.BorderFile = form.borderFile;
    style.PiecesFile = form.piecesFile;
    style.PiecesFont = form.piecesFont.trimmed();
    style.LightColor = form.lightColor;
    style.DarkColor = form.darkColor;
    style.DarkHatch = form.darkHatch ? 1 : 0;
    style.StyleName = form.styleName;
    style.PiecesList = form.piecesList;
    const int letters = static_cast<int>(std::min<qsizetype>(style.PiecesList.size(), 1000));

    style.WndHeight = formNumber(form.pictureHeight, 0, kMaxPicturePixels) * kTwipsPerPixel;
    style.WndWidth = formNumber(form.pictureWidth, 0, kMaxPicturePixels) * kTwipsPerPixel;
    style.EnglishNotation = form.englishNotation;
    style.StartPos = form.startPosition;
    style.PyDictionary = form.popeyeDictionary;

    style.CopyCounter = form.copyCounter ? 1 : 0;
    style.ShowGrid = form.showGrid ? 1 : 0;
    style.FontYBase = twips16(form.gridOffsetY);
    style.FontXBase = twips16(form.gridOffsetX);
    style.SqrVSpc = twips16(form.squareSpaceVertical);
    style.SqrHSpc = twips16(form.squareSpaceHorizontal);

    // The sheet is two cells high and one cell wider than the list is long;
    // a font style draws its sheet at the size it is given.
    const int overlapV = twips16(form.cellOverlapVertical);
    const int overlapH = twips16(form.cellOverlapHorizontal);
    if (!style.PiecesFont.isEmpty()) {
        const int side = formNumber(form.squareSize, 1, kMaxPixels16);
        sheetPixels = QSize((letters + 1) * side - letters * twipsToWholePixels(overlapH),
                            2 * side - twipsToWholePixels(overlapV));
    }
    style.SqrHeight =
        static_cast<int16_t>(cellLength(sheetPixels.height() * kTwipsPerPixel, 2, overlapV));
    style.SqrVTab = cellStep(style.SqrHeight, overlapV);
    style.SqrWidth = static_cast<int16_t>(
        cellLength(sheetPixels.width() * kTwipsPerPixel, letters + 1, overlapH));
    style.SqrHTab = cellStep(style.SqrWidth, overlapH);

    // The board never lies under the frame.
    const int frameTwips = style.FrameWidth * kTwipsPerPixel;
    if (style.YBase < frameTwips) style.YBase = static_cast<int16_t>(frameTwips);
    if (style.XBase < frameTwips) style.XBase = static_cast<int16_t>(frameTwips);

    style.FontStyle =
        fontStyleText(form.bold, form.italic, form.underline, form.strikeout, form.caps);
    style.FontSize = static_cast<int16_t>(formNumber(form.fontSize, 0, 999));
    style.FontColor = form.fontColor;
    style.FontName = form.fontName;
    style.FontPos = fontPosText(form.verticalAlign, form.horizontalAlign);
}

} // namespace marlith
