// The Search Criteria window: words of the headers, counts of men and pieces
// on squares; Ok narrows the open book to the games that pass, or, with
// every field empty, gives the whole book back.
#pragma once

#include <QDialog>
#include <QMessageBox>
#include <array>
#include <functional>

class QLabel;
class QLineEdit;

namespace marlith {

struct AppState;

class SearchWindow : public QDialog {
    Q_OBJECT
  public:
    SearchWindow(AppState& state, QWidget* parent);

    void search();
    void clearAll();

    // Set by a search that replaced the index of the book; the opener takes
    // it back.
    bool searchDone = false;
    // Whether the index that the search left is narrowed.
    bool narrowed = false;

    QLineEdit* fieldEdit(int i) const { return fieldEdits_[static_cast<size_t>(i)]; }
    QString statusText() const;

    // The message of a search that finds nothing (replaced by tests).
    std::function<void(const QString& text)> warn;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    AppState& state_;
    std::array<QLabel*, 5> fieldLabels_{};
    std::array<QLineEdit*, 5> fieldEdits_{};
    QLabel* statusLabel_ = nullptr;
};

} // namespace marlith
