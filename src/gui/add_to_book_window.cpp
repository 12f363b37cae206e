#include "gui/add_to_book_window.h"

#include "books/book_append.h"
#include "core/app_state.h"
#include "core/settings.h"
#include "gui/widget_geometry.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

namespace marlith {

namespace {

constexpr const char* kTags[8] = {"event", "site", "white",  "black",
                                  "eco",   "date", "result", "style"};
constexpr const char* kCaptions[8] = {"Event ", "Site ", "White ",  "Black ",
                                      "ECO ",   "Date ", "Result ", "Style "};

} // namespace

AddToBookWindow::AddToBookWindow(AppState& state, QWidget* parent)
    : QDialog(parent), state_(state) {
    setObjectName(QStringLiteral("addToBookWindow"));
    setModal(true);
    auto* grid = new QGridLayout(this);
    for (size_t i = 0; i < 8; ++i) {
        tagLabels_[i] = new QLabel(QString::fromLatin1(kCaptions[i]), this);
        tagLabels_[i]->setObjectName(QLatin1String(kTags[i]) + QStringLiteral("Label"));
        tagEdits_[i] = new QLineEdit(this);
        tagEdits_[i]->setObjectName(QLatin1String(kTags[i]) + QStringLiteral("Edit"));
        // The longest tag line still fits a record of the work file.
        tagEdits_[i]->setMaxLength(110);
        tagEdits_[i]->installEventFilter(this);
        const int row = static_cast<int>(i % 4);
        const int column = static_cast<int>(i / 4) * 2;
        grid->addWidget(tagLabels_[i], row, column);
        grid->addWidget(tagEdits_[i], row, column + 1);
    }
    auto* buttons = new QHBoxLayout;
    const auto button = [this, buttons](const char* name, const char* caption) {
        QPushButton* b = namedButton(this, name, caption, QRect());
        b->setAutoDefault(false);
        buttons->addWidget(b);
        return b;
    };
    connect(button("clearAllButton", "Cl&ear All"), &QPushButton::clicked, this,
            &AddToBookWindow::clearAll);
    buttons->addStretch();
    connect(button("addButton", "O&k"), &QPushButton::clicked, this, &AddToBookWindow::addGame);
    connect(button("closeButton", "Cl&ose"), &QPushButton::clicked, this, &AddToBookWindow::reject);
    grid->addLayout(buttons, 4, 0, 1, 4);
    warn = [this](const QString& text) {
        QMessageBox::warning(this, QStringLiteral("Warning"), text);
    };
}

void AddToBookWindow::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    setWindowTitle(QStringLiteral("Add to ") + shortenPath(state_.bookFile, 30));
}

void AddToBookWindow::clearAll() {
    for (QLineEdit* edit : tagEdits_)
        edit->clear();
    tagEdits_[0]->setFocus();
}

void AddToBookWindow::addGame() {
    const QString extension = state_.bookFile.right(4).toUpper();
    const bool fen = extension == QLatin1String(".FEN");
    if ((!fen && extension != QLatin1String(".PGN")) || rows_.isEmpty()) return;
    setCursor(Qt::WaitCursor);
    GameTags tags;
    for (size_t i = 0; i < tags.size(); ++i)
        tags[i] = tagEdits_[i]->text();
    const AddedGame game =
        fen ? fenGame(tags, rows_)
            : pgnGame(tags, rows_, state_.board(),
                      Notation{state_.style.PiecesList, state_.style.EnglishNotation});
    QString error;
    const bool added = marlith::addGame(state_.book, state_.bookFile, game, error);
    unsetCursor();
    if (!error.isEmpty()) warn(error);
    if (!added) return;
    hide();
    Q_EMIT gameAdded();
}

bool AddToBookWindow::eventFilter(QObject* watched, QEvent* event) {
    for (size_t i = 0; i < tagEdits_.size(); ++i)
        if (watched == tagEdits_[i] &&
            formFieldEvent(tagEdits_[i], tagLabels_[i], event, [this] { addGame(); }))
            return true;
    return QDialog::eventFilter(watched, event);
}

} // namespace marlith
