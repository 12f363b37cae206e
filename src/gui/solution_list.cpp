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

bool printRows(const QStringList& rows, const QString& pdfPath) {
    if (rows.isEmpty()) return false;
    const QPrinterInfo info = QPrinterInfo::defaultPrinter();
    std::unique_ptr<QPrinter> printer;
    if (info.isNull()) {
        printer = std::make_unique<QPrinter>(QPrinter::HighResolution);
        printer->setOutputFormat(QPrinter::PdfFormat);
        printer->setOutputFileName(pdfPath);
    } else {
        printer = std::make_unique<QPrinter>(info, QPrinter::HighResolution);
    }
    QPainter painter;
    if (!painter.begin(printer.get())) return false;
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
    return painter.end();
}

} // namespace marlith
