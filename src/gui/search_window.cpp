#include "gui/search_window.h"

#include "books/book_search.h"
#include "core/app_state.h"
#include "gui/widget_geometry.h"

#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace marlith {

namespace {

constexpr const char* kFieldNames[5] = {"words", "whiteMen", "blackMen", "totalMen", "notations"};
constexpr const char* kFieldCaptions[5] = {"Words", "White", "Black", "Global", "Notations"};

} // namespace

SearchWindow::SearchWindow(AppState& state, QWidget* parent) : QDialog(parent), state_(state) {
    setObjectName(QStringLiteral("searchWindow"));
    setWindowTitle(QStringLiteral("Search Criteria"));
    setModal(true);
    setMinimumWidth(twipsToWholePixels(6255 + 240));

    for (size_t i = 0; i < 5; ++i) {
        fieldLabels_[i] = new QLabel(QString::fromLatin1(kFieldCaptions[i]), this);
        fieldLabels_[i]->setObjectName(QLatin1String(kFieldNames[i]) + QStringLiteral("Label"));
        fieldEdits_[i] = new QLineEdit(this);
        fieldEdits_[i]->setObjectName(QLatin1String(kFieldNames[i]) + QStringLiteral("Edit"));
        fieldEdits_[i]->installEventFilter(this);
        fieldLabels_[i]->setBuddy(fieldEdits_[i]);
    }
    const auto group = [this](const char* name, const char* caption, const char* hintName,
                              const char* hint, int first, int last) {
        auto* box = new QGroupBox(QString::fromUtf8(caption), this);
        box->setObjectName(QLatin1String(name));
        auto* grid = new QGridLayout(box);
        QLabel* hintLabel = namedLabel(box, hintName, hint, QRect());
        hintLabel->setWordWrap(true);
        grid->addWidget(hintLabel, 0, 0, 1, 2 * (last - first + 1));
        for (int i = first; i <= last; ++i) {
            grid->addWidget(fieldLabels_[static_cast<size_t>(i)], 1, 2 * (i - first));
            grid->addWidget(fieldEdits_[static_cast<size_t>(i)], 1, 2 * (i - first) + 1);
        }
        return box;
    };
    auto* column = new QVBoxLayout(this);
    column->addWidget(group("identificationGroup", "Any Identification", "wordsHintLabel",
                            "Enter words separated by commas or plus signs. For example: "
                            "Paul, 2000",
                            0, 0));
    column->addWidget(group("menGroup", "Men", "menHintLabel",
                            "Enter numbers and/or ranges separated by commas. For example: 1-6, 9",
                            1, 3));
    column->addWidget(group("piecesGroup", "Pieces and Positions", "piecesHintLabel",
                            "Enter algebraic notations separated by commas or plus signs. For "
                            "example: Ke1+ke8",
                            4, 4));
    auto* row = new QHBoxLayout;
    const auto button = [this, row](const char* name, const char* caption) {
        QPushButton* b = namedButton(this, name, caption, QRect());
        b->setAutoDefault(false);
        return b;
    };
    QPushButton* clear = button("clearAllButton", "Cl&ear All");
    statusLabel_ = new QLabel(QStringLiteral(" "), this);
    statusLabel_->setObjectName(QStringLiteral("statusLabel"));
    QPushButton* ok = button("searchButton", "O&k");
    QPushButton* close = button("closeButton", "Cl&ose");
    row->addWidget(clear);
    row->addWidget(statusLabel_, 1);
    row->addWidget(ok);
    row->addWidget(close);
    column->addLayout(row);
    connect(clear, &QPushButton::clicked, this, &SearchWindow::clearAll);
    connect(ok, &QPushButton::clicked, this, &SearchWindow::search);
    connect(close, &QPushButton::clicked, this, &SearchWindow::reject);

    warn = [this](const QString& text) {
        QMessageBox::warning(this, QStringLiteral("Warning"), text);
    };
}

QString SearchWindow::statusText() const {
    return statusLabel_->text();
}

void SearchWindow::clearAll() {
    for (QLineEdit* edit : fieldEdits_)
        edit->clear();
}

void SearchWindow::search() {
    setCursor(Qt::WaitCursor);
    OpenBook& book = state_.book;
    const Criteria criteria =
        parseCriteria(fieldEdits_[0]->text(), fieldEdits_[1]->text(), fieldEdits_[2]->text(),
                      fieldEdits_[3]->text(), fieldEdits_[4]->text(), state_.style.BorderWidth);
    if (criteria.isEmpty()) {
        book.gameIndex = book.fullIndex;
        narrowed = false;
    } else {
        const GameIndex found =
            searchBook(book.workFile, book.fullIndex, criteria, [this](int n, int at, int total) {
                statusLabel_->setText(
                    QStringLiteral("%1 found. Searching %2 of %3").arg(n).arg(at).arg(total));
                statusLabel_->repaint();
            });
        if (found.empty()) {
            unsetCursor();
            statusLabel_->setText(QStringLiteral(" "));
            warn(QStringLiteral("Game not found!"));
            return;
        }
        book.gameIndex = found;
        narrowed = true;
    }
    searchDone = true;
    unsetCursor();
    statusLabel_->setText(QStringLiteral(" "));
    accept();
}

bool SearchWindow::eventFilter(QObject* watched, QEvent* event) {
    for (size_t i = 0; i < fieldEdits_.size(); ++i)
        if (watched == fieldEdits_[i] &&
            formFieldEvent(fieldEdits_[i], fieldLabels_[i], event, [this] { search(); }))
            return true;
    return QDialog::eventFilter(watched, event);
}

} // namespace marlith
