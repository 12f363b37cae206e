#include "books/book_panel.h"

#include "books/book_walk.h"
#include "core/main_window.h"
#include "core/tool_faces.h"
#include "core/tool_image.h"
#include "core/widget_geometry.h"

#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QScrollBar>

namespace marlith {

BookPanel::BookPanel(AppState& state, Form1& form1, QWidget* parent)
    : QGroupBox(parent), state_(state), form1_(form1) {
    setObjectName(QStringLiteral("Frame2"));
    label1_ = new QLabel(this);
    label1_->setObjectName(QStringLiteral("Label1"));
    label1_->setGeometry(TwipRect(120, 240, 2775, 255));
    hScroll1_ = new QScrollBar(Qt::Horizontal, this);
    hScroll1_->setObjectName(QStringLiteral("HScroll1"));
    hScroll1_->setGeometry(TwipRect(120, 480, 2775, 255));
    hScroll1_->setFocusPolicy(Qt::StrongFocus);
    // Left steps back a game, as on any scroll bar of the desktop.
    hScroll1_->setInvertedControls(false);
    hScroll1_->setRange(1, 1);
    list1_ = new QListWidget(this);
    list1_->setObjectName(QStringLiteral("List1"));
    list1_->setGeometry(TwipRect(0, 840, 3015, 1320));
    label5_ = new QLabel(this);
    label5_->setObjectName(QStringLiteral("Label5"));
    label5_->setGeometry(TwipRect(120, 2280, 1755, 300));
    picture2_ = new QWidget(this);
    picture2_->setObjectName(QStringLiteral("Picture2"));
    picture2_->setGeometry(TwipRect(1875, 2280, 1015, 300));
    picture1_ = new QWidget(this);
    picture1_->setObjectName(QStringLiteral("Picture1"));
    picture1_->setGeometry(TwipRect(1875, 2280, 1015, 300));
    picture1_->setFocusPolicy(Qt::StrongFocus);
    picture1_->hide();
    const auto faces = BookButtonFaces();
    for (int i = 0; i < 4; ++i) {
        image2_[i] = new ToolImage(faces[i], faces[i + 4], picture1_);
        image2_[i]->setObjectName(QStringLiteral("Image2(%1)").arg(i));
        image2_[i]->move(i * 240 / kTwipsPerPixel, 0);
        connect(image2_[i], &ToolImage::clicked, this, [this, i] { Image2_Click(i); });
    }
    connect(hScroll1_, &QScrollBar::valueChanged, this, [this] { HScroll1_Change(); });
    for (QWidget* watched :
         {static_cast<QWidget*>(hScroll1_), static_cast<QWidget*>(list1_), picture1_})
        watched->installEventFilter(this);
}

void BookPanel::ShowCount(int games) {
    label1_->setText(QStringLiteral("%1 games").arg(games));
    label1_->repaint();
}

void BookPanel::SetNarrowed(bool narrowed) {
    QPalette palette = label1_->palette();
    palette.setColor(QPalette::WindowText, narrowed ? QColor(255, 0, 0) : QColor(0, 0, 0));
    label1_->setPalette(palette);
}

void BookPanel::SetHScroll() {
    const int games = state_.book.gameCount;
    const QSignalBlocker quiet(hScroll1_);
    hScroll1_->setRange(std::min(1, games), games);
    hScroll1_->setPageStep(games / 10 + 1);
    hScroll1_->setSingleStep(1);
    hScroll1_->setValue(1);
    HScroll1_Change();
}

void BookPanel::HScroll1_Change() {
    Image2_Click(0);
    SetGameCaption();
    form1_.MoveCaretToEnd();
}

void BookPanel::SetGameCaption() {
    label1_->setText(QStringLiteral("Game %1. (%2 of %3)")
                         .arg(QString::fromLatin1(state_.book.currentRecord.mid(2, 6).trimmed()))
                         .arg(std::max(1, hScroll1_->value()))
                         .arg(state_.book.gameCount));
}

void BookPanel::Image2_Click(int index) {
    OpenBook& book = state_.book;
    bool moved = false;
    char kind = 0;
    switch (index) {
    case 0: {
        list1_->clear();
        moved = GoToGame(book, std::max(1, hScroll1_->value()));
        while (moved && book.currentRecord.at(1) != kPositionKind) {
            const QString t = RecordText(DelComment(book.currentRecord));
            if (const auto style = StyleTag(t)) {
                // The book's style tag changes the style, as the name typed
                // into the list would.
                if (!style->isEmpty() && style->toUpper() != state_.style.StyleName.toUpper())
                    form1_.ChooseStyleByName(*style);
            } else {
                list1_->addItems(WrapHeader(t));
            }
            moved = NextRecord(book, kind);
        }
        picture1_->setVisible(kind == kPositionKind);
        moved = true; // even a game that can't be read shows its (blank) record
        break;
    }
    case 1:
        moved = PrevRecord(book);
        break;
    case 2:
        moved = NextRecord(book, kind);
        break;
    case 3:
        while (NextRecord(book, kind)) {
        }
        moved = true;
        break;
    default:
        break;
    }
    if (moved) ShowRecord();
    form1_.MoveCaretToEnd();
}

void BookPanel::ShowRecord() {
    const ShownPosition shown = marlith::ShowRecord(state_.book.currentRecord);
    label5_->setText(SideCaption(shown.side));
    form1_.ShowPosition(QString::fromLatin1(shown.board));
}

bool BookPanel::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress: {
        const auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            form1_.MNRefresh_Click();
            return true;
        }
        if (watched == picture1_) {
            const bool ctrl = key->modifiers() & Qt::ControlModifier;
            if (key->key() == Qt::Key_Left) {
                Image2_Click(ctrl ? 0 : 1);
                return true;
            }
            if (key->key() == Qt::Key_Right) {
                Image2_Click(ctrl ? 3 : 2);
                return true;
            }
        }
        break;
    }
    case QEvent::FocusIn:
        if (watched == hScroll1_)
            SetFocusBorder(label1_, true);
        else if (watched == picture1_)
            SetFocusBorder(label5_, true);
        else if (watched == list1_ && list1_->count() > 0)
            list1_->setCurrentRow(0);
        break;
    case QEvent::FocusOut:
        if (watched == hScroll1_)
            SetFocusBorder(label1_, false);
        else if (watched == picture1_)
            SetFocusBorder(label5_, false);
        else if (watched == list1_)
            list1_->clearSelection();
        break;
    default:
        break;
    }
    return QGroupBox::eventFilter(watched, event);
}

} // namespace marlith
