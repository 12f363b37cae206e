#include "gui/history_window.h"

#include "core/app_state.h"
#include "editing/history.h"
#include "gui/child_window_place.h"
#include "gui/widget_geometry.h"

#include <QClipboard>
#include <QCloseEvent>
#include <QGroupBox>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QListWidget>
#include <QMouseEvent>
#include <QPushButton>

#include <algorithm>

namespace marlith {

HistoryWindow::HistoryWindow(AppState& state, QWidget* parent)
    : QWidget(parent, Qt::Window), state_(state) {
    setObjectName(QStringLiteral("historyWindow"));
    setWindowTitle(QStringLiteral("History"));
    resize(twipsToWholePixels(8070), twipsToWholePixels(4485));
    historyList_ = new QListWidget(this);
    historyList_->setObjectName(QStringLiteral("historyList"));
    historyList_->setGeometry(twipsRect(0, 0, 8055, 3375));
    historyList_->installEventFilter(this);
    historyList_->viewport()->installEventFilter(this);
    connect(historyList_, &QListWidget::itemDoubleClicked, this, &HistoryWindow::sendRowToBoard);

    const auto button = [this](QWidget* parent, const char* name, const char* caption,
                               QRect geometry, void (HistoryWindow::*slot)(), bool focusBack) {
        QPushButton* b = namedButton(parent, name, caption, geometry);
        connect(b, &QPushButton::clicked, this, [this, slot, focusBack] {
            (this->*slot)();
            if (focusBack) historyList_->setFocus();
        });
        return b;
    };
    button(this, "clearAllButton", "Cl&ear All", twipsRect(120, 3600, 975, 315),
           &HistoryWindow::clearAll, true);
    button(this, "copyFenButton", "&Copy FEN", twipsRect(1320, 3600, 975, 315),
           &HistoryWindow::copyFen, true);
    button(this, "copyPgnButton", "Copy P&GN", twipsRect(2400, 3600, 975, 315),
           &HistoryWindow::copyPgn, true);
    button(this, "closeButton", "Cl&ose", twipsRect(120, 4080, 975, 315), &HistoryWindow::hide,
           false);
    addToBookButton_ =
        button(this, "addToBookButton", "A&dd to Book", twipsRect(1320, 4080, 2055, 315),
               &HistoryWindow::addToBookRequested, true);
    addToBookButton_->setEnabled(false);

    auto* fields = new QGroupBox(QStringLiteral("FEN Extra Fields"), this);
    fields->setObjectName(QStringLiteral("extraFieldsGroup"));
    fields->setGeometry(twipsRect(3480, 3480, 4575, 975));
    QFont bold = fields->font();
    bold.setBold(true);
    fields->setFont(bold);
    button(fields, "removeFieldsButton", "&Remove All", twipsRect(120, 240, 1335, 670),
           &HistoryWindow::removeExtraFields, true);
    button(fields, "whiteFirstButton", "Insert All (first &White to Move)",
           twipsRect(1560, 240, 2895, 315), &HistoryWindow::insertExtraFieldsWhiteFirst, true);
    button(fields, "blackFirstButton", "Insert All (first &Black to Move)",
           twipsRect(1560, 600, 2895, 315), &HistoryWindow::insertExtraFieldsBlackFirst, true);
    // The two long captions take the room they need; the frame and the
    // window grow with them.
    int wider = 0;
    for (QPushButton* b : fields->findChildren<QPushButton*>()) {
        b->setFont(QWidget::font());
        const int needed = b->fontMetrics().horizontalAdvance(b->text().remove(u'&')) + 12;
        if (needed > b->width()) {
            wider = std::max(wider, needed - b->width());
            b->resize(needed, b->height());
        }
    }
    fields->resize(fields->width() + wider, fields->height());
    resize(width() + wider, height());

    ask = [this](const QString& text) {
        return QMessageBox::warning(this, QStringLiteral("Warning"), text,
                                    QMessageBox::Ok | QMessageBox::Cancel);
    };
    setTabOrder(historyList_, findChild<QPushButton*>(QStringLiteral("clearAllButton")));
}

void HistoryWindow::addRow(const QString& row) {
    // The list counts its rows in 16 bits.
    if (historyList_->count() >= 32767) return;
    historyList_->addItem(row);
}

QStringList HistoryWindow::rows() const {
    QStringList all;
    for (int i = 0; i < historyList_->count(); ++i)
        all.append(historyList_->item(i)->text());
    return all;
}

int HistoryWindow::rowCount() const {
    return historyList_->count();
}

QString HistoryWindow::dropLastRow() {
    delete historyList_->takeItem(historyList_->count() - 1);
    return historyList_->item(historyList_->count() - 1)->text();
}

void HistoryWindow::setAddToBookEnabled(bool enabled) {
    addToBookButton_->setEnabled(enabled);
}

void HistoryWindow::setRows(const QStringList& rows) {
    for (int i = 0; i < rows.size() && i < historyList_->count(); ++i)
        historyList_->item(i)->setText(rows[i]);
}

void HistoryWindow::sendRowToBoard() {
    QListWidgetItem* row = historyList_->currentItem();
    if (!row || !row->isSelected()) return;
    Q_EMIT rowSent(rowForBoard(row->text()));
}

void HistoryWindow::deleteRow() {
    QListWidgetItem* row = historyList_->currentItem();
    if (!row || !row->isSelected()) return;
    if (ask(QStringLiteral("Remove the selected line from History")) != QMessageBox::Ok) return;
    delete historyList_->takeItem(historyList_->row(row));
}

void HistoryWindow::setRowSide(const QString& side) {
    QListWidgetItem* row = historyList_->currentItem();
    if (row && row->isSelected()) row->setText(rowWithSide(row->text(), side));
}

void HistoryWindow::keepBoardPart() {
    setRowSide(QString());
}

void HistoryWindow::clearAll() {
    historyList_->clear();
    addToBookButton_->setEnabled(false);
    Q_EMIT cleared();
}

void HistoryWindow::copyFen() {
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    const QString text = historyFen(rows());
    if (!text.isEmpty()) clipboard->setText(text);
}

void HistoryWindow::copyPgn() {
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    const QString text = historyPgn(
        rows(), state_.board(), Notation{state_.style.PiecesList, state_.style.EnglishNotation});
    if (!text.isEmpty()) clipboard->setText(text);
}

void HistoryWindow::setExtraFields(const QString& firstSide) {
    setRows(marlith::setExtraFields(rows(), firstSide));
}

void HistoryWindow::removeExtraFields() {
    setExtraFields(QString());
}

void HistoryWindow::insertExtraFieldsWhiteFirst() {
    setExtraFields(QStringLiteral("w"));
}

void HistoryWindow::insertExtraFieldsBlackFirst() {
    setExtraFields(QStringLiteral("b"));
}

bool HistoryWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == historyList_ && event->type() == QEvent::KeyPress) {
        const QString typed = static_cast<QKeyEvent*>(event)->text();
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            sendRowToBoard();
        } else if (key == Qt::Key_Escape) {
            hide();
        } else if (key == Qt::Key_Space) {
            deleteRow();
        } else if (typed.compare(QLatin1String("w"), Qt::CaseInsensitive) == 0) {
            setRowSide(QStringLiteral("w"));
        } else if (typed.compare(QLatin1String("b"), Qt::CaseInsensitive) == 0) {
            setRowSide(QStringLiteral("b"));
        } else if (typed == u"-") {
            setRowSide(QStringLiteral("-"));
        } else if (typed.compare(QLatin1String("r"), Qt::CaseInsensitive) == 0) {
            keepBoardPart();
        } else {
            return false;
        }
        return true;
    }
    // The right button deletes the selected row, not the one under it.
    if (watched == historyList_->viewport() && event->type() == QEvent::MouseButtonPress &&
        static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) {
        deleteRow();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void HistoryWindow::closeEvent(QCloseEvent* event) {
    hideOnClose(*this, *event, state_.mainWindowAlive);
}

} // namespace marlith
