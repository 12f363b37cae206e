#include "engines/engine_window.h"

#include "core/app_state.h"
#include "core/widget_geometry.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <algorithm>

namespace marlith {

namespace {

// Short enough for the clock, long enough that a waiting run costs nothing.
constexpr int kTickMs = 50;

} // namespace

EngineWindow::EngineWindow(AppState& state, QWidget* parent, const QString& name,
                           const QString& title)
    : QWidget(parent, Qt::Window), state_(state) {
    setObjectName(name);
    setWindowTitle(title);
    warn = [this](const QString& text) {
        QMessageBox::warning(this, QStringLiteral("Warning"), text);
    };
    timer1_ = new QTimer(this);
    timer1_->setObjectName(QStringLiteral("Timer1"));
    timer1_->setInterval(kTickMs);
    connect(timer1_, &QTimer::timeout, this, [this] { Timer1_Timer(); });
    clock_.start();
}

void EngineWindow::WatchFocus() {
    connect(qApp, &QApplication::focusChanged, this, [this] { FocusChanged(); });
}

EngineWindow::~EngineWindow() {
    // Focus moves while the widgets go; this part of the window is gone by then.
    disconnect(qApp, nullptr, this, nullptr);
}

QListWidget* EngineWindow::MakeList1(QRect geometry) {
    list1_ = new QListWidget(this);
    list1_->setObjectName(QStringLiteral("List1"));
    list1_->setGeometry(geometry);
    QPalette face = list1_->palette();
    face.setColor(QPalette::Base, face.color(QPalette::Button));
    list1_->setPalette(face);
    return list1_;
}

void EngineWindow::ShowClock(const std::optional<QString>& shown) {
    if (!shown) return;
    label2_->setText(*shown);
    label2_->repaint();
}

void EngineWindow::ShowRows(const QStringList& rows) {
    if (!isVisible()) show();
    list1_->clear();
    list1_->addItems(rows);
}

void EngineWindow::EndRun(QPushButton* start, QPushButton* hide) {
    label2_->clear();
    start->setEnabled(true);
    hide->setText(QStringLiteral("Cl&ose"));
    timer1_->stop();
}

void EngineWindow::StretchList1(int lessWidthTwips, int lessHeightTwips) {
    if (!IsNormalState(*this)) return;
    const QSize outer = frameGeometry().size();
    const int width = TwipToPixInt(std::max(0, outer.width() * kTwipsPerPixel - lessWidthTwips));
    const int height = TwipToPixInt(std::max(0, outer.height() * kTwipsPerPixel - lessHeightTwips));
    list1_->resize(width, height);
}

void EngineWindow::closeEvent(QCloseEvent* event) {
    // Closing only hides the window while the main window lives; a run goes on.
    if (state_.keepForms != 0) {
        event->ignore();
        hide();
        return;
    }
    event->accept();
}

} // namespace marlith
