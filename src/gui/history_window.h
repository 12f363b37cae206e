// The History window: the positions copied during the run, one row each. A
// row goes back to the board, gets or loses the extra fields of a FEN record,
// or is deleted; all rows go to the clipboard as FEN lines or as move text.
#pragma once

#include <QMessageBox>
#include <QWidget>
#include <functional>

class QListWidget;
class QPushButton;

namespace marlith {

struct AppState;

class HistoryWindow : public QWidget {
    Q_OBJECT
  public:
    HistoryWindow(AppState& state, QWidget* parent);

    void addRow(const QString& row);
    QStringList rows() const;
    int rowCount() const;
    // Takes the last row away and gives the row now last, for undo.
    QString dropLastRow();
    void setAddToBookEnabled(bool enabled);

    void sendRowToBoard();
    void deleteRow();
    void setRowSide(const QString& side);
    void keepBoardPart();
    void clearAll();
    void copyFen();
    void copyPgn();
    void removeExtraFields();
    void insertExtraFieldsWhiteFirst();
    void insertExtraFieldsBlackFirst();

    // The question before a row is deleted (replaced by tests).
    std::function<QMessageBox::StandardButton(const QString& text)> ask;

  Q_SIGNALS:
    // The board field of a row, for the position box.
    void rowSent(const QString& board);
    // The list was emptied: nothing is left to undo.
    void cleared();
    void addToBookRequested();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void setExtraFields(const QString& firstSide);
    void setRows(const QStringList& rows);

    AppState& state_;
    QListWidget* historyList_ = nullptr;
    QPushButton* addToBookButton_ = nullptr;
};

} // namespace marlith
