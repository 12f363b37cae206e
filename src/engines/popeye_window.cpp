#include "engines/popeye_window.h"

#include "core/app_state.h"
#include "core/widget_geometry.h"
#include "engines/solution_list.h"
#include "position/piece_listing.h"

#include <QComboBox>
#include <QEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

namespace marlith {

namespace {

const char* const kCaptions[11] = {"Stipulation ", "Moves ",        "Conditions ", "Options ",
                                   "Twins ",       "ZeroPosition ", "White pcs ",  "Black pcs ",
                                   "Neutral pcs ", "Command ",      "Maxmem "};

QFrame* Rule(QWidget* parent, const char* name, int y, const QColor& colour) {
    auto* line = new QFrame(parent);
    line->setObjectName(QLatin1String(name));
    line->setGeometry(0, TwipToPixInt(y), TwipToPixInt(4440), 1);
    line->setAutoFillBackground(true);
    QPalette palette = line->palette();
    palette.setColor(QPalette::Window, colour);
    line->setPalette(palette);
    return line;
}

QString CutTrailingBlanks(QString text) {
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

} // namespace

Form8::Form8(AppState& state, QWidget* parent)
    : EngineWindow(state, parent, QStringLiteral("Form8"), QStringLiteral("Popeye")) {
    resize(TwipToPixInt(8565), TwipToPixInt(4170));

    QPalette red = palette();
    red.setColor(QPalette::WindowText, QColor(0xFF, 0, 0));
    for (int i = 0; i < 11; ++i) {
        const auto at = static_cast<size_t>(i);
        auto* label = new QLabel(QString::fromUtf8(kCaptions[i]), this);
        label->setObjectName(QStringLiteral("Label1(%1)").arg(i));
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        auto* combo = new QComboBox(this);
        combo->setObjectName(QStringLiteral("Combo1(%1)").arg(i));
        combo->setEditable(true);
        combo->setInsertPolicy(QComboBox::NoInsert);
        combo->setCompleter(nullptr);
        combo->addItems(state_.pyDatLists[at]);
        combo->setCurrentIndex(-1);
        combo->setEditText(QString());
        if (i == 0) {
            label->setGeometry(TwipRect(0, 40, 975, 315));
            combo->setGeometry(TwipRect(960, 40, 1815, 315));
        } else if (i == 1) {
            label->setGeometry(TwipRect(3000, 45, 735, 315));
            combo->setGeometry(TwipRect(3720, 45, 735, 315));
        } else if (i == 10) {
            label->setGeometry(TwipRect(0, 3360, 975, 315));
            combo->setGeometry(TwipRect(960, 3360, 1215, 315));
        } else {
            const int top = 480 + (i - 2) * 360;
            label->setGeometry(TwipRect(0, top, 975, 315));
            combo->setGeometry(TwipRect(960, top, 3495, 315));
        }
        if (i < 2) label->setPalette(red);
        // Typing is a change; a text set by the program is not, as the field
        // is then set along with it.
        connect(combo->lineEdit(), &QLineEdit::textEdited, this, [this, i] { Combo1_Change(i); });
        connect(combo, &QComboBox::activated, this, [this, i] { Combo1_Click(i); });
        label1_[at] = label;
        combo1_[at] = combo;
    }
    Rule(this, "Line2", 405, Qt::white);
    Rule(this, "Line3", 3720, palette().color(QPalette::WindowText));

    label2_ = new QLabel(this);
    label2_->setObjectName(QStringLiteral("Label2"));
    label2_->setGeometry(TwipRect(2280, 3480, 1215, 255));
    label2_->setAlignment(Qt::AlignCenter);
    QFont bold = label2_->font();
    bold.setBold(true);
    label2_->setFont(bold);

    command2_ = NamedButton(this, "Command2", "&Solution", TwipRect(3600, 3360, 855, 315));
    command2_->setFont(bold);
    command1_ = NamedButton(this, "Command1", "Cl&ear All", TwipRect(0, 3840, 855, 315));
    command4_ = NamedButton(this, "Command4", "&Copy Sol", TwipRect(1320, 3840, 855, 315));
    command5_ = NamedButton(this, "Command5", "&Print Sol", TwipRect(2280, 3840, 855, 315));
    command3_ = NamedButton(this, "Command3", "Cl&ose", TwipRect(3600, 3840, 855, 315));
    connect(command1_, &QPushButton::clicked, this, &Form8::Command1_Click);
    connect(command2_, &QPushButton::clicked, this, &Form8::Command2_Click);
    connect(command3_, &QPushButton::clicked, this, &Form8::Command3_Click);
    connect(command4_, &QPushButton::clicked, this, &Form8::Command4_Click);
    connect(command5_, &QPushButton::clicked, this, &Form8::Command5_Click);

    MakeList1(TwipRect(4560, 45, 3975, 3960))->setFocusPolicy(Qt::NoFocus);

    QWidget* previous = combo1_[0];
    for (QWidget* next : {static_cast<QWidget*>(combo1_[1]), static_cast<QWidget*>(combo1_[2]),
                          static_cast<QWidget*>(combo1_[3]), static_cast<QWidget*>(combo1_[4]),
                          static_cast<QWidget*>(combo1_[5]), static_cast<QWidget*>(combo1_[6]),
                          static_cast<QWidget*>(combo1_[7]), static_cast<QWidget*>(combo1_[8]),
                          static_cast<QWidget*>(combo1_[9]), static_cast<QWidget*>(combo1_[10]),
                          static_cast<QWidget*>(command2_), static_cast<QWidget*>(command1_),
                          static_cast<QWidget*>(command4_), static_cast<QWidget*>(command5_),
                          static_cast<QWidget*>(command3_)}) {
        setTabOrder(previous, next);
        previous = next;
    }

    WatchFocus();
}

void Form8::SetPieceLists(const PieceLists& lists) {
    const QString* texts[3] = {&lists.white, &lists.black, &lists.neutral};
    for (int i = 0; i < 3; ++i) {
        const auto at = static_cast<size_t>(6 + i);
        combo1_[at]->setEditText(CutTrailingBlanks(QLatin1Char(' ') + *texts[i]));
        state_.pyParam[at] = *texts[i];
    }
}

void Form8::Combo1_Change(int index) {
    const auto at = static_cast<size_t>(index);
    state_.pyParam[at] = TrimSpaces(combo1_[at]->currentText());
}

void Form8::Combo1_Click(int index) {
    const auto at = static_cast<size_t>(index);
    QComboBox* combo = combo1_[at];
    const EntryChoice choice =
        ChooseEntry(combo->itemText(combo->currentIndex()), state_.pyParam[at]);
    state_.pyParam[at] = choice.param;
    if (choice.none) {
        combo->setEditText(QString());
        return;
    }
    // The next tick shows the assembled field in the box.
    fCombo_ = static_cast<int16_t>(index);
    Wake();
}

void Form8::Command1_Click() {
    list1_->clear();
    for (size_t i = 0; i < combo1_.size(); ++i) {
        state_.pyParam[i].clear();
        combo1_[i]->setEditText(QString());
    }
}

void Form8::Command2_Click() {
    list1_->clear();
    const QString refusal = RunWarning(state_.pyParam);
    if (!refusal.isEmpty()) {
        warn(refusal);
        return;
    }
    const QString problem = ProblemPath(state_.programFolder, state_.tempSeed);
    const QString protocol = ProtocolPath(state_.programFolder, state_.tempSeed);
    // The solver appends to a protocol file that is there already.
    QFile::remove(protocol);
    {
        QFile file(problem);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) return;
        const QByteArray text = ProblemFileText(state_.pyParam, protocol);
        if (file.write(text) != text.size()) return;
    }
    list1_->addItem(QStringLiteral("Calculating..."));
    const double maxTime = MakeOptionText(state_.pyParam[3]).maxTime;

    if (!engine_.start(state_.popeyeProgram, PopeyeArguments(state_.pyParam, problem),
                       state_.programFolder))
        return;

    lePy_ = 1;
    command2_->setEnabled(false);
    command3_->setText(QStringLiteral("&Hide"));
    run_.begin(protocol, maxTime);
    Wake();
}

void Form8::Command3_Click() {
    hide();
}

void Form8::Command4_Click() {
    CopyRows(ListRows(list1_));
}

void Form8::Command5_Click() {
    PrintRows(ListRows(list1_), state_.programFolder + QStringLiteral("Solution.pdf"));
}

void Form8::Wake() {
    if (!timer1_->isActive()) timer1_->start();
}

void Form8::Timer1_Timer() {
    if (fCombo_ >= 0) {
        QComboBox* combo = combo1_[static_cast<size_t>(fCombo_)];
        combo->setEditText(QLatin1Char(' ') + state_.pyParam[static_cast<size_t>(fCombo_)]);
        combo->lineEdit()->end(false);
        fCombo_ = -1;
    }
    if (lePy_ == 0) {
        timer1_->stop();
        return;
    }
    ShowClock(run_.clock(clock_.elapsed() / 1000.0));
    QStringList rows;
    switch (run_.advance(engine_.running(), rows)) {
    case PopeyeRun::Step::Rows:
        ShowRows(rows);
        break;
    case PopeyeRun::Step::Finished:
        lePy_ = 0;
        EndRun(command2_, command3_);
        break;
    case PopeyeRun::Step::Waiting:
        break;
    }
}

void Form8::FocusChanged() {
    for (size_t i = 0; i < combo1_.size(); ++i) {
        const bool focused = combo1_[i]->hasFocus() || combo1_[i]->lineEdit()->hasFocus();
        SetFocusBorder(label1_[i], focused);
    }
}

void Form8::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    StretchList1(4690, 465);
}

void Form8::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    // Leaving the window empties the clock; a run writes it again next second.
    if (event->type() == QEvent::ActivationChange && !isActiveWindow()) label2_->clear();
}

} // namespace marlith
