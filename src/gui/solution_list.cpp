#include "gui/solution_list.h"

#include "styles/style.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QListWidget>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>

#include <memory>

namespace marlith {

QStringList listRows(const QListWidget* list) {
    QStringList rows;
    for (int i = 0; i < list->count(); ++i)
        rows << list->item(i)->text();
    return rows;
}

void copyRows(const QStringList& rows) {
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    if (rows.isEmpty()) return;
    QString text;
    for (const QString& row : rows)
        text += row + QStringLiteral("\r\n");
    clipboard->setText(text);
}

namespace {

// The system's default printer; a PDF file in its place when there is none.
std::unique_ptr<QPrinter> defaultPrinter(const QString& pdfPath, bool& toFile) {
    const QPrinterInfo info = QPrinterInfo::defaultPrinter();
    toFile = info.isNull();
    if (!toFile) return std::make_unique<QPrinter>(info, QPrinter::HighResolution);
    auto printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
    printer->setOutputFormat(QPrinter::PdfFormat);
    printer->setOutputFileName(pdfPath);
    return printer;
}

PrintOutcome outcomeOf(bool ended, bool toFile) {
    if (!ended) return PrintOutcome::Failed;
    return toFile ? PrintOutcome::ToFile : PrintOutcome::Printed;
}

} // namespace

PrintOutcome printRows(const QStringList& rows, const QString& pdfPath) {
    if (rows.isEmpty()) return PrintOutcome::Failed;
    bool toFile = false;
    const std::unique_ptr<QPrinter> printer = defaultPrinter(pdfPath, toFile);
    QPainter painter;
    if (!painter.begin(printer.get())) return PrintOutcome::Failed;
    QFont font(QStringLiteral("Courier New"));
    font.setStyleHint(QFont::TypeWriter);
    font.setPointSize(10);
    painter.setFont(font);
    const int step = painter.fontMetrics().lineSpacing();
    const int bottom = painter.viewport().height();
    int y = step;
    for (const QString& row : rows) {
        if (y > bottom && printer->newPage()) y = step;
        painter.drawText(0, y, row);
        y += step;
    }
    return outcomeOf(painter.end(), toFile);
}

PrintOutcome printPicture(const QString& text, const QImage& picture, const QString& pdfPath) {
    bool toFile = false;
    const std::unique_ptr<QPrinter> printer = defaultPrinter(pdfPath, toFile);
    QPainter painter;
    if (!painter.begin(printer.get())) return PrintOutcome::Failed;
    // Twips and screen pixels (15 twips each) in the printer's own units.
    const double dotsPerTwip = printer->resolution() / 1440.0;
    painter.drawText(0, painter.fontMetrics().ascent(), text);
    const QRectF place(400 * dotsPerTwip, 400 * dotsPerTwip,
                       picture.width() * kTwipsPerPixel * dotsPerTwip,
                       picture.height() * kTwipsPerPixel * dotsPerTwip);
    painter.drawImage(place, picture);
    return outcomeOf(painter.end(), toFile);
}

QString pageWentTo(const QString& pdfPath) {
    return QStringLiteral("No printer is set up: the page went to ") + pdfPath + u'.';
}

} // namespace marlith
