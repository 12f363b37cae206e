#include "gui/engine_window.h"

#include "core/app_state.h"
#include "gui/child_window_place.h"
#include "gui/solution_list.h"
#include "gui/widget_geometry.h"
#include "output/image_output.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QKeyEvent>
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
    inform = [this](const QString& text) {
        QMessageBox::information(this, QStringLiteral("Marlith"), text);
    };
    pollTimer_ = new QTimer(this);
    pollTimer_->setObjectName(QStringLiteral("pollTimer"));
    pollTimer_->setInterval(kTickMs);
    connect(pollTimer_, &QTimer::timeout, this, [this] { tick(); });
    clock_.start();
}

void EngineWindow::watchFocus() {
    connect(qApp, &QApplication::focusChanged, this, [this] { focusChanged(); });
}

EngineWindow::~EngineWindow() {
    // Focus moves while the widgets go; this part of the window is gone by then.
    disconnect(qApp, nullptr, this, nullptr);
}

QListWidget* EngineWindow::makeSolutionList(QRect geometry) {
    solutionList_ = new QListWidget(this);
    solutionList_->setObjectName(QStringLiteral("solutionList"));
    solutionList_->setGeometry(geometry);
    QPalette face = solutionList_->palette();
    face.setColor(QPalette::Base, face.color(QPalette::Button));
    solutionList_->setPalette(face);
    // Rows are one line each: the list need not measure them one by one.
    solutionList_->setUniformItemSizes(true);
    // The engines write in columns: a fixed-width font keeps them straight.
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (!QFontInfo(fixed).fixedPitch()) fixed = QFont(QStringLiteral("DejaVu Sans Mono"));
    fixed.setStyleHint(QFont::Monospace);
    fixed.setFixedPitch(true);
    solutionList_->setFont(fixed);
    return solutionList_;
}

void EngineWindow::copySolution() {
    copyRows(listRows(solutionList_));
}

void EngineWindow::printSolution() {
    const QString pdf = pagePdfPath(QStringLiteral("Solution"), state_.programFolder);
    if (printRows(listRows(solutionList_), pdf) == PrintOutcome::ToFile) inform(pageWentTo(pdf));
}

void EngineWindow::showClock(const std::optional<QString>& shown) {
    if (!shown) return;
    clockLabel_->setText(*shown);
    clockLabel_->repaint();
}

void EngineWindow::showRows(const QStringList& rows) {
    if (!isVisible()) show();
    solutionList_->clear();
    solutionList_->addItems(rows);
}

void EngineWindow::beginRun(QPushButton* start) {
    start->setEnabled(false);
    if (!stopButton_) {
        stopButton_ = new QPushButton(QStringLiteral("S&top"), this);
        stopButton_->setObjectName(QStringLiteral("stopButton"));
        connect(stopButton_, &QPushButton::clicked, this, &EngineWindow::stopRun);
    }
    stopButton_->setGeometry(start->geometry());
    start->hide();
    stopButton_->show();
}

void EngineWindow::endRun(QPushButton* start, QPushButton* hide) {
    clockLabel_->clear();
    if (stopButton_) stopButton_->hide();
    start->show();
    start->setEnabled(true);
    hide->setText(QStringLiteral("Cl&ose"));
    pollTimer_->stop();
}

void EngineWindow::widenToCaptions() {
    for (QWidget* child : findChildren<QWidget*>()) {
        int needed = 0;
        if (auto* label = qobject_cast<QLabel*>(child); label && !label->text().isEmpty())
            needed = label->fontMetrics().horizontalAdvance(label->text().remove(u'&')) + 2;
        else if (auto* push = qobject_cast<QPushButton*>(child))
            needed = push->fontMetrics().horizontalAdvance(push->text().remove(u'&')) + 8;
        else if (auto* button = qobject_cast<QAbstractButton*>(child))
            needed = button->sizeHint().width();
        if (needed > child->width()) child->resize(needed, child->height());
    }
}

void EngineWindow::chainTabs(const QList<QWidget*>& controls) {
    for (qsizetype i = 1; i < controls.size(); ++i)
        setTabOrder(controls[i - 1], controls[i]);
}

void EngineWindow::showEnded(const QString& engine, QPushButton* start, QPushButton* hide) {
    QStringList rows;
    const QString said = QString::fromLocal8Bit(engine_.output());
    for (QString line : said.split(u'\n')) {
        line.remove(u'\r');
        if (!line.trimmed().isEmpty()) rows.append(line);
    }
    rows.append(engine + QStringLiteral(" ended without a result (") + engine_.endText() +
                QStringLiteral(")."));
    showRows(rows);
    endRun(start, hide);
}

void EngineWindow::stretchSolutionList(int lessWidthTwips, int lessHeightTwips) {
    if (!isNormalState(*this)) return;
    const QSize outer = frameGeometry().size();
    const int width =
        twipsToWholePixels(std::max(0, outer.width() * kTwipsPerPixel - lessWidthTwips));
    const int height =
        twipsToWholePixels(std::max(0, outer.height() * kTwipsPerPixel - lessHeightTwips));
    solutionList_->resize(width, height);
}

void EngineWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && stopButton_ && stopButton_->isVisible()) {
        stopRun();
        return;
    }
    QWidget::keyPressEvent(event);
}

void EngineWindow::closeEvent(QCloseEvent* event) {
    // A run goes on behind a hidden window.
    hideOnClose(*this, *event, state_.mainWindowAlive);
}

} // namespace marlith
