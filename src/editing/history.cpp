#include "editing/history.h"

#include "position/move_writer.h"

namespace marlith {

QString rowBoardPart(const QString& row) {
    const QString s = row + QStringLiteral("  ");
    const qsizetype counterEnd = s.indexOf(QLatin1String(") "));
    // The board field starts behind the counter; a row never starts with it.
    const qsizetype from = counterEnd < 0 ? 1 : counterEnd + 2;
    const qsizetype blank = s.indexOf(QLatin1Char(' '), from);
    return s.left(blank + 1);
}

QString rowWithSide(const QString& row, const QString& side) {
    if (side.isEmpty()) return rowBoardPart(row);
    return rowBoardPart(row) + side + QStringLiteral(" - - 0 0");
}

QStringList setExtraFields(const QStringList& rows, const QString& firstSide) {
    QStringList result;
    QString side = firstSide;
    for (const QString& row : rows) {
        if (side.isEmpty()) {
            result.append(rowBoardPart(row).trimmed());
            continue;
        }
        result.append(rowWithSide(row, side));
        side = side == u"w" ? QStringLiteral("b") : QStringLiteral("w");
    }
    return result;
}

QString rowForBoard(const QString& row) {
    QString text = row;
    const qsizetype close = text.indexOf(QLatin1Char(')'));
    if (close >= 0) text = text.mid(close + 1).trimmed();
    const qsizetype blank = text.indexOf(QLatin1Char(' '));
    if (blank >= 1) text.truncate(blank);
    return text;
}

QString rowForUndo(const QString& row) {
    const qsizetype close = row.indexOf(QLatin1Char(')'));
    return row.mid(close + 1);
}

QString historyFen(const QStringList& rows) {
    QString text;
    for (const QString& row : rows)
        text += row + QStringLiteral("\r\n");
    return text;
}

QString historyPgn(const QStringList& allRows, const Board& board, const Notation& notation) {
    if (allRows.isEmpty()) return QString();
    // A board copied twice is no move: left in, it would number the moves
    // behind it for the other side.
    const QStringList rows = withoutRepeatedBoards(allRows);
    // The game is played on a board of its own; the position stays as it is.
    RowGame game(rows, board, notation);
    qsizetype lineLimit = 70;
    int moveNumber = game.blackFirst() ? 1 : 0;
    QString text = game.blackFirst() ? QStringLiteral("1... ") : QString();
    for (qsizetype k = 1; k < rows.size(); ++k) {
        bool numbered = false;
        const QString move = game.move(k, numbered);
        if (numbered) text += QString::number(++moveNumber) + QStringLiteral(". ");
        text += move + u' ';
        if (text.size() > lineLimit) {
            text += QStringLiteral("\r\n");
            lineLimit = text.size() + 70;
        }
    }
    return text;
}

} // namespace marlith
