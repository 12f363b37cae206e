// What the two engine windows do alike with their result lists: copy them
// to the clipboard and print them.
#pragma once

#include <QRect>
#include <QString>
#include <QStringList>

class QListWidget;

namespace marlith {

QStringList listRows(const QListWidget* list);

// The clipboard is emptied; rows, each ended by CR LF, go there as text.
void copyRows(const QStringList& rows);

// One row a line on the default printer, or into `pdfPath` when there is no
// printer. No rows, nothing printed.
bool printRows(const QStringList& rows, const QString& pdfPath);

} // namespace marlith
