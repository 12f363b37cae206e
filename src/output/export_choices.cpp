#include "output/export_choices.h"

#include <QFileInfo>
#include <algorithm>
#include <array>
#include <cmath>

namespace marlith {

namespace {

constexpr std::array<ImageFormat, 4> kFormats{ImageFormat::Bitmap, ImageFormat::Png,
                                              ImageFormat::Svg, ImageFormat::Pdf};

QString extensionOf(ImageFormat format) {
    return formatName(format).toLower();
}

} // namespace

ExportControls exportControlsFor(ImageFormat format) {
    const bool pdf = format == ImageFormat::Pdf;
    return {!pdf, pdf, format == ImageFormat::Png || format == ImageFormat::Svg};
}

QString formatName(ImageFormat format) {
    switch (format) {
    case ImageFormat::Bitmap:
        return QStringLiteral("BMP");
    case ImageFormat::Png:
        return QStringLiteral("PNG");
    case ImageFormat::Svg:
        return QStringLiteral("SVG");
    case ImageFormat::Pdf:
        return QStringLiteral("PDF");
    }
    return QStringLiteral("BMP");
}

std::optional<ImageFormat> formatNamed(const QString& name) {
    for (const ImageFormat format : kFormats)
        if (name.compare(formatName(format), Qt::CaseInsensitive) == 0) return format;
    return std::nullopt;
}

int pixelsForMillimetres(int millimetres, int dotsPerInch) {
    return static_cast<int>(std::lround(millimetres / 25.4 * dotsPerInch));
}

int heightForWidth(int width, QSize picture) {
    if (picture.width() <= 0 || picture.height() <= 0) return 0;
    return static_cast<int>(
        std::lround(static_cast<double>(picture.height()) * width / picture.width()));
}

int largestWidthFor(QSize picture) {
    const int most = kExportWidths.most;
    if (picture.width() <= 0 || picture.height() <= picture.width()) return most;
    // The width whose rounded height is still within the largest side.
    int width = static_cast<int>(static_cast<double>(most) * picture.width() / picture.height());
    while (width > 1 && heightForWidth(width, picture) > most)
        --width;
    return width;
}

PictureSize exportPictureSize(const ExportChoices& choices, QSize picture) {
    const int largest = largestWidthFor(picture);
    PictureSize size;
    size.transparent = choices.transparent && exportControlsFor(choices.format).transparent;
    if (choices.format != ImageFormat::Pdf) {
        size.width = std::clamp(choices.width, 1, largest);
        return size;
    }
    size.width = pixelsForMillimetres(choices.millimetres, choices.dotsPerInch);
    size.dotsPerInch = choices.dotsPerInch;
    if (size.width > largest) {
        size.width = largest;
        size.dotsPerInch = largest * 25.4 / choices.millimetres;
    }
    return size;
}

QString exportFileName(const QString& name, ImageFormat format) {
    const QString wanted = extensionOf(format);
    const QString suffix = QFileInfo(name).suffix();
    if (suffix.compare(wanted, Qt::CaseInsensitive) == 0) return name;
    if (formatNamed(suffix)) return name.left(name.size() - suffix.size()) + wanted;
    return name + u'.' + wanted;
}

int rememberedNumber(const QString& text, ExportRange range, int current) {
    bool ok = false;
    const long long number = text.trimmed().toLongLong(&ok);
    if (!ok) return current;
    return static_cast<int>(std::clamp<long long>(number, range.least, range.most));
}

} // namespace marlith
