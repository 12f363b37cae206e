#include "gui/solution_list.h"

#include "styles/style.h"

#include <QClipboard>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QListWidget>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <algorithm>

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

PrintOutcome printPicture(const QString& text, const DiagramPicture& picture,
                          const QString& pdfPath) {
    if (picture.screen.isNull()) return PrintOutcome::Failed;
    bool toFile = false;
    const std::unique_ptr<QPrinter> printer = defaultPrinter(pdfPath, toFile);
    QPainter painter;
    if (!painter.begin(printer.get())) return PrintOutcome::Failed;
    // The picture as large on paper as on a 96 dpi screen, or as wide as the
    // page allows; drawn at the printer's own resolution, centred across,
    // with the position's line under it.
    const QRectF page = painter.viewport();
    const QFontMetricsF metrics(painter.font(), printer.get());
    const double room = page.height() - 2 * metrics.lineSpacing();
    const double scale =
        std::min({printer->resolution() / 96.0, page.width() / picture.screen.width(),
                  room / picture.screen.height()});
    const QSizeF size(picture.screen.width() * scale, picture.screen.height() * scale);
    const QPointF corner((page.width() - size.width()) / 2, 0);
    painter.save();
    painter.translate(corner);
    painter.scale(scale, scale);
    picture.paint(painter, false);
    painter.restore();
    painter.drawText(QPointF(corner.x(), size.height() + metrics.lineSpacing()), text);
    return outcomeOf(painter.end(), toFile);
}

QString pageWentTo(const QString& pdfPath) {
    return QStringLiteral("No printer is set up: the page went to ") + pdfPath + u'.';
}

} // namespace marlith
