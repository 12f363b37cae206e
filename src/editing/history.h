// The rows of the History window: positions copied during the run, each an
// optional piece counter "(7x5)", the board field of a FEN text, and optional
// extra fields " w - - 0 0". What a row gives the board, the clipboard and
// the game text, apart from the window.
#pragma once

#include "position/fen.h"
#include "position/notation.h"

#include <QString>
#include <QStringList>

namespace marlith {

// The counter and the board field of a row, with the one blank behind them
// when the row has more ("(2x1)k7/8 " of "(2x1)k7/8 w - - 0 0").
QString rowBoardPart(const QString& row);

// The row with the side to move and the fixed rest of a FEN record: side
// "w", "b" or "-". An empty side keeps the board part alone, its blank too.
QString rowWithSide(const QString& row, const QString& side);

// Every row given extra fields, the sides alternating from `firstSide`; an
// empty side takes them off, the rows trimmed.
QStringList setExtraFields(const QStringList& rows, const QString& firstSide);

// What a row sends to the position box: the board field alone.
QString rowForBoard(const QString& row);

// What undo puts back into the position box: all behind the counter.
QString rowForUndo(const QString& row);

// Every row ended by CR LF: the FEN lines of the clipboard.
QString historyFen(const QStringList& rows);

// The rows read as the positions of one game: the moves between them as
// move text, numbered, lines broken behind the move that passes 70
// characters. A first row with Black to move starts "1... ". A row whose
// board repeats the row before is no move and is passed over.
QString historyPgn(const QStringList& rows, const Board& board, const Notation& notation);

} // namespace marlith
