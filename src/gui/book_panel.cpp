#include "gui/book_panel.h"

#include "books/book_walk.h"
#include "core/app_state.h"
#include "gui/tool_button.h"
#include "gui/tool_faces.h"
#include "gui/widget_geometry.h"

#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QScrollBar>

namespace marlith {

namespace {
struct StepButton {
    const char* name;
    void (BookPanel::*step)();
    const char* tip;
};
constexpr StepButton kStepButtons[4] = {
    {"firstPositionButton", &BookPanel::firstPosition, "First position of the game (Ctrl+Left)"},
    {"previousPositionButton", &BookPanel::previousPosition, "Position before (Left)"},
    {"nextPositionButton", &BookPanel::nextPosition, "Next position (Right)"},
    {"lastPositionButton", &BookPanel::lastPosition, "Last position of the game (Ctrl+Right)"}};
} // namespace

BookPanel::BookPanel(AppState& state, QWidget* parent) : QGroupBox(parent), state_(state) {
    setObjectName(QStringLiteral("bookPanel"));
    gameLabel_ = new QLabel(this);
    gameLabel_->setObjectName(QStringLiteral("gameLabel"));
    gameLabel_->setGeometry(twipsRect(120, 240, 2775, 255));
    gameScrollBar_ = new QScrollBar(Qt::Horizontal, this);
    gameScrollBar_->setObjectName(QStringLiteral("gameScrollBar"));
    gameScrollBar_->setGeometry(twipsRect(120, 480, 2775, 255));
    gameScrollBar_->setFocusPolicy(Qt::StrongFocus);
    // Left steps back a game, as on any scroll bar of the desktop.
    gameScrollBar_->setInvertedControls(false);
    gameScrollBar_->setRange(1, 1);
    headerList_ = new QListWidget(this);
    headerList_->setObjectName(QStringLiteral("headerList"));
    headerList_->setGeometry(twipsRect(0, 840, 3015, 1320));
    sideLabel_ = new QLabel(this);
    sideLabel_->setObjectName(QStringLiteral("sideLabel"));
    sideLabel_->setGeometry(twipsRect(120, 2280, 1755, 300));
    stepStripPlaceholder_ = new QWidget(this);
    stepStripPlaceholder_->setObjectName(QStringLiteral("stepStripPlaceholder"));
    stepStripPlaceholder_->setGeometry(twipsRect(1875, 2280, 1015, 300));
    stepStrip_ = new QWidget(this);
    stepStrip_->setObjectName(QStringLiteral("stepStrip"));
    stepStrip_->setGeometry(twipsRect(1875, 2280, 1015, 300));
    stepStrip_->setFocusPolicy(Qt::StrongFocus);
    stepStrip_->hide();
    const auto faces = stepButtonFaces();
    for (int i = 0; i < 4; ++i) {
        stepButtons_[i] = new ToolButton(faces[i], faces[i + 4], stepStrip_);
        stepButtons_[i]->setObjectName(QLatin1String(kStepButtons[i].name));
        stepButtons_[i]->setToolTip(QLatin1String(kStepButtons[i].tip));
        stepButtons_[i]->move(i * 240 / kTwipsPerPixel, 0);
        connect(stepButtons_[i], &ToolButton::clicked, this, kStepButtons[i].step);
    }
    connect(gameScrollBar_, &QScrollBar::valueChanged, this, [this] { showGame(); });
    for (QWidget* watched :
         {static_cast<QWidget*>(gameScrollBar_), static_cast<QWidget*>(headerList_), stepStrip_})
        watched->installEventFilter(this);
}

void BookPanel::showCount(int games) {
    gameLabel_->setText(QStringLiteral("%1 games").arg(games));
}

void BookPanel::setScanning(bool scanning) {
    // The games can be walked once the scan is over.
    for (QWidget* control :
         {static_cast<QWidget*>(gameScrollBar_), static_cast<QWidget*>(headerList_), stepStrip_})
        control->setEnabled(!scanning);
    if (!scanning) return;
    headerList_->clear();
    sideLabel_->clear();
    stepStrip_->hide();
    showCount(0);
}

void BookPanel::setNarrowed(bool narrowed) {
    QPalette palette = gameLabel_->palette();
    palette.setColor(QPalette::WindowText, narrowed ? QColor(255, 0, 0) : QColor(0, 0, 0));
    gameLabel_->setPalette(palette);
}

void BookPanel::resetGameScrollBar() {
    const int games = state_.book.gameCount;
    const QSignalBlocker quiet(gameScrollBar_);
    gameScrollBar_->setRange(std::min(1, games), games);
    gameScrollBar_->setPageStep(games / 10 + 1);
    gameScrollBar_->setSingleStep(1);
    gameScrollBar_->setValue(1);
    showGame();
}

void BookPanel::showGame() {
    firstPosition();
    setGameCaption();
    Q_EMIT stepped();
}

void BookPanel::setGameCaption() {
    gameLabel_->setText(QStringLiteral("Game %1. (%2 of %3)")
                            .arg(QString::fromLatin1(state_.book.currentRecord.mid(2, 6).trimmed()))
                            .arg(std::max(1, gameScrollBar_->value()))
                            .arg(state_.book.gameCount));
}

void BookPanel::firstPosition() {
    OpenBook& book = state_.book;
    char kind = 0;
    headerList_->clear();
    gameHeaders_.clear();
    bool found = goToGame(book, std::max(1, gameScrollBar_->value()));
    const int32_t firstRecord = found ? book.currentRecordNumber : 0;
    while (found && book.currentRecord.at(1) != kPositionKind) {
        const QString t = recordText(stripComment(book.currentRecord));
        if (const auto style = styleTag(t)) {
            // The book's style tag changes the style, as the name typed
            // into the list would.
            if (!style->isEmpty() && style->toUpper() != state_.style.StyleName.toUpper())
                Q_EMIT styleTagFound(*style);
        } else {
            headerList_->addItems(wrapHeader(t));
            gameHeaders_.append(t);
        }
        found = nextRecord(book, kind);
    }
    const QByteArray cutMove = cutMoveOfGame(book, firstRecord);
    if (!cutMove.isEmpty())
        headerList_->addItems(
            wrapHeader(QStringLiteral("Cut at %1 (can't be played)").arg(recordText(cutMove))));
    Q_EMIT headersShown();
    stepStrip_->setVisible(kind == kPositionKind);
    finishStep(true); // even a game that can't be read shows its (blank) record
}

void BookPanel::previousPosition() {
    finishStep(previousRecord(state_.book));
}

void BookPanel::nextPosition() {
    char kind = 0;
    finishStep(nextRecord(state_.book, kind));
}

void BookPanel::lastPosition() {
    char kind = 0;
    while (nextRecord(state_.book, kind)) {
    }
    finishStep(true);
}

void BookPanel::finishStep(bool moved) {
    if (moved) showRecord();
    Q_EMIT stepped();
}

void BookPanel::showRecord() {
    const ShownPosition shown = positionOfRecord(state_.book.currentRecord);
    sideLabel_->setText(sideCaption(shown.side));
    Q_EMIT positionShown(QString::fromLatin1(shown.board));
}

bool BookPanel::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress: {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            Q_EMIT refreshRequested();
            return true;
        }
        if (watched == stepStrip_) {
            const bool ctrl = key->modifiers() & Qt::ControlModifier;
            if (key->key() == Qt::Key_Left) {
                ctrl ? firstPosition() : previousPosition();
                return true;
            }
            if (key->key() == Qt::Key_Right) {
                ctrl ? lastPosition() : nextPosition();
                return true;
            }
        }
        break;
    }
    case QEvent::FocusIn:
        if (watched == gameScrollBar_)
            setFocusBorder(gameLabel_, true);
        else if (watched == stepStrip_)
            setFocusBorder(sideLabel_, true);
        else if (watched == headerList_ && headerList_->count() > 0)
            headerList_->setCurrentRow(0);
        break;
    case QEvent::FocusOut:
        if (watched == gameScrollBar_)
            setFocusBorder(gameLabel_, false);
        else if (watched == stepStrip_)
            setFocusBorder(sideLabel_, false);
        else if (watched == headerList_)
            headerList_->clearSelection();
        break;
    default:
        break;
    }
    return QGroupBox::eventFilter(watched, event);
}

void BookPanel::showMoveControls() {
    sideLabel_->setText(QStringLiteral("Move Controls:"));
}

} // namespace marlith
