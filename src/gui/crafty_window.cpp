#include "gui/crafty_window.h"

#include "books/new_file.h"

#include "engines/engine_files.h"

#include "core/app_state.h"
#include "gui/widget_geometry.h"

#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

namespace marlith {

CraftyWindow::CraftyWindow(AppState& state, QWidget* parent)
    : EngineWindow(state, parent, QStringLiteral("craftyWindow"), QStringLiteral("Crafty")) {
    resize(twipsToWholePixels(8175), twipsToWholePixels(4890));

    auto* sideGroup = new QGroupBox(QStringLiteral("Move first"), this);
    sideGroup->setObjectName(QStringLiteral("sideGroup"));
    sideGroup->setGeometry(twipsRect(0, 0, 1335, 855));
    QFont bold = sideGroup->font();
    bold.setBold(true);
    sideGroup->setFont(bold);
    whiteOption_ = new QRadioButton(QStringLiteral("&White"), sideGroup);
    whiteOption_->setObjectName(QStringLiteral("whiteOption"));
    whiteOption_->setGeometry(twipsRect(240, 240, 735, 255));
    whiteOption_->setChecked(true);
    blackOption_ = new QRadioButton(QStringLiteral("&Black"), sideGroup);
    blackOption_->setObjectName(QStringLiteral("blackOption"));
    blackOption_->setGeometry(twipsRect(240, 480, 735, 255));
    QFont plain = bold;
    plain.setBold(false);
    whiteOption_->setFont(plain);
    blackOption_->setFont(plain);

    solveButton_ = namedButton(this, "solveButton", "&Solution", twipsRect(7200, 120, 855, 315));
    solveButton_->setFont(bold);
    positionLabel_ = namedLabel(this, "positionLabel", "FEN", twipsRect(1680, 120, 375, 285));
    positionEdit_ = new QLineEdit(this);
    positionEdit_->setObjectName(QStringLiteral("positionEdit"));
    positionEdit_->setGeometry(twipsRect(2040, 120, 4815, 285));
    depthLabel_ = namedLabel(this, "depthLabel", "Depth ", twipsRect(1560, 480, 495, 315));
    depthBox_ = new QComboBox(this);
    depthBox_->setObjectName(QStringLiteral("depthBox"));
    depthBox_->setGeometry(twipsRect(2040, 480, 735, 315));
    depthBox_->setEditable(true);
    depthBox_->setInsertPolicy(QComboBox::NoInsert);
    depthBox_->setCompleter(nullptr);
    for (int depth = 8; depth <= 14; ++depth)
        depthBox_->addItem(QString::number(depth));
    depthBox_->setEditText(QStringLiteral("12"));
    clockLabel_ = namedLabel(this, "clockLabel", "", twipsRect(7200, 600, 855, 255));
    clockLabel_->setAlignment(Qt::AlignCenter);
    clockLabel_->setFont(bold);
    auto* clearAllButton =
        namedButton(this, "clearAllButton", "Cl&ear All", twipsRect(3120, 480, 855, 315));
    auto* copySolutionButton =
        namedButton(this, "copySolutionButton", "&Copy Sol", twipsRect(4080, 480, 855, 315));
    auto* printSolutionButton =
        namedButton(this, "printSolutionButton", "&Print Sol", twipsRect(5040, 480, 855, 315));
    closeButton_ = namedButton(this, "closeButton", "Cl&ose", twipsRect(6000, 480, 855, 315));
    connect(solveButton_, &QPushButton::clicked, this, &CraftyWindow::solve);
    connect(copySolutionButton, &QPushButton::clicked, this, &EngineWindow::copySolution);
    connect(printSolutionButton, &QPushButton::clicked, this, &EngineWindow::printSolution);
    connect(closeButton_, &QPushButton::clicked, this, &QWidget::hide);
    connect(clearAllButton, &QPushButton::clicked, this, &CraftyWindow::clearAll);

    makeSolutionList(twipsRect(0, 840, 8175, 4050));

    chainTabs({solveButton_, whiteOption_, positionEdit_, depthBox_, clearAllButton,
               copySolutionButton, printSolutionButton, closeButton_});

    watchFocus();
    widenToCaptions();
}

void CraftyWindow::solve() {
    solutionList_->clear();
    if (positionEdit_->text().isEmpty()) {
        warn(QStringLiteral("Enter the FEN position!"));
        return;
    }
    if (!writeNewFile(state_.programFolder + QLatin1String(kCraftyRc),
                      craftyRcText(depthBox_->currentText(), positionEdit_->text(),
                                   whiteOption_->isChecked())))
        return;
    state_.logExtension = firstFreeLogExtension(state_.programFolder);
    solutionList_->addItem(QStringLiteral("Calculating..."));
    solutionList_->addItem(
        QStringLiteral("Crafty runs in the background; its analysis shows here when it ends."));
    running_ = 1;
    beginRun(solveButton_);
    closeButton_->setText(QStringLiteral("&Hide"));
    run_.begin(state_.programFolder, state_.logExtension);
    pollTimer_->start();
}

void CraftyWindow::clearAll() {
    solutionList_->clear();
    positionEdit_->clear();
}

bool CraftyWindow::startEngine() {
    // The engine reads its commands from standard input.
    return engine_.start(state_.craftyProgram, {}, state_.programFolder,
                         state_.programFolder + QLatin1String(kCraftyRc));
}

void CraftyWindow::tick() {
    if (running_ == 0) {
        pollTimer_->stop();
        return;
    }
    showClock(run_.clock(clock_.elapsed() / 1000.0));
    QStringList rows;
    const CraftyRun::Step step = run_.advance(
        engine_.running(), [this] { return startEngine(); }, rows);
    state_.logExtension = run_.logExtension();
    switch (step) {
    case CraftyRun::Step::Rows:
        showRows(rows);
        break;
    case CraftyRun::Step::Finished:
        running_ = 0;
        endRun(solveButton_, closeButton_);
        break;
    case CraftyRun::Step::Ended:
        running_ = 0;
        showEnded(QStringLiteral("Crafty"), solveButton_, closeButton_);
        break;
    case CraftyRun::Step::Waiting:
        break;
    }
}

void CraftyWindow::stopRun() {
    if (running_ == 0) return;
    engine_.stop();
    run_.cancel();
    running_ = 0;
    deleteCraftyWorkFiles(state_.programFolder);
    showRows({QStringLiteral("The run was stopped.")});
    endRun(solveButton_, closeButton_);
}

void CraftyWindow::focusChanged() {
    const bool depth = depthBox_->hasFocus() || depthBox_->lineEdit()->hasFocus();
    setFocusBorder(depthLabel_, depth);
    setFocusBorder(positionLabel_, positionEdit_->hasFocus());
}

void CraftyWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    stretchSolutionList(120, 1245);
}

} // namespace marlith
