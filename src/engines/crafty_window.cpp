#include "engines/crafty_window.h"

#include "core/app_state.h"
#include "core/widget_geometry.h"
#include "engines/solution_list.h"

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

Form9::Form9(AppState& state, QWidget* parent)
    : EngineWindow(state, parent, QStringLiteral("Form9"), QStringLiteral("Crafty")) {
    resize(TwipToPixInt(8175), TwipToPixInt(4890));

    auto* frame1 = new QGroupBox(QStringLiteral("Move first"), this);
    frame1->setObjectName(QStringLiteral("Frame1"));
    frame1->setGeometry(TwipRect(0, 0, 1335, 855));
    QFont bold = frame1->font();
    bold.setBold(true);
    frame1->setFont(bold);
    option1_ = new QRadioButton(QStringLiteral("&White"), frame1);
    option1_->setObjectName(QStringLiteral("Option1"));
    option1_->setGeometry(TwipRect(240, 240, 735, 255));
    option1_->setChecked(true);
    option2_ = new QRadioButton(QStringLiteral("&Black"), frame1);
    option2_->setObjectName(QStringLiteral("Option2"));
    option2_->setGeometry(TwipRect(240, 480, 735, 255));
    QFont plain = bold;
    plain.setBold(false);
    option1_->setFont(plain);
    option2_->setFont(plain);

    command1_ = NamedButton(this, "Command1", "&Solution", TwipRect(7200, 120, 855, 315));
    command1_->setFont(bold);
    label1_ = NamedLabel(this, "Label1", "FEN", TwipRect(1680, 120, 375, 285));
    text1_ = new QLineEdit(this);
    text1_->setObjectName(QStringLiteral("Text1"));
    text1_->setGeometry(TwipRect(2040, 120, 4815, 285));
    label3_ = NamedLabel(this, "Label3", "Depth ", TwipRect(1560, 480, 495, 315));
    combo1_ = new QComboBox(this);
    combo1_->setObjectName(QStringLiteral("Combo1"));
    combo1_->setGeometry(TwipRect(2040, 480, 735, 315));
    combo1_->setEditable(true);
    combo1_->setInsertPolicy(QComboBox::NoInsert);
    combo1_->setCompleter(nullptr);
    for (int depth = 8; depth <= 14; ++depth)
        combo1_->addItem(QString::number(depth));
    combo1_->setEditText(QStringLiteral("12"));
    label2_ = NamedLabel(this, "Label2", "", TwipRect(7200, 600, 855, 255));
    label2_->setAlignment(Qt::AlignCenter);
    label2_->setFont(bold);
    auto* command5 = NamedButton(this, "Command5", "Cl&ear All", TwipRect(3120, 480, 855, 315));
    auto* command2 = NamedButton(this, "Command2", "&Copy Sol", TwipRect(4080, 480, 855, 315));
    auto* command3 = NamedButton(this, "Command3", "&Print Sol", TwipRect(5040, 480, 855, 315));
    command4_ = NamedButton(this, "Command4", "Cl&ose", TwipRect(6000, 480, 855, 315));
    connect(command1_, &QPushButton::clicked, this, &Form9::Command1_Click);
    connect(command2, &QPushButton::clicked, this, &Form9::Command2_Click);
    connect(command3, &QPushButton::clicked, this, &Form9::Command3_Click);
    connect(command4_, &QPushButton::clicked, this, &Form9::Command4_Click);
    connect(command5, &QPushButton::clicked, this, &Form9::Command5_Click);

    MakeList1(TwipRect(0, 840, 8175, 4050));
    QFont fixed(QStringLiteral("Courier New"));
    fixed.setStyleHint(QFont::TypeWriter);
    fixed.setFixedPitch(true);
    fixed.setPointSizeF(8.25);
    list1_->setFont(fixed);

    setTabOrder(command1_, option1_);
    setTabOrder(option1_, text1_);
    setTabOrder(text1_, combo1_);
    setTabOrder(combo1_, command5);
    setTabOrder(command5, command2);
    setTabOrder(command2, command3);
    setTabOrder(command3, command4_);

    WatchFocus();
}

void Form9::Command1_Click() {
    list1_->clear();
    if (text1_->text().isEmpty()) {
        warn(QStringLiteral("Enter the FEN position!"));
        return;
    }
    {
        QFile rc(state_.programFolder + QLatin1String(kCraftyRc));
        if (!rc.open(QIODevice::WriteOnly | QIODevice::Truncate)) return;
        const QByteArray text =
            CraftyRcText(combo1_->currentText(), text1_->text(), option1_->isChecked());
        if (rc.write(text) != text.size()) return;
    }
    state_.logExt = FirstFreeLogExt(state_.programFolder);
    list1_->addItem(QStringLiteral("Calculating..."));
    list1_->addItem(QStringLiteral("Click on Crafty's icon in taskbar to progress view."));
    leCrafty_ = 1;
    command1_->setEnabled(false);
    command4_->setText(QStringLiteral("&Hide"));
    run_.begin(state_.programFolder, state_.logExt);
    timer1_->start();
}

void Form9::Command2_Click() {
    CopyRows(ListRows(list1_));
}

void Form9::Command3_Click() {
    PrintRows(ListRows(list1_), state_.programFolder + QStringLiteral("Solution.pdf"));
}

void Form9::Command4_Click() {
    hide();
}

void Form9::Command5_Click() {
    list1_->clear();
    text1_->clear();
}

bool Form9::StartEngine() {
    // The engine reads its commands from standard input.
    return engine_.start(state_.craftyProgram, {}, state_.programFolder,
                         state_.programFolder + QLatin1String(kCraftyRc));
}

void Form9::Timer1_Timer() {
    if (leCrafty_ == 0) {
        timer1_->stop();
        return;
    }
    ShowClock(run_.clock(clock_.elapsed() / 1000.0));
    QStringList rows;
    const CraftyRun::Step step = run_.advance(
        engine_.running(), [this] { return StartEngine(); }, rows);
    state_.logExt = run_.logExt();
    switch (step) {
    case CraftyRun::Step::Rows:
        ShowRows(rows);
        break;
    case CraftyRun::Step::Finished:
        leCrafty_ = 0;
        EndRun(command1_, command4_);
        break;
    case CraftyRun::Step::Waiting:
        break;
    }
}

void Form9::FocusChanged() {
    const bool depth = combo1_->hasFocus() || combo1_->lineEdit()->hasFocus();
    SetFocusBorder(label3_, depth);
    SetFocusBorder(label1_, text1_->hasFocus());
}

void Form9::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    StretchList1(120, 1245);
}

} // namespace marlith
