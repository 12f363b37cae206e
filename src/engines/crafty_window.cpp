#include "engines/crafty_window.h"

#include "core/app_state.h"
#include "engines/solution_list.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

namespace marlith {

namespace {

constexpr int kTickMs = 50;

QPushButton* Button(QWidget* parent, const char* name, const char* caption, QRect geometry) {
    auto* button = new QPushButton(QString::fromUtf8(caption), parent);
    button->setObjectName(QLatin1String(name));
    button->setGeometry(geometry);
    return button;
}

QLabel* Label(QWidget* parent, const char* name, const char* caption, QRect geometry) {
    auto* label = new QLabel(QString::fromUtf8(caption), parent);
    label->setObjectName(QLatin1String(name));
    label->setGeometry(geometry);
    return label;
}

} // namespace

Form9::Form9(AppState& state, QWidget* parent) : QWidget(parent, Qt::Window), state_(state) {
    setObjectName(QStringLiteral("Form9"));
    setWindowTitle(QStringLiteral("Crafty"));
    resize(TwipToPixInt(8175), TwipToPixInt(4890));
    warn = [this](const QString& text) {
        QMessageBox::warning(this, QStringLiteral("Warning"), text);
    };

    auto* frame1 = new QGroupBox(QStringLiteral("Move first"), this);
    frame1->setObjectName(QStringLiteral("Frame1"));
    frame1->setGeometry(TwipGeometry(0, 0, 1335, 855));
    QFont bold = frame1->font();
    bold.setBold(true);
    frame1->setFont(bold);
    option1_ = new QRadioButton(QStringLiteral("&White"), frame1);
    option1_->setObjectName(QStringLiteral("Option1"));
    option1_->setGeometry(TwipGeometry(240, 240, 735, 255));
    option1_->setChecked(true);
    option2_ = new QRadioButton(QStringLiteral("&Black"), frame1);
    option2_->setObjectName(QStringLiteral("Option2"));
    option2_->setGeometry(TwipGeometry(240, 480, 735, 255));
    QFont plain = bold;
    plain.setBold(false);
    option1_->setFont(plain);
    option2_->setFont(plain);

    command1_ = Button(this, "Command1", "&Solution", TwipGeometry(7200, 120, 855, 315));
    command1_->setFont(bold);
    label1_ = Label(this, "Label1", "FEN", TwipGeometry(1680, 120, 375, 285));
    text1_ = new QLineEdit(this);
    text1_->setObjectName(QStringLiteral("Text1"));
    text1_->setGeometry(TwipGeometry(2040, 120, 4815, 285));
    label3_ = Label(this, "Label3", "Depth ", TwipGeometry(1560, 480, 495, 315));
    combo1_ = new QComboBox(this);
    combo1_->setObjectName(QStringLiteral("Combo1"));
    combo1_->setGeometry(TwipGeometry(2040, 480, 735, 315));
    combo1_->setEditable(true);
    combo1_->setInsertPolicy(QComboBox::NoInsert);
    combo1_->setCompleter(nullptr);
    for (int depth = 8; depth <= 14; ++depth)
        combo1_->addItem(QString::number(depth));
    combo1_->setEditText(QStringLiteral("12"));
    label2_ = Label(this, "Label2", "", TwipGeometry(7200, 600, 855, 255));
    label2_->setAlignment(Qt::AlignCenter);
    label2_->setFont(bold);
    auto* command5 = Button(this, "Command5", "Cl&ear All", TwipGeometry(3120, 480, 855, 315));
    auto* command2 = Button(this, "Command2", "&Copy Sol", TwipGeometry(4080, 480, 855, 315));
    auto* command3 = Button(this, "Command3", "&Print Sol", TwipGeometry(5040, 480, 855, 315));
    command4_ = Button(this, "Command4", "Cl&ose", TwipGeometry(6000, 480, 855, 315));
    connect(command1_, &QPushButton::clicked, this, &Form9::Command1_Click);
    connect(command2, &QPushButton::clicked, this, &Form9::Command2_Click);
    connect(command3, &QPushButton::clicked, this, &Form9::Command3_Click);
    connect(command4_, &QPushButton::clicked, this, &Form9::Command4_Click);
    connect(command5, &QPushButton::clicked, this, &Form9::Command5_Click);

    list1_ = new QListWidget(this);
    list1_->setObjectName(QStringLiteral("List1"));
    list1_->setGeometry(TwipGeometry(0, 840, 8175, 4050));
    QPalette face = list1_->palette();
    face.setColor(QPalette::Base, face.color(QPalette::Button));
    list1_->setPalette(face);
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

    timer1_ = new QTimer(this);
    timer1_->setObjectName(QStringLiteral("Timer1"));
    timer1_->setInterval(kTickMs);
    connect(timer1_, &QTimer::timeout, this, &Form9::Timer1_Timer);
    connect(qApp, &QApplication::focusChanged, this, &Form9::FocusChanged);
    clock_.start();
}

Form9::~Form9() {
    // Focus moves while the widgets go; this part of the window is gone by then.
    disconnect(qApp, nullptr, this, nullptr);
    // An engine still at work when the program ends goes with it.
    if (process_ && process_->state() != QProcess::NotRunning) {
        process_->kill();
        process_->waitForFinished(1000);
    }
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

bool Form9::EngineRunning() const {
    return process_ && process_->state() != QProcess::NotRunning;
}

bool Form9::StartEngine() {
    const QString program = state_.craftyProgram;
    if (program.isEmpty() || !QFileInfo(program).isExecutable()) return false;
    if (process_) process_->deleteLater();
    process_ = new QProcess(this);
    process_->setWorkingDirectory(state_.programFolder);
    // The engine reads its commands from standard input.
    process_->setStandardInputFile(state_.programFolder + QLatin1String(kCraftyRc));
    process_->setStandardOutputFile(QProcess::nullDevice());
    process_->setStandardErrorFile(QProcess::nullDevice());
    process_->start(program, {});
    return process_->waitForStarted(5000);
}

void Form9::Timer1_Timer() {
    if (leCrafty_ == 0) {
        timer1_->stop();
        return;
    }
    if (const std::optional<QString> shown = run_.clock(clock_.elapsed() / 1000.0)) {
        label2_->setText(*shown);
        label2_->repaint();
    }
    QStringList rows;
    const CraftyRun::Step step = run_.advance(
        EngineRunning(), [this] { return StartEngine(); }, rows);
    state_.logExt = run_.logExt();
    switch (step) {
    case CraftyRun::Step::Rows:
        if (!isVisible()) show();
        list1_->clear();
        list1_->addItems(rows);
        break;
    case CraftyRun::Step::Finished:
        leCrafty_ = 0;
        label2_->clear();
        command1_->setEnabled(true);
        command4_->setText(QStringLiteral("Cl&ose"));
        timer1_->stop();
        break;
    case CraftyRun::Step::Waiting:
        break;
    }
}

void Form9::FocusChanged() {
    const bool depth = combo1_->hasFocus() || combo1_->lineEdit()->hasFocus();
    label3_->setFrameStyle(depth ? QFrame::Box | QFrame::Plain : QFrame::NoFrame);
    label1_->setFrameStyle(text1_->hasFocus() ? QFrame::Box | QFrame::Plain : QFrame::NoFrame);
}

void Form9::closeEvent(QCloseEvent* event) {
    // Closing only hides the window while the main window lives; a run goes on.
    if (state_.keepForms != 0) {
        event->ignore();
        hide();
        return;
    }
    event->accept();
}

void Form9::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (windowState() & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen)) return;
    const QSize outer = frameGeometry().size();
    const int width = TwipToPixInt(std::max(0, outer.width() * kTwipsPerPixel - 120));
    const int height = TwipToPixInt(std::max(0, outer.height() * kTwipsPerPixel - 1245));
    list1_->resize(width, height);
}

} // namespace marlith
