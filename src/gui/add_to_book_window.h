// The Add to Book window: the header fields of a new game, which Ok appends,
// with the positions of the History window, to the open .FEN or .PGN book.
#pragma once

#include <QDialog>
#include <QStringList>
#include <array>
#include <functional>

class QLabel;
class QLineEdit;

namespace marlith {

struct AppState;

class AddToBookWindow : public QDialog {
    Q_OBJECT
  public:
    AddToBookWindow(AppState& state, QWidget* parent);

    // The positions of the game, in order.
    void setRows(const QStringList& rows) { rows_ = rows; }
    void addGame();
    void clearAll();
    QLineEdit* tagEdit(int i) const { return tagEdits_[static_cast<size_t>(i)]; }

    // Tells why a game wasn't added (replaced by tests).
    std::function<void(const QString& text)> warn;

  Q_SIGNALS:
    // The game is in the book and in its indexes.
    void gameAdded();

  protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    AppState& state_;
    QStringList rows_;
    std::array<QLabel*, 8> tagLabels_{};
    std::array<QLineEdit*, 8> tagEdits_{};
};

} // namespace marlith
