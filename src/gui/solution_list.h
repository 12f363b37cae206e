// What the two engine windows do alike with their result lists: copy them
// to the clipboard and print them; and the printing of the diagram.
#pragma once

#include "output/image_output.h"

#include <QImage>
#include <QRect>
#include <QString>
#include <QStringList>

class QListWidget;

namespace marlith {

QStringList listRows(const QListWidget* list);

// The clipboard is emptied; rows, each ended by CR LF, go there as text.
void copyRows(const QStringList& rows);

enum class PrintOutcome { Printed, ToFile, Failed };

// One row a line on the default printer, or into `pdfPath` when there is no
// printer. No rows, nothing printed.
PrintOutcome printRows(const QStringList& rows, const QString& pdfPath);

// A line of text, then the picture at its natural size 400 twips from the
// page's corner; on the default printer, or into `pdfPath` without one.
PrintOutcome printPicture(const QString& text, const DiagramPicture& picture,
                          const QString& pdfPath);

// What the user is told of a page that went to a file.
QString pageWentTo(const QString& pdfPath);

} // namespace marlith
